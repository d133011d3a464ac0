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
        <extracomment>summary of an undone clean: the bytes put back from the Trash</extracomment>
        <source>已恢复 %1</source>
        <translation>Restored %1</translation>
    </message>
    <message numerus="yes">
        <extracomment>summary of an undone clean: items left in the Trash (emptied, or their place taken)</extracomment>
        <source>,%n 项未能恢复</source>
        <translation>
            <numerusform>, %n item could not be put back</numerusform>
            <numerusform>, %n items could not be put back</numerusform>
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
<context>
    <name>Window</name>
    <message>
        <extracomment>window title and brand name</extracomment>
        <source>Lumabroom</source>
        <translation>Lumabroom</translation>
    </message>
    <message>
        <extracomment>top bar: caption under the name</extracomment>
        <source>开发者缓存清理</source>
        <translation>Developer cache cleaner</translation>
    </message>
    <message>
        <extracomment>top bar: tooltip of the rescan button; %1 is its shortcut</extracomment>
        <source>重新扫描 (%1)</source>
        <translation>Rescan (%1)</translation>
    </message>
    <message>
        <extracomment>top bar: tooltip of the options button</extracomment>
        <source>选项</source>
        <translation>Options</translation>
    </message>
    <message>
        <extracomment>options: show rules that found nothing</extracomment>
        <source>显示空项</source>
        <translation>Show empty items</translation>
    </message>
    <message>
        <extracomment>options: the appearance picker</extracomment>
        <source>外观</source>
        <translation>Appearance</translation>
    </message>
    <message>
        <extracomment>options: the chart colours picker</extracomment>
        <source>图表配色</source>
        <translation>Chart colours</translation>
    </message>
    <message>
        <extracomment>chart colours: the hue palette</extracomment>
        <source>彩色</source>
        <translation>Colourful</translation>
    </message>
    <message>
        <extracomment>chart colours: the palette for colour-blind eyes</extracomment>
        <source>色盲友好</source>
        <translation>Colour-blind safe</translation>
    </message>
    <message>
        <extracomment>options: the language picker</extracomment>
        <source>语言</source>
        <translation>Language</translation>
    </message>
    <message>
        <extracomment>options: ask for a newer version</extracomment>
        <source>检查更新…</source>
        <translation>Check for Updates…</translation>
    </message>
    <message>
        <extracomment>panel: back to the overview</extracomment>
        <source>全部分类</source>
        <translation>All categories</translation>
    </message>
    <message>
        <extracomment>panel: a scan found nothing</extracomment>
        <source>已经很干净了</source>
        <translation>Already clean</translation>
    </message>
    <message>
        <extracomment>panel: under the title when a scan found nothing</extracomment>
        <source>没有发现可清理的缓存;可在右上角选项里打开「显示空项」</source>
        <translation>No cleanable caches found; turn on “Show empty items” in the options at the top right</translation>
    </message>
    <message>
        <extracomment>panel: the rule of the route is gone</extracomment>
        <source>该项已不存在</source>
        <translation>This item no longer exists</translation>
    </message>
    <message numerus="yes">
        <extracomment>group header: the number of rules</extracomment>
        <source>%n 项</source>
        <translation>
            <numerusform>%n item</numerusform>
            <numerusform>%n items</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>rule card: tooltip of the checkbox</extracomment>
        <source>勾选/取消整组</source>
        <translation>Select or deselect the whole group</translation>
    </message>
    <message numerus="yes">
        <extracomment>bottom bar: selection status with the space left after cleaning</extracomment>
        <source>已选 %n 项 · 清理后剩余 %1</source>
        <translation>
            <numerusform>%n selected · %1 free after cleaning</numerusform>
            <numerusform>%n selected · %1 free after cleaning</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <extracomment>bottom bar: selection status</extracomment>
        <source>已选 %n 项</source>
        <translation>
            <numerusform>%n selected</numerusform>
            <numerusform>%n selected</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>bottom bar: clean button with the selected size</extracomment>
        <source>清理 %1</source>
        <translation>Clean %1</translation>
    </message>
    <message>
        <extracomment>bottom bar: button beside the summary that takes back the last clean to the Trash</extracomment>
        <source>撤销</source>
        <translation>Undo</translation>
    </message>
    <message>
        <extracomment>bottom bar: tooltip of the undo button</extracomment>
        <source>将上次清理移到废纸篓的项目放回原处</source>
        <translation>Put what the last clean moved to the Trash back where it was</translation>
    </message>
    <message>
        <extracomment>bottom bar: clean button with nothing selected</extracomment>
        <source>清理</source>
        <translation>Clean</translation>
    </message>
    <message numerus="yes">
        <extracomment>clean dialog: title; %1 is the size</extracomment>
        <source>清理选中的 %n 项,共 %1?</source>
        <translation>
            <numerusform>Clean the %n selected item, %1 in all?</numerusform>
            <numerusform>Clean the %n selected items, %1 in all?</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>clean dialog: to the Trash</extracomment>
        <source>移到废纸篓</source>
        <translation>Move to Trash</translation>
    </message>
    <message>
        <extracomment>clean dialog: delete at once</extracomment>
        <source>直接删除(立即释放空间)</source>
        <translation>Delete Now (frees space at once)</translation>
    </message>
    <message>
        <extracomment>clean dialog: cancel</extracomment>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <extracomment>clean dialog: message</extracomment>
        <source>标记为「安全」的缓存删除后会由对应工具自动重建。</source>
        <translation>Caches marked “Safe” are rebuilt by their tools after deletion.</translation>
    </message>
</context>
</TS>
