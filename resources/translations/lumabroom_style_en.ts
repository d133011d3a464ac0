<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>Style</name>
    <message>
        <extracomment>appearance setting: always dark</extracomment>
        <source>深色</source>
        <translation>Dark</translation>
    </message>
    <message>
        <extracomment>appearance setting: always light</extracomment>
        <source>浅色</source>
        <translation>Light</translation>
    </message>
    <message>
        <extracomment>disk bar: free space of the volume</extracomment>
        <source>剩余 %1</source>
        <translation>%1 free</translation>
    </message>
    <message>
        <extracomment>disk bar: free space of the volume out of its capacity</extracomment>
        <source>剩余 %1 / %2</source>
        <translation>%1 free of %2</translation>
    </message>
    <message>
        <extracomment>disk bar tooltip: the free figure matches the file manager&apos;s and includes purgeable space</extracomment>
        <source>「剩余」与访达一致,含系统的可清除空间</source>
        <translation>“Free” matches the file manager and includes space the system can purge</translation>
    </message>
    <message>
        <extracomment>disk bar legend: bytes that can be cleaned directly</extracomment>
        <source>可清理</source>
        <translation>Cleanable</translation>
    </message>
    <message>
        <extracomment>disk bar legend: bytes that need a special operation</extracomment>
        <source>需专用操作</source>
        <translation>Needs its own action</translation>
    </message>
    <message>
        <extracomment>disk bar hint: free space after cleaning the cleanable part</extracomment>
        <source>清掉可清理的 %1 后,剩余空间到 %2</source>
        <translation>Cleaning %1 leaves %2 free</translation>
    </message>
</context>
</TS>
