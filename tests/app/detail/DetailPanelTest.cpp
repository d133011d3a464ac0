// The panel against a real model: fake docker and git scripts, real session files, and dialogs
// answered while they are open, as a user would.

#include "DisplayName.h"
#include "FakeTool.h"
#include "ModelTestSupport.h"
#include "RuleDetailPanel.h"

#include "host/ToolPaths.h"
#include "support/TempTree.h"
#include "support/Text.h"
#include "support/WidgetApplication.h"
#include "text/Formatting.h"
#include "text/Localization.h"
#include "tools/DockerCLI.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <filesystem>

namespace lumabroom {
namespace {

namespace fs = std::filesystem;
using namespace test;

const auto* const environment = ::testing::AddGlobalTestEnvironment(new test::WidgetApplication);

// Lets queued rebuilds run and the old columns go.
void flush() {
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

QWidget* column(RuleDetailPanel& panel) { return panel.findChild<QScrollArea*>()->widget(); }

template <class W>
std::vector<W*> named(RuleDetailPanel& panel, const QString& objectName) {
    std::vector<W*> found;
    for (W* w : column(panel)->findChildren<W*>(objectName)) found.push_back(w);
    return found;
}

template <class W = QAbstractButton>
W* control(RuleDetailPanel& panel, const QString& accessibleName) {
    W* match = nullptr;
    for (W* w : column(panel)->findChildren<W*>()) {
        if (w->accessibleName() != accessibleName) continue;
        EXPECT_EQ(match, nullptr) << "two controls named " << accessibleName.toStdString();
        match = w;
    }
    return match;
}

QMessageBox* dialog(RuleDetailPanel& panel) {
    QMessageBox* box = panel.findChild<QMessageBox*>("confirmation");
    return box && box->isVisible() ? box : nullptr;
}

QAbstractButton* dialogButton(QMessageBox* box, const QString& text) {
    for (QAbstractButton* b : box->buttons())
        if (b->text() == text) return b;
    return nullptr;
}

// Return and Escape must never destroy: the default and the Escape button are "取消".
void expectSafeKeys(QMessageBox* box) {
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->defaultButton()->text(), "取消");
    EXPECT_EQ(box->escapeButton()->text(), "取消");
}

std::vector<std::string> entryNames(RuleDetailPanel& panel) {
    std::vector<std::string> names;
    for (QWidget* row : named<QWidget>(panel, "entry-row")) names.push_back(row->accessibleName().toStdString());
    return names;
}

RuleScanResult sized(CleanRule rule, int count) {
    std::vector<std::pair<std::string, std::int64_t>> entries;
    for (int i = 0; i < count; ++i) entries.push_back({"/cache/e" + std::to_string(i), 1000 - i});
    return makeResult(std::move(rule), entries);
}

CleanRule reportOnly(std::string id, std::string note) {
    CleanRule rule = makeRule(std::move(id), Category::tool, SafetyLevel::reportOnly);
    rule.noteKey = std::move(note);
    return rule;
}

// A script that logs its arguments and holds every call whose arguments match `hold` until
// release() is called; calls to "system df -v" answer with `inventory`.
struct HeldTool {
    HeldTool(const fs::path& binary, const std::string& hold, const std::string& inventory = {}) {
        writeText(folder / "inventory.json", inventory);
        writeText(binary, "#!/bin/sh\nd='" + folder.string()
                              + "'\nprintf '%s\\n' \"$*\" >> \"$d/log\"\n"
                                "case \"$*\" in\n  "
                              + hold
                              + ") while [ ! -e \"$d/open\" ]; do sleep 0.02; done;;\n"
                                "  'system df -v'*) cat \"$d/inventory.json\";;\nesac\n");
        fs::permissions(binary, fs::perms::owner_all);
    }
    void release() const { writeText(folder / "open", ""); }
    std::string log() const { return readFile(folder / "log"); }

