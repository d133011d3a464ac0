<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>AppModel</name>
    <message>
        <extracomment>summary of a clean: freed bytes</extracomment>
        <source>已清理 %1</source>
        <translation>Cleaned %1</translation>
    </message>
    <message>
        <extracomment>summary of a clean to the Trash, after the freed bytes</extracomment>
        <source>,清空废纸篓后释放</source>
        <translation>, freed when the Trash is emptied</translation>
    </message>
    <message numerus="yes">
        <extracomment>summary of a clean: entries that failed</extracomment>
        <source>,%n 项失败</source>
        <translation>
            <numerusform>, %n item failed</numerusform>
            <numerusform>, %n items failed</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>summary: a maintenance command line ran</extracomment>
        <source>已执行 %1</source>
        <translation>Ran %1</translation>
    </message>
    <message>
        <extracomment>summary: a maintenance command line failed</extracomment>
        <source>%1 执行失败(命令不存在或报错)</source>
        <translation>%1 failed (no such command, or it reported an error)</translation>
    </message>
    <message>
        <extracomment>summary: simulator name, freed bytes</extracomment>
        <source>已删除模拟器 %1,释放 %2</source>
        <translation>Deleted simulator %1, freed %2</translation>
    </message>
    <message>
        <extracomment>summary: simulator name</extracomment>
        <source>删除 %1 失败(可能正在运行,请先关闭模拟器)</source>
        <translation>Deleting %1 failed (it may be running; close the simulator first)</translation>
    </message>
    <message>
        <extracomment>summary: model name, freed bytes</extracomment>
        <source>已删除模型 %1,释放 %2</source>
        <translation>Deleted model %1, freed %2</translation>
    </message>
    <message>
        <extracomment>summary: model name</extracomment>
        <source>删除 %1 失败:Ollama 未在运行或找不到 CLI</source>
        <translation>Deleting %1 failed: Ollama isn&apos;t running or its command line tool can&apos;t be found</translation>
    </message>
    <message>
        <extracomment>summary: project or session name</extracomment>
        <source>清理 %1 的会话记录失败(部分文件可能被占用)</source>
        <translation>Clearing the session records of %1 failed (some files may be in use)</translation>
    </message>
    <message>
        <extracomment>summary: worktree name, freed bytes</extracomment>
        <source>已删除 worktree %1,释放 %2</source>
        <translation>Deleted worktree %1, freed %2</translation>
    </message>
    <message>
        <extracomment>summary: worktree name</extracomment>
        <source>删除 %1 失败(git worktree remove 报错)</source>
        <translation>Deleting %1 failed (git worktree remove reported an error)</translation>
    </message>
    <message>
        <extracomment>summary: docker image, container or volume name, freed bytes</extracomment>
        <source>已删除 %1,释放 %2</source>
        <translation>Deleted %1, freed %2</translation>
    </message>
    <message>
        <extracomment>summary: docker image, container or volume name</extracomment>
        <source>删除 %1 失败(可能正在使用)</source>
        <translation>Deleting %1 failed (it may be in use)</translation>
    </message>
    <message>
        <extracomment>summary: prune target title, freed space as docker printed it</extracomment>
        <source>Docker %1已清理,释放 %2</source>
        <translation>Docker %1 cleaned, freed %2</translation>
    </message>
    <message>
        <extracomment>summary: prune target title</extracomment>
        <source>清理%1失败:daemon 未运行或命令出错</source>
        <translation>Cleaning %1 failed: the daemon isn&apos;t running or the command failed</translation>
    </message>
    <message numerus="yes">
        <extracomment>collapsed group: the rules not named</extracomment>
        <source>其余 %n 项</source>
        <translation>
            <numerusform>%n more</numerusform>
            <numerusform>%n more</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>entry name of an OrbStack disk image</extracomment>
        <source>虚拟磁盘镜像 · 启动 OrbStack 后重扫可细分</source>
        <translation>Virtual disk image · start OrbStack and rescan to break it down</translation>
    </message>
</context>
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
