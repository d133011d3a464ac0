<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>Chart</name>
    <message>
        <extracomment>sunburst: tooltip hint of a category slice</extracomment>
        <source>点击聚焦该分类</source>
        <translation>Click to focus this category</translation>
    </message>
    <message>
        <extracomment>sunburst: tooltip hint of a rule</extracomment>
        <source>点击进入</source>
        <translation>Click to open</translation>
    </message>
    <message>
        <extracomment>sunburst: the grey slice of a category's small rules</extracomment>
        <source>较小项目</source>
        <translation>Smaller items</translation>
    </message>
    <message>
        <extracomment>sunburst: tooltip hint of the grey slice</extracomment>
        <source>点击聚焦该分类查看</source>
        <translation>Click to focus this category and see them</translation>
    </message>
    <message>
        <extracomment>sunburst: tooltip hint of an entry around a rule; the rule's name</extracomment>
        <source>点击进入 %1</source>
        <translation>Click to open %1</translation>
    </message>
    <message>
        <extracomment>sunburst: tooltip hint of an entry in a rule's view</extracomment>
        <source>点击勾选/取消</source>
        <translation>Click to select or clear</translation>
    </message>
    <message numerus="yes">
        <extracomment>sunburst: the slice of the entries beyond the first 40</extracomment>
        <source>其他 %n 项</source>
        <translation>
            <numerusform>%n other item</numerusform>
            <numerusform>%n other items</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>sunburst centre: scan progress, rules done of all</extracomment>
        <source>扫描中 %1</source>
        <translation>Scanning %1</translation>
    </message>
    <message>
        <extracomment>sunburst centre: the hint on the overview when nothing is selected</extracomment>
        <source>点击扇区深入</source>
        <translation>Click a sector to go deeper</translation>
    </message>
    <message>
        <extracomment>sunburst centre: under the selected size; the total size</extracomment>
        <source>已选待清理 · 共 %1</source>
        <translation>Selected for cleaning · of %1</translation>
    </message>
    <message>
        <extracomment>sunburst: accessible name of the chart</extracomment>
        <source>磁盘占用图</source>
        <translation>Disk usage chart</translation>
    </message>
</context>
</TS>