    TempTree tree;
    fs::path folder = tree.dir("state");
};

struct Home {
    TempTree tree;
    ScopedEnv env{{"HOME", (tree / "home").string()}, {"XDG_DATA_HOME", (tree / "home/.local/share").string()}};
    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    Home() { tree.dir("home"); }
    ~Home() {
        for (Tool tool : {Tool::docker, Tool::git}) ToolPaths::setOverride(tool, std::nullopt);
        DockerCLI::setSystemSocketForTesting(std::nullopt);
    }
};

} // namespace

TEST(RuleDetailPanel, LongListsFoldAfterTenRowsAndTickingFollowsTheModel) {
    for (int count : {15, 16}) {
        SCOPED_TRACE(count);
        Home s;
        const CleanRule rule = makeRule("x.cache", Category::tool, SafetyLevel::safe);
        AppModel model(testServices({rule}, s.log));
        model.apply(sized(rule, count));
        RuleDetailPanel panel(model, "x.cache");
        flush();
        const auto unfold = named<QPushButton>(panel, "unfold");
        if (count == 15) {
            EXPECT_EQ(entryNames(panel).size(), 15u);
            EXPECT_TRUE(unfold.empty());
            continue;
        }
        EXPECT_EQ(entryNames(panel).size(), 10u);
        ASSERT_EQ(unfold.size(), 1u);
        EXPECT_EQ(unfold[0]->text().toStdString(),
                  "⌄ 展开其余 6 项 · " + Formatting::bytes(990 + 989 + 988 + 987 + 986 + 985));

        // Ticking a row's box and clicking a row both go to the model.
        control<QCheckBox>(panel, "e0")->click();
        flush();
        QTest::mouseClick(named<QWidget>(panel, "entry-row")[2], Qt::LeftButton);
        flush();
        EXPECT_EQ(model.selectedEntryIDs(), (AppModel::IDSet{"/cache/e0", "/cache/e2"}));
        EXPECT_TRUE(control<QCheckBox>(panel, "e2")->isChecked());
        EXPECT_EQ(named<QLabel>(panel, "selection-summary")[0]->text().toStdString(),
                  "已选 2/16 项 · " + Formatting::bytes(1000 + 998));

        named<QPushButton>(panel, "unfold")[0]->click();
        flush();
        EXPECT_EQ(entryNames(panel).size(), 16u);
        ASSERT_EQ(named<QPushButton>(panel, "fold").size(), 1u);
        control(panel, "全选")->click();
        flush();
        EXPECT_EQ(model.selectedEntryCount(), 16);
        EXPECT_NE(control(panel, "取消全选"), nullptr);
    }
}

TEST(RuleDetailPanel, AReportOnlyRuleCanNeitherBeTickedNorSelectedAndOffersItsCommand) {
    Home s;
    const CleanRule rule = reportOnly("x.report", "Run `brew cleanup --prune=all` yourself");
    AppModel model(testServices({rule}, s.log));
    model.apply(sized(rule, 3));
    RuleDetailPanel panel(model, "x.report");
    flush();
    ASSERT_EQ(entryNames(panel).size(), 3u);
    EXPECT_TRUE(column(panel)->findChildren<QCheckBox*>().empty());
    EXPECT_EQ(control(panel, "全选"), nullptr);
    QTest::mouseClick(named<QWidget>(panel, "entry-row")[0], Qt::LeftButton);
    flush();
    EXPECT_EQ(model.selectedEntryCount(), 0);

    control(panel, "复制命令")->click();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "brew cleanup --prune=all");
}

