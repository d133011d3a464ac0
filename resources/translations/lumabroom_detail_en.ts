<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>Detail</name>
    <message>
        <source>在 Finder 中显示</source>
        <translation>Show in Finder</translation>
    </message>
    <message>
        <source>在文件管理器中显示</source>
        <translation>Show in File Manager</translation>
    </message>
    <message>
        <source>复制路径</source>
        <translation>Copy Path</translation>
    </message>
    <message numerus="yes">
        <source>%n 项</source>
        <translation>
            <numerusform>%n item</numerusform>
            <numerusform>%n items</numerusform>
        </translation>
    </message>
    <message>
        <source>此项没有缓存</source>
        <translation>Nothing cached here</translation>
    </message>
    <message>
        <source>目录不存在或已被清理</source>
        <translation>The folder doesn't exist or has been cleaned</translation>
    </message>
    <message>
        <source>此项只统计大小,不直接删除</source>
        <translation>This item is only measured, not deleted here</translation>
    </message>
    <message>
        <source>复制命令</source>
        <translation>Copy Command</translation>
    </message>
    <message>
        <source>取消全选</source>
        <translation>Deselect All</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Select All</translation>
    </message>
    <message numerus="yes">
        <source>已选 %1/%n 项 · %2</source>
        <translation>
            <numerusform>%1 of %n item selected · %2</numerusform>
            <numerusform>%1 of %n items selected · %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>展开其余 %n 项 · %1</source>
        <translation>
            <numerusform>Show %n more · %1</numerusform>
            <numerusform>Show %n more · %1</numerusform>
        </translation>
    </message>
    <message>
        <source>收起</source>
        <translation>Show Fewer</translation>
    </message>
    <message numerus="yes">
        <source>其余 %n 项共 %1(单个 &lt; 100 MB),可用上方「全选」整组勾选</source>
        <translation>
            <numerusform>%n more item, %1 in all (each under 100 MB); Select All above ticks the whole group</numerusform>
            <numerusform>%n more items, %1 in all (each under 100 MB); Select All above ticks the whole group</numerusform>
        </translation>
    </message>
    <message>
        <source>删除 %1?</source>
        <translation>Delete %1?</translation>
    </message>
    <message>
        <source>删除 %1</source>
        <translation>Delete %1</translation>
    </message>
    <message>
        <source>将执行 ollama rm,需要时须重新下载模型。</source>
        <translation>Runs ollama rm; the model must be downloaded again when it is needed.</translation>
    </message>
    <message>
        <source>将该项目的会话 jsonl 移到废纸篓;memory/ 记忆保留。删除后无法在 Claude Code 里 resume 这些对话。</source>
        <translation>Moves the project's session jsonl files to the Trash; memory/ is kept. These conversations can't be resumed in Claude Code afterwards.</translation>
    </message>
    <message>
        <source>将执行 xcrun simctl delete,删除该模拟器及其全部数据(App、设置、照片等)。</source>
        <translation>Runs xcrun simctl delete, which removes the simulator with all its data (apps, settings, photos and more).</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>正在读取 Docker 占用分解…</source>
        <translation>Reading the Docker usage breakdown…</translation>
    </message>
    <message>
        <source>docker system df 需要几秒,镜像/容器/数据卷越多越慢</source>
        <translation>docker system df takes a few seconds, longer the more images, containers and volumes there are</translation>
    </message>
    <message>
        <source>OrbStack 未在运行</source>
        <translation>OrbStack isn't running</translation>
    </message>
    <message>
        <source>虚拟磁盘是 Linux 文件系统镜像,macOS 无法直接解析内部构成;启动后会自动细分并可执行清理</source>
        <translation>The virtual disk is a Linux file system image whose contents can't be read from outside; once started it is broken down by itself and can be cleaned</translation>
    </message>
    <message>
        <source>启动中…</source>
        <translation>Starting…</translation>
    </message>
    <message>
        <source>启动 OrbStack</source>
        <translation>Start OrbStack</translation>
    </message>
    <message>
        <source>执行中…</source>
        <translation>Running…</translation>
    </message>
    <message>
        <source>运行</source>
        <translation>Run</translation>
    </message>
    <message>
        <source>深度清理</source>
        <translation>Deep Clean</translation>
    </message>
    <message>
        <source>可回收 %1</source>
        <translation>Reclaimable %1</translation>
    </message>
    <message>
        <source>清理</source>
        <translation>Clean</translation>
    </message>
    <message>
        <source>删除所有未被容器挂载的数据卷?</source>
        <translation>Delete all volumes that no container mounts?</translation>
    </message>
    <message>
        <source>数据卷里可能保存着数据库等重要数据,删除后无法恢复。</source>
        <translation>Volumes may hold important data such as databases. This can't be undone.</translation>
    </message>
    <message>
        <source>删除未使用数据卷</source>
        <translation>Delete Unused Volumes</translation>
    </message>
    <message>
        <source>正在读取镜像/容器/数据卷清单…</source>
        <translation>Reading the list of images, containers and volumes…</translation>
    </message>
    <message>
        <source>镜像</source>
        <translation>Images</translation>
    </message>
    <message>
        <source>容器</source>
        <translation>Containers</translation>
    </message>
    <message>
        <source>数据卷</source>
        <translation>Volumes</translation>
    </message>
    <message numerus="yes">
        <source>%n 个 · %1</source>
        <translation>
            <numerusform>%n item · %1</numerusform>
            <numerusform>%n items · %1</numerusform>
        </translation>
    </message>
    <message>
        <source>数据卷内的数据将永久丢失,无法恢复。</source>
        <translation>The data in this volume will be lost for good and can't be recovered.</translation>
    </message>
    <message>
        <source>正在被使用的资源 docker 会拒绝删除并提示失败。</source>
        <translation>Docker refuses to delete what is in use, and the failure will be shown.</translation>
    </message>
    <message>
        <source>正在检查各 worktree 的 git 状态…</source>
        <translation>Checking the git state of each worktree…</translation>
    </message>
    <message>
        <source>没有派生 worktree</source>
        <translation>No derived worktrees</translation>
    </message>
    <message>
        <source>会话库里的主仓都没有登记 worktree</source>
        <translation>None of the main repositories in the session store has a registered worktree</translation>
    </message>
    <message numerus="yes">
        <source>可安全删除 %n 个 · %1</source>
        <translation>
            <numerusform>%n safe to delete · %1</numerusform>
            <numerusform>%n safe to delete · %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>有丢失风险 %n 个 · %1</source>
        <translation>
            <numerusform>%n at risk of loss · %1</numerusform>
            <numerusform>%n at risk of loss · %1</numerusform>
        </translation>
    </message>
    <message>
        <source>在 Finder 中显示主仓</source>
        <translation>Show Main Repository in Finder</translation>
    </message>
    <message>
        <source>在文件管理器中显示主仓</source>
        <translation>Show Main Repository in File Manager</translation>
    </message>
    <message>
        <source>最后一次有文件改动的时间</source>
        <translation>The last time a file changed</translation>
    </message>
    <message>
        <source>计算中…</source>
        <translation>Calculating…</translation>
    </message>
    <message>
        <source>分支 %1 不会被删除,它上面的提交都还在</source>
        <translation>Branch %1 won't be deleted; its commits stay</translation>
    </message>
    <message>
        <source>无分支</source>
        <translation>No branch</translation>
    </message>
    <message>
        <source>游离检出:HEAD 直接指着某个提交,没有分支拴着它</source>
        <translation>Detached: HEAD points straight at a commit and no branch holds it</translation>
    </message>
    <message numerus="yes">
        <source>%n 个改动没提交</source>
        <translation>
            <numerusform>%n uncommitted change</numerusform>
            <numerusform>%n uncommitted changes</numerusform>
        </translation>
    </message>
    <message>
        <source>这些文件改了还没 commit,删掉 worktree 就没了</source>
        <translation>These files changed and aren't committed; they go with the worktree</translation>
    </message>
    <message numerus="yes">
        <source>%n 个提交只在这里</source>
        <translation>
            <numerusform>%n commit only here</numerusform>
            <numerusform>%n commits only here</numerusform>
        </translation>
    </message>
    <message>
        <source>这些提交不在任何分支和远端上,删掉之后没有任何东西指向它们,找不回来</source>
        <translation>These commits are on no branch and no remote; once deleted nothing points at them and they can't be found again</translation>
    </message>
    <message>
        <source>可安全删除</source>
        <translation>Safe to delete</translation>
    </message>
    <message>
        <source>没有没提交的改动,提交也都在分支上——分支不会被删,所以什么都不会丢</source>
        <translation>Nothing is uncommitted and every commit is on a branch, and branches stay, so nothing is lost</translation>
    </message>
    <message>
        <source>删除 worktree %1?</source>
        <translation>Delete worktree %1?</translation>
    </message>
    <message>
        <source>强制删除(丢弃未保存工作)</source>
        <translation>Force Delete (Discard Unsaved Work)</translation>
    </message>
    <message numerus="yes">
        <source>%n 个改了还没提交的文件</source>
        <translation>
            <numerusform>%n changed file not committed</numerusform>
            <numerusform>%n changed files not committed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n 个只存在于这里的提交(不在任何分支上)</source>
        <translation>
            <numerusform>%n commit that exists only here (on no branch)</numerusform>
            <numerusform>%n commits that exist only here (on no branch)</numerusform>
        </translation>
    </message>
    <message>
        <source>没有没提交的改动,提交也都在分支上。删掉这个工作副本不会丢任何东西——分支本身不会被删。</source>
        <translation>Nothing is uncommitted and every commit is on a branch. Deleting this working copy loses nothing; the branch itself stays.</translation>
    </message>
    <message>
        <source>删掉之后这些东西找不回来:%1。</source>
        <translation>After deletion these can't be got back: %1.</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
    <message>
        <source>
这个仓库没有配远端,也就没有别处的备份。</source>
        <translation>
This repository has no remote, so there is no backup elsewhere.</translation>
    </message>
    <message>
        <source>删除所选</source>
        <translation>Delete Selected</translation>
    </message>
    <message>
        <source>最大的会话</source>
        <translation>Largest Sessions</translation>
    </message>
    <message numerus="yes">
        <source>删除所选 %n 个会话,共 %1?</source>
        <translation>
            <numerusform>Delete the %n selected session, %1 in all?</numerusform>
            <numerusform>Delete the %n selected sessions, %1 in all?</numerusform>
        </translation>
    </message>
    <message>
        <source>将所选会话文件移到废纸篓;之后无法在对应工具里 resume 这些对话。</source>
        <translation>Moves the selected session files to the Trash; these conversations can't be resumed in their tool afterwards.</translation>
    </message>
    <message>
        <source>将该会话文件移到废纸篓;之后无法在对应工具里 resume 这份对话。</source>
        <translation>Moves this session file to the Trash; this conversation can't be resumed in its tool afterwards.</translation>
    </message>
</context>
</TS>
