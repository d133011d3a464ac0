<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>Updater</name>
    <message>
        <source>当前版本 %1 已是最新。</source>
        <translation>Version %1 is the latest.</translation>
    </message>
    <message>
        <source>更新地址无效。</source>
        <translation>The update address is not valid.</translation>
    </message>
    <message>
        <source>无法连接更新服务器。</source>
        <translation>The update server could not be reached.</translation>
    </message>
    <message>
        <source>更新服务器返回了错误 %1。</source>
        <translation>The update server answered with error %1.</translation>
    </message>
    <message>
        <source>更新服务器的重定向过多,已停止。</source>
        <translation>The update server redirected too many times, so the update stopped.</translation>
    </message>
    <message>
        <source>更新服务器没有响应,已超时。</source>
        <translation>The update server stopped responding and the update timed out.</translation>
    </message>
    <message>
        <source>更新信息格式有误,无法读取。</source>
        <translation>The update information is malformed and could not be read.</translation>
    </message>
    <message>
        <source>下载的文件大小不符,已删除。</source>
        <translation>The downloaded file has the wrong size and was deleted.</translation>
    </message>
    <message>
        <source>下载的文件签名无效,已删除。</source>
        <translation>The downloaded file has no valid signature and was deleted.</translation>
    </message>
    <message>
        <source>无法保存下载的文件。</source>
        <translation>The downloaded file could not be saved.</translation>
    </message>
    <message>
        <source>软件更新</source>
        <translation>Software Update</translation>
    </message>
    <message>
        <source>新版本 %1 可用</source>
        <translation>Version %1 is available</translation>
    </message>
    <message>
        <source>你现在使用的是 %1。</source>
        <translation>You have version %1.</translation>
    </message>
    <message>
        <source>更新说明</source>
        <translation>Release notes</translation>
    </message>
    <message>
        <source>下载</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>以后再说</source>
        <translation>Not Now</translation>
    </message>
    <message>
        <source>正在下载…</source>
        <translation>Downloading…</translation>
    </message>
</context>
</TS>