TEST(RuleDetailPanel, AVolumePruneAsksFirstAndOtherPrunesStartAtOnce) {
    Home s;
    const fs::path socket = s.tree.file("docker.sock");
    DockerCLI::setSystemSocketForTesting(socket.string());
    HeldTool docker(
        s.tree / "bin/docker", "*prune*",
        R"({"Images":[{"Containers":"0","ID":"sha256:0123456789abcdef","Repository":"node","Size":"1GB","Tag":"20"}],)"
        R"("Containers":[],"Volumes":[{"Links":"0","Name":"pgdata","Size":"2GB"}]})");
    ToolPaths::setOverride(Tool::docker, (s.tree / "bin/docker").string());
    const CleanRule rule = makeRule("tool.docker", Category::tool, SafetyLevel::reportOnly);
    AppModel model(testServices({rule}, s.log));
    RuleScanResult result{
        rule,
        {{"/orb/docker/images", 1000, EntryLabel{DockerUsageLabel{DockerUsageKind::images, "3", "800MB"}}},
         {"/orb/docker/volumes", 500, EntryLabel{DockerUsageLabel{DockerUsageKind::volumes, "1", {}}}}}};
    model.apply(result);
    RuleDetailPanel panel(model, "tool.docker");
    ASSERT_TRUE(waitUntil([&] { return model.dockerInventory().has_value(); }));
    flush();
    // No entry list and no report-only box beside a breakdown; the inventory's volumes and images open.
    EXPECT_TRUE(entryNames(panel).empty());
    EXPECT_EQ(control(panel, "删除 node:20")->isEnabled(), true);
    EXPECT_NE(control(panel, "删除 pgdata"), nullptr);
    EXPECT_EQ(
        named<QWidget>(panel, "prune-images")[0]->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly)->text(),
        "可回收 800MB");

    control(panel, "清理 " + QString::fromStdString(title(DockerPruneTarget::volumes)))->click();
    QMessageBox* box = dialog(panel);
    expectSafeKeys(box);
    EXPECT_EQ(box->text(), "删除所有未被容器挂载的数据卷?");
    QTest::keyClick(box, Qt::Key_Escape);
    flush();
    EXPECT_EQ(dialog(panel), nullptr);
    EXPECT_FALSE(model.pruningTarget());

    control(panel, "清理 " + QString::fromStdString(title(DockerPruneTarget::buildCache)))->click();
    EXPECT_EQ(model.pruningTarget(), DockerPruneTarget::buildCache);
    EXPECT_EQ(dialog(panel), nullptr);
    flush();
    // While one prune runs nothing else of the card can start.
    for (DockerPruneTarget other :
         {DockerPruneTarget::images, DockerPruneTarget::containers, DockerPruneTarget::volumes})
        EXPECT_FALSE(control(panel, "清理 " + QString::fromStdString(title(other)))->isEnabled());
    EXPECT_EQ(control(panel, "清理 " + QString::fromStdString(title(DockerPruneTarget::buildCache))), nullptr);
    EXPECT_FALSE(control(panel, "删除 pgdata")->isEnabled());
    docker.release();
    ASSERT_TRUE(waitUntil([&] { return !model.pruningTarget() && !model.isLoadingInventory(); }));
    flush();

    control(panel, "清理 " + QString::fromStdString(title(DockerPruneTarget::volumes)))->click();
    dialogButton(dialog(panel), "删除未使用数据卷")->click();
    EXPECT_EQ(model.pruningTarget(), DockerPruneTarget::volumes);
    ASSERT_TRUE(waitUntil([&] { return !model.pruningTarget() && !model.isLoadingInventory(); }));
    EXPECT_NE(docker.log().find("builder prune"), std::string::npos);
    EXPECT_NE(docker.log().find("volume prune"), std::string::npos);
}

TEST(RuleDetailPanel, AWorktreeDialogSaysWhatIsLostAndOneRemovalRunsAtATime) {
    Home s;
    HeldTool git(s.tree / "bin/git", "*worktree*");
    ToolPaths::setOverride(Tool::git, (s.tree / "bin/git").string());
    WorktreeInfo dirty, clean;
    dirty.path = s.tree.dir("wt/dirty");
    dirty.repoName = "dirty";
    dirty.parentRepo = s.tree / "repo";
    dirty.branch = "feature";
    dirty.size = 4000;
    dirty.dirtyFiles = 3;
    clean = dirty;
    clean.path = s.tree.dir("wt/clean");
    clean.repoName = "clean";
    clean.size = 1000;
    clean.dirtyFiles = 0;
    clean.hasRemote = true;
    ModelServices services =
        testServices({makeRule("tool.codex-worktrees", Category::code, SafetyLevel::caution)}, s.log);
    services.discoverWorktrees = [=](const WorktreeDiscovery::UpdateCallback& onUpdate) { onUpdate({dirty, clean}); };
    AppModel model(services);
    RuleDetailPanel panel(model, "tool.codex-worktrees");
    ASSERT_TRUE(waitUntil([&] { return model.worktrees() && !model.isLoadingWorktrees(); }));
    flush();
    ASSERT_EQ(named<QWidget>(panel, "worktree-row").size(), 2u);

    const struct {
        std::string name, warning, destroy;
    } cases[] = {
        {"dirty", "删掉之后这些东西找不回来:3 个改了还没提交的文件。\n这个仓库没有配远端,也就没有别处的备份。",
         "强制删除(丢弃未保存工作)"},
        {"clean", "没有没提交的改动,提交也都在分支上。删掉这个工作副本不会丢任何东西——分支本身不会被删。", "删除"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        control(panel, QString::fromStdString("git worktree remove " + c.name))->click();
        QMessageBox* box = dialog(panel);
        expectSafeKeys(box);
        EXPECT_EQ(box->text().toStdString(), "删除 worktree " + c.name + "?");
        EXPECT_EQ(box->informativeText().toStdString(), c.warning);
        EXPECT_NE(dialogButton(box, QString::fromStdString(c.destroy)), nullptr);
        QTest::keyClick(box, Qt::Key_Return);
        flush();
    }
    EXPECT_FALSE(model.removingWorktreeID());

    control(panel, "git worktree remove dirty")->click();
    dialogButton(dialog(panel), "强制删除(丢弃未保存工作)")->click();
    EXPECT_EQ(model.removingWorktreeID(), dirty.id());
    flush();
    EXPECT_EQ(control(panel, "git worktree remove dirty"), nullptr); // a spinner instead
    EXPECT_FALSE(control(panel, "git worktree remove clean")->isEnabled());
    git.release();
    ASSERT_TRUE(waitUntil([&] { return !model.removingWorktreeID(); }));
    EXPECT_EQ(git.log(), "-C " + dirty.parentRepo.string() + " worktree remove --force " + dirty.path.string() + "\n");
}

TEST(RuleDetailPanel, ABatchSessionDeleteMovesExactlyTheTickedFilesToTheTrash) {
    Home s;
    const fs::path a = s.tree.file("home/.codex/sessions/2025/06/a.jsonl", 3000);
    const fs::path b = s.tree.file("home/.codex/sessions/2025/06/b.jsonl", 2000);
    const fs::path c = s.tree.file("home/.codex/sessions/2025/06/c.jsonl", 1000);
    const CleanRule rule = makeRule("code.codex-sessions", Category::code, SafetyLevel::caution);
    AppModel model(testServices({rule}, s.log));
    model.apply(RuleScanResult{rule, {{s.tree / "home/.codex/sessions", 6000, {}}}});
    RuleDetailPanel panel(model, "code.codex-sessions");
    ASSERT_TRUE(waitUntil([&] { return model.topSessions() && model.topSessions()->size() == 3; }));
    flush();
    auto sessionRows = [&] { return named<QWidget>(panel, "session-row"); };
    ASSERT_EQ(sessionRows().size(), 3u);
    sessionRows()[0]->findChild<QCheckBox*>()->click();
    flush();
    QTest::mouseClick(sessionRows()[2], Qt::LeftButton);
    flush();
    const std::int64_t ticked = model.topSessions()->at(0).size + model.topSessions()->at(2).size;
    EXPECT_EQ(named<QLabel>(panel, "sessions-summary")[0]->text().toStdString(),
              "已选 2/3 项 · " + Formatting::bytes(ticked));

    named<QPushButton>(panel, "sessions-delete")[0]->click();
    QMessageBox* box = dialog(panel);
    expectSafeKeys(box);
    EXPECT_EQ(box->text().toStdString(), "删除所选 2 个会话,共 " + Formatting::bytes(ticked) + "?");
    dialogButton(box, "删除")->click();
    ASSERT_TRUE(waitUntil([&] { return model.lastSummary().has_value(); }));
    EXPECT_FALSE(fs::exists(a));
    EXPECT_TRUE(fs::exists(b));
    EXPECT_FALSE(fs::exists(c));
    std::set<std::string> trashed, records;
    for (const auto& f : fs::directory_iterator(s.tree / "home/.local/share/Trash/files"))
        trashed.insert(f.path().filename());
    for (const auto& f : fs::directory_iterator(s.tree / "home/.local/share/Trash/info"))
        records.insert(f.path().filename());
    EXPECT_EQ(trashed, (std::set<std::string>{"a.jsonl", "c.jsonl"}));
    EXPECT_EQ(records, (std::set<std::string>{"a.jsonl.trashinfo", "c.jsonl.trashinfo"}));
    flush();
    EXPECT_TRUE(named<QPushButton>(panel, "sessions-delete").empty());
    ASSERT_TRUE(waitUntil([&] { return !model.isLoadingTopSessions(); }));
}

TEST(RuleDetailPanel, AnotherRuleStartsWithFreshStateAndEscapeGoesBack) {
    Home s;
    const CleanRule first = makeRule("x.first", Category::tool, SafetyLevel::safe);
    const CleanRule second = makeRule("tool.ollama", Category::tool, SafetyLevel::reportOnly);
    AppModel model(testServices({first, second}, s.log));
    model.apply(sized(first, 20));
    model.apply(makeResult(second, {{"/m/.ollama/models/manifests/r/lib/llama/7b", 50}}));
    RuleDetailPanel panel(model, "x.first");
    flush();
    named<QPushButton>(panel, "unfold")[0]->click();
    flush();
    EXPECT_EQ(entryNames(panel).size(), 20u);

    panel.showRule("tool.ollama");
    flush();
    const std::string model7b = displayName(model.result("tool.ollama")->entries[0]);
    EXPECT_EQ(entryNames(panel), (std::vector<std::string>{model7b}));
    control(panel, QString::fromStdString("删除 " + model7b))->click();
    QMessageBox* box = dialog(panel);
    expectSafeKeys(box);
    EXPECT_EQ(box->informativeText(), "将执行 ollama rm,需要时须重新下载模型。");

    panel.showRule("x.first");
    flush();
    EXPECT_EQ(dialog(panel), nullptr);
    EXPECT_EQ(entryNames(panel).size(), 10u);

    panel.setFocus();
    QTest::keyClick(&panel, Qt::Key_Escape);
    EXPECT_EQ(model.route(), Route::category(Category::tool));
}

} // namespace lumabroom

namespace lumabroom {
namespace {

std::vector<std::string> shownTexts(QWidget* root) {
    std::vector<std::string> texts;
    auto add = [&](const QString& text) {
        if (!text.isEmpty()) texts.push_back(text.toStdString());
    };
    for (QLabel* l : root->findChildren<QLabel*>()) {
        add(l->text());
        add(l->toolTip());
    }
    for (QAbstractButton* b : root->findChildren<QAbstractButton*>()) {
        add(b->text());
        add(b->toolTip());
        add(b->accessibleName());
    }
    if (auto* box = qobject_cast<QMessageBox*>(root)) {
        add(box->text());
        add(box->informativeText());
    }
    return texts;
}

} // namespace

TEST(RuleDetailPanel, EveryTextOfThePanelAndItsDialogsReadsInEnglish) {
    Home s;
    DockerCLI::setSystemSocketForTesting(s.tree.file("docker.sock").string());
    HeldTool docker(
        s.tree / "bin/docker", "never",
        R"({"Images":[{"Containers":"1","ID":"sha256:0123456789abcdef","Repository":"node","Size":"1GB","Tag":"20"}],)"
        R"("Containers":[{"ID":"3f2a1b4c5d6e7f80","Image":"node:20","Names":"web","Size":"12MB","Status":"Up"}],)"
        R"("Volumes":[{"Links":"0","Name":"pgdata","Size":"2GB"}]})");
    ToolPaths::setOverride(Tool::docker, (s.tree / "bin/docker").string());
    s.tree.file("home/.codex/sessions/2025/06/a.jsonl", 3000);
    s.tree.file("home/.codex/sessions/2025/06/b.jsonl", 2000);
    WorktreeInfo dirty;
    dirty.path = s.tree / "wt/dirty";
    dirty.repoName = "dirty";
    dirty.parentRepo = s.tree / "repo";
    dirty.size = 4000;
    dirty.dirtyFiles = 2;
    dirty.orphanCommits = 1;
    dirty.lastModified =
        std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()) - std::chrono::hours(50);
    WorktreeInfo pending = dirty;
    pending.path = s.tree / "wt/pending";
    pending.repoName = "pending";
    pending.branch = "main";
    pending.size.reset();
    pending.dirtyFiles = pending.orphanCommits = 0;

    const std::vector<CleanRule> rules{makeRule("x.cache", Category::tool, SafetyLevel::safe),
                                       makeRule("sys.tmp-folders", Category::system, SafetyLevel::safe),
                                       makeRule("x.report", Category::tool, SafetyLevel::reportOnly),
                                       makeRule("x.empty", Category::tool, SafetyLevel::safe),
                                       makeRule("tool.docker", Category::tool, SafetyLevel::reportOnly),
                                       makeRule("tool.orbstack", Category::tool, SafetyLevel::reportOnly),
                                       makeRule("tool.ollama", Category::tool, SafetyLevel::reportOnly),
                                       makeRule("code.codex-sessions", Category::code, SafetyLevel::caution),
                                       makeRule("tool.codex-worktrees", Category::code, SafetyLevel::caution)};
    ModelServices services = testServices(rules, s.log);
    services.discoverWorktrees = [=](const WorktreeDiscovery::UpdateCallback& onUpdate) { onUpdate({dirty, pending}); };
    AppModel model(services);
    model.apply(sized(rules[0], 16));
    model.apply(sized(rules[1], 61));
    model.apply(sized(rules[2], 2));
    model.apply(RuleScanResult{rules[3], {}});
    model.apply(RuleScanResult{
        rules[4], {{"/orb/docker/images", 10, EntryLabel{DockerUsageLabel{DockerUsageKind::images, "1", "1GB"}}}}});
    model.apply(makeResult(rules[5], {{"/h/.orbstack/data/data.img.raw", 100}}));
    model.apply(makeResult(rules[6], {{"/m/.ollama/models/manifests/r/lib/llama/7b", 50}}));
    model.apply(makeResult(rules[7], {{(s.tree / "home/.codex/sessions").string(), 5000}}));

    Localization::setLanguageForThisRun(AppLanguage::english);
    RuleDetailPanel panel(model, "x.cache");
    // As wide as the window's panel: longer English texts must wrap or cut, not push the column out.
    panel.resize(540, 760);
    panel.show();
    auto check = [&](const std::string& what, QWidget* root) {
        SCOPED_TRACE(what);
        const std::vector<std::string> texts = shownTexts(root);
        EXPECT_GE(texts.size(), 3u);
        for (const std::string& text : texts) EXPECT_FALSE(containsCjk(text)) << text;
    };
    auto answerEscape = [&] {
        QMessageBox* box = dialog(panel);
        if (!box) return ADD_FAILURE() << "no dialog";
        check(box->text().toStdString(), box);
        QTest::keyClick(box, Qt::Key_Escape);
        flush();
    };
    for (const CleanRule& rule : rules) {
        panel.showRule(rule.id);
        ASSERT_TRUE(waitUntil([&] {
            return !model.isLoadingInventory() && !model.isLoadingWorktrees() && !model.isLoadingTopSessions()
                   && !model.isRefiningOrbStack();
        }));
        flush();
        check(rule.id, &panel);
        EXPECT_LE(column(panel)->width(), panel.findChild<QScrollArea*>()->viewport()->width()) << rule.id;
    }
    panel.showRule("x.cache");
    flush();
    named<QPushButton>(panel, "unfold")[0]->click();
    flush();
    check("unfolded", &panel);

    panel.showRule("tool.ollama");
    flush();
    column(panel)->findChildren<QToolButton*>().back()->click();
    answerEscape();
    panel.showRule("tool.docker");
    ASSERT_TRUE(waitUntil([&] { return model.dockerInventory().has_value(); }));
    flush();
    named<QWidget>(panel, "prune-volumes")[0]->findChild<QPushButton*>()->click();
    answerEscape();
    for (const char* item : {"Delete node:20", "Delete pgdata"}) {
        control(panel, item)->click();
        answerEscape();
    }
    panel.showRule("tool.codex-worktrees");
    ASSERT_TRUE(waitUntil([&] { return model.worktrees().has_value(); }));
    flush();
    for (const char* name : {"git worktree remove dirty", "git worktree remove pending"}) {
        control(panel, name)->click();
        answerEscape();
    }
    panel.showRule("code.codex-sessions");
    ASSERT_TRUE(waitUntil([&] { return model.topSessions() && !model.isLoadingTopSessions(); }));
    flush();
    named<QPushButton>(panel, "sessions-toggle")[0]->click();
    flush();
    named<QPushButton>(panel, "sessions-delete")[0]->click();
    answerEscape();
    named<QWidget>(panel, "session-row")[0]->findChildren<QToolButton*>().back()->click();
    answerEscape();
    Localization::setLanguageForThisRun(AppLanguage::chinese);
}

} // namespace lumabroom

namespace lumabroom {

TEST(RuleDetailPanel, FoldingTheListScrollsBackToTheTopOfTheCard) {
    Home s;
    const CleanRule rule = makeRule("x.cache", Category::tool, SafetyLevel::safe);
    AppModel model(testServices({rule}, s.log));
    model.apply(sized(rule, 40));
    RuleDetailPanel panel(model, "x.cache");
    panel.resize(500, 300);
    panel.show();
    named<QPushButton>(panel, "unfold")[0]->click();
    flush();
    QScrollBar* bar = panel.findChild<QScrollArea*>()->verticalScrollBar();
    bar->setValue(bar->maximum());
    named<QPushButton>(panel, "fold")[0]->click();
    flush();
    ASSERT_EQ(entryNames(panel).size(), 10u);
    const QWidget* card = named<QWidget>(panel, "entries-card-top")[0];
    ASSERT_LT(card->y(), bar->maximum()); // so that staying at the bottom would show
    EXPECT_EQ(bar->value(), card->y());
}

TEST(RuleDetailPanel, AModelIsRemovedThroughItsToolOnlyAfterTheDialogSaysSo) {
    Home s;
    FakeTool ollama(s.tree / "bin/ollama");
    ToolPaths::setOverride(Tool::ollama, ollama.binary.string());
    const fs::path manifest = s.tree.file("home/.ollama/models/manifests/registry.ollama.ai/library/llama3/8b", 10);
    const CleanRule rule = makeRule("tool.ollama", Category::tool, SafetyLevel::reportOnly);
    AppModel model(testServices({rule}, s.log));
    model.apply(RuleScanResult{rule, {{manifest, 4000, {}}}});
    RuleDetailPanel panel(model, "tool.ollama");
    flush();
    // The report-only box stays away from a rule whose rows delete themselves.
    EXPECT_EQ(control(panel, "复制命令"), nullptr);
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        control(panel, "删除 llama3:8b")->click();
        QMessageBox* box = dialog(panel);
        expectSafeKeys(box);
        EXPECT_EQ(box->text(), "删除 llama3:8b?");
        QTest::keyClick(box, key);
        flush();
        EXPECT_EQ(dialog(panel), nullptr);
    }
    settle();
    EXPECT_TRUE(ollama.calls().empty());
    control(panel, "删除 llama3:8b")->click();
    dialogButton(dialog(panel), "删除")->click();
    ASSERT_TRUE(waitUntil([&] { return model.lastSummary().has_value(); }));
    EXPECT_EQ(ollama.calls(), (Calls{{"rm", "llama3:8b"}}));
    EXPECT_EQ(*model.lastSummary(), (ActionSummary{ActionSummary::OllamaModelDeleted{"llama3:8b", 4000}}));
    ToolPaths::setOverride(Tool::ollama, std::nullopt);
}

} // namespace lumabroom

namespace lumabroom {

TEST(RuleDetailPanel, AMaintenanceCommandRunsOnceAndReplacesTheReportOnlyBox) {
    Home s;
    HeldTool shell(s.tree / "bin/shell", "*");
    ToolPaths::setOverride(Tool::shell, (s.tree / "bin/shell").string());
    const CleanRule rule = reportOnly("pm.homebrew", "Run `brew cleanup` yourself");
    AppModel model(testServices({rule}, s.log));
    model.apply(sized(rule, 2));
    RuleDetailPanel panel(model, "pm.homebrew");
    flush();
    EXPECT_EQ(control(panel, "复制命令"), nullptr);
    control(panel, "运行")->click();
    EXPECT_EQ(model.runningCommandRuleID(), "pm.homebrew");
    flush();
    EXPECT_EQ(control(panel, "运行"), nullptr);
    EXPECT_NE(control<QWidget>(panel, "执行中…"), nullptr);
    shell.release();
    ASSERT_TRUE(waitUntil([&] { return model.lastSummary().has_value() && !model.runningCommandRuleID(); }));
    EXPECT_EQ(shell.log(), "-l -c brew cleanup --prune=all\n");
    flush();
    EXPECT_TRUE(control(panel, "运行")->isEnabled());
    ToolPaths::setOverride(Tool::shell, std::nullopt);
}

} // namespace lumabroom
