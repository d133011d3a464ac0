// The application's window over a home made here, driven through its widgets as a user would: the
// real catalogue scans the home, the desktop's Trash receives what is cleaned, and a real git
// repository loses a worktree. Every other outside tool the window could start is a script of the
// test that refuses; git's passes through to the real git and logs what it was asked.

#include "ContentView.h"
#include "MainWindow.h"
#include "ModelTestSupport.h"

#include "clean/CommandRunner.h"
#include "host/Settings.h"
#include "host/ToolPaths.h"
#include "model/AppModel.h"
#include "support/Process.h"
#include "support/TempTree.h"
#include "support/WidgetApplication.h"
#include "text/Formatting.h"
#include "tools/DockerCLI.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <set>

namespace lumabroom {
namespace {

namespace fs = std::filesystem;
using test::waitUntil;

// Generous: a loaded machine may take long, and a wait ends as soon as its condition holds.
constexpr auto kLimit = std::chrono::seconds(45);

// The window never needs a display; LUMABROOM_E2E_PLATFORM=xcb shows it on one (Xvfb) instead.
class OffscreenApplication : public test::WidgetApplication {
public:
    void SetUp() override {
        const QByteArray platform = qgetenv("LUMABROOM_E2E_PLATFORM");
        qputenv("QT_QPA_PLATFORM", platform.isEmpty() ? QByteArray("offscreen") : platform);
        WidgetApplication::SetUp();
    }
};
const auto* const environment = ::testing::AddGlobalTestEnvironment(new OffscreenApplication);

void makeExecutable(const fs::path& file, const std::string& script) {
    test::writeText(file, script);
    fs::permissions(file, fs::perms::owner_all);
}

// Lets queued rebuilds run and the widgets they replaced go.
void settle() {
    test::settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

class EndToEnd : public ::testing::Test {
protected:
    void SetUp() override {
        Settings::useFolder(home / ".config/Lumabroom");
        const auto git = CommandRunner::findBinary(ToolPaths::candidates(Tool::git));
        ASSERT_TRUE(git.has_value());
        realGit = *git;
        makeExecutable(bin / "git", "#!/bin/sh\nprintf '%s\\n' \"$*\" >> '" + (bin / "git.log").string() + "'\nexec '"
                                        + realGit + "' \"$@\"\n");
        ToolPaths::setOverride(Tool::git, (bin / "git").string());
        for (Tool tool : {Tool::sqlite3, Tool::shell, Tool::docker, Tool::ollama, Tool::xcrun, Tool::open}) {
            const fs::path script = bin / ("tool" + std::to_string(static_cast<int>(tool)));
            makeExecutable(script,
                           "#!/bin/sh\nprintf '%s\\n' \"$0 $*\" >> '" + (bin / "refused.log").string() + "'\nexit 1\n");
            ToolPaths::setOverride(tool, script.string());
        }
        DockerCLI::setSystemSocketForTesting((tree / "run/docker.sock").string());
    }

    void TearDown() override {
        // Nothing of this home asks for another tool: a call would mean the window reached out unasked.
        EXPECT_EQ(test::readFile(bin / "refused.log"), "");
        window.reset();
        model.reset();
        for (Tool tool : {Tool::git, Tool::sqlite3, Tool::shell, Tool::docker, Tool::ollama, Tool::xcrun, Tool::open})
            ToolPaths::setOverride(tool, std::nullopt);
        DockerCLI::setSystemSocketForTesting(std::nullopt);
    }

    // Git of the test itself, with an identity of its own and no configuration of the machine.
    void git(const fs::path& folder, std::vector<std::string> arguments) {
        std::vector<std::string> argv{
            realGit, "-C", folder.string(), "-c", "user.name=Tester", "-c", "user.email=tester@example.invalid"};
        argv.insert(argv.end(), arguments.begin(), arguments.end());
        const test::ProcessResult run =
            test::runProcess(argv, {{"HOME", home.string()}, {"GIT_CONFIG_NOSYSTEM", "1"}, {"PATH", "/usr/bin:/bin"}});
        ASSERT_EQ(run.status, 0) << run.err;
    }

    // Launches the window as the application does; it starts the first scan by itself.
    void launch() {
        model = std::make_unique<AppModel>();
        window = std::make_unique<MainWindow>(*model, nullptr);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        ASSERT_TRUE(waitUntil([this] { return !model->results().empty() && !model->isBusy(); }, kLimit));
        settle();
    }

    // The shown widget of that name; a rebuild may leave its predecessor until it is deleted.
    template <class W = QWidget>
    W* shown(const QString& name) const {
        for (W* w : window->findChildren<W*>(name))
            if (w->isVisible()) return w;
        return nullptr;
    }
    template <class W = QAbstractButton>
    W* named(const QString& accessibleName) const {
        for (W* w : window->findChildren<W*>())
            if (w->isVisible() && w->accessibleName() == accessibleName) return w;
        return nullptr;
    }

    void click(QWidget* widget) {
        ASSERT_NE(widget, nullptr);
        ASSERT_TRUE(widget->isEnabled());
        QTest::mouseClick(widget, Qt::LeftButton);
        settle();
    }

    // From the overview: open the rule's group, then its card.
    void openRule(const std::string& ruleID) {
        const RuleScanResult* result = model->result(ruleID);
        ASSERT_NE(result, nullptr) << ruleID;
        const QString card = QStringLiteral("rule.") + QString::fromStdString(ruleID);
        if (!shown(card))
            click(shown<QPushButton>(QStringLiteral("group.") + QString::fromLatin1(rawValue(result->rule.category))));
        click(shown<QPushButton>(card));
        ASSERT_EQ(model->route(), Route::rule(ruleID));
        ASSERT_NE(shown(QStringLiteral("detail")), nullptr);
    }

    // The detail panel's row of the entry at `path`: its name carries the full path as tooltip.
    QWidget* entryRow(const fs::path& path) const {
        for (QWidget* row : window->findChildren<QWidget*>(QStringLiteral("entry-row"))) {
            if (!row->isVisible()) continue;
            for (const QLabel* label : row->findChildren<QLabel*>())
                if (label->toolTip() == QString::fromStdString(path.string())) return row;
        }
        return nullptr;
    }
    int shownCount(const QString& name) const {
        int count = 0;
        for (const QWidget* w : window->findChildren<QWidget*>(name)) count += w->isVisible();
        return count;
    }

    test::TempTree tree;
    fs::path home = tree.dir("home");
    fs::path bin = tree.dir("bin");
    test::ScopedEnv env{{"HOME", home.string()},
                        {"XDG_DATA_HOME", (home / ".local/share").string()},
                        {"XDG_CACHE_HOME", (home / ".cache").string()},
                        {"XDG_CONFIG_HOME", (home / ".config").string()},
                        {"XDG_RUNTIME_DIR", tree.dir("run").string()},
                        {"TMPDIR", tree.dir("home/tmp").string() + "/"}};
    std::string realGit;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<MainWindow> window;
};

TEST_F(EndToEnd, TwoTickedEntriesGoToTheDesktopsTrashFromTheBottomBarAndComeBackWithUndo) {
    const fs::path browsers = home / ".cache/puppeteer";
    tree.file("home/.cache/puppeteer/chrome/linux-131/chrome", 48 * 1024);
    tree.file("home/.cache/puppeteer/chrome/linux-131/locales/en.pak", 8 * 1024);
    tree.file("home/.cache/puppeteer/firefox/linux-133/firefox", 24 * 1024);
    tree.file("home/.cache/puppeteer/chrome-headless-shell/linux-131/shell", 12 * 1024);
    const fs::path otherCache = tree.file("home/.npm/_cacache/index-v5/aa/bb", 4096);
    std::map<fs::path, std::string> contents;
    for (const auto& item : fs::recursive_directory_iterator(browsers))
        if (item.is_regular_file()) contents[item.path()] = test::readFile(item.path());
    launch();

    openRule("tool.puppeteer");
    const std::vector<fs::path> ticked{browsers / "chrome", browsers / "firefox"};
    const fs::path untouched = browsers / "chrome-headless-shell";
    ASSERT_EQ(shownCount(QStringLiteral("entry-row")), 3);
    std::int64_t tickedBytes = 0;
    for (const ScanEntry& entry : model->result("tool.puppeteer")->entries)
        if (entry.url == ticked[0] || entry.url == ticked[1]) tickedBytes += entry.size;
    for (const fs::path& path : ticked) {
        QWidget* row = entryRow(path);
        ASSERT_NE(row, nullptr) << path;
        click(row->findChild<QCheckBox*>());
    }
    EXPECT_EQ(model->selectedEntryIDs(), (AppModel::IDSet{ticked[0].string(), ticked[1].string()}));

    click(window->content()->cleanButton());
    auto* dialog = shown<QDialog>(QStringLiteral("cleanDialog"));
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowTitle().toStdString(), "清理选中的 2 项,共 " + Formatting::bytes(tickedBytes) + "?");
    click(dialog->findChild<QPushButton*>(QStringLiteral("trash")));
    ASSERT_TRUE(waitUntil([this] { return model->lastSummary().has_value() && !model->isBusy(); }, kLimit));
    EXPECT_EQ(*model->lastSummary(), (ActionSummary{ActionSummary::Cleaned{tickedBytes, true, 0}}));

    // In the Trash, each with a record of where it came from, and gone from its place.
    const fs::path trash = home / ".local/share/Trash";
    std::set<std::string> trashed;
    for (const auto& item : fs::directory_iterator(trash / "files")) trashed.insert(item.path().filename());
    EXPECT_EQ(trashed, (std::set<std::string>{"chrome", "firefox"}));
    for (const fs::path& path : ticked) {
        SCOPED_TRACE(path.string());
        EXPECT_FALSE(fs::exists(path));
        const std::string record = test::readFile(trash / "info" / (path.filename().string() + ".trashinfo"));
        EXPECT_TRUE(record.starts_with("[Trash Info]\nPath=" + path.string() + "\nDeletionDate=")) << record;
    }
    EXPECT_TRUE(fs::exists(trash / "files/chrome/linux-131/locales/en.pak"));
    EXPECT_EQ(fs::file_size(untouched / "linux-131/shell"), 12u * 1024);
    EXPECT_EQ(fs::file_size(otherCache), 4096u);

    // The window follows: the rule is rescanned, the selection is empty, the bar tells what happened.
    EXPECT_TRUE(waitUntil([this] { return shownCount(QStringLiteral("entry-row")) == 1; }, kLimit));
    EXPECT_NE(entryRow(untouched), nullptr);
    EXPECT_EQ(model->selectedEntryCount(), 0);
    EXPECT_EQ(shown<QLabel>(QStringLiteral("lastSummary"))->text().toStdString(), model->lastSummary()->text());
    EXPECT_FALSE(window->content()->cleanButton()->isEnabled());
    // The rebuilt panel still wears the window's scheme, not the application's.
    const QWidget* column = shown(QStringLiteral("detail"))->findChild<QScrollArea*>()->widget();
    EXPECT_EQ(column->palette().color(QPalette::Window), window->palette().color(QPalette::Window));

    // Undo beside the outcome puts both back, byte for byte, and leaves the Trash without them.
    click(shown<QPushButton>(QStringLiteral("undo")));
    ASSERT_TRUE(waitUntil([this] { return !model->isUndoing() && !model->canUndo(); }, kLimit));
    EXPECT_EQ(*model->lastSummary(), (ActionSummary{ActionSummary::Restored{tickedBytes, 0}}));
    for (const auto& [path, content] : contents) {
        SCOPED_TRACE(path.string());
        ASSERT_TRUE(fs::exists(path));
        EXPECT_EQ(test::readFile(path), content);
    }
    EXPECT_TRUE(fs::is_empty(trash / "files"));
    EXPECT_TRUE(fs::is_empty(trash / "info"));
    EXPECT_TRUE(waitUntil([this] { return shownCount(QStringLiteral("entry-row")) == 3; }, kLimit));
}

TEST_F(EndToEnd, ADirtyWorktreeGoesOnlyAfterTheDialogHasSaidWhatIsLost) {
    const fs::path repo = tree.dir("home/code/shop");
    const fs::path dirty = home / ".codex/worktrees/a1b2/checkout";
    const fs::path clean = home / ".codex/worktrees/c3d4/docs";
    git(repo, {"init", "-q", "-b", "main"});
    test::writeText(repo / "README.md", "shop\n");
    git(repo, {"add", "README.md"});
    git(repo, {"commit", "-q", "-m", "start"});
    git(repo, {"worktree", "add", "-q", "-b", "feature/checkout", dirty.string()});
    git(repo, {"worktree", "add", "-q", "-b", "docs", clean.string()});
    test::writeText(dirty / "README.md", "shop, now with a checkout\n");
    test::writeText(dirty / "notes.txt", "unsaved thoughts\n");
    launch();

    openRule("tool.codex-worktrees");
    ASSERT_TRUE(waitUntil(
        [this] {
            return model->worktrees() && model->worktrees()->size() == 2 && !model->isLoadingWorktrees()
                   && named(QStringLiteral("git worktree remove checkout"));
        },
        kLimit));
    settle();
    std::int64_t dirtySize = -1;
    for (const WorktreeInfo& info : *model->worktrees())
        if (info.path == dirty) dirtySize = info.size.value_or(-1);
    const std::string logBefore = test::readFile(bin / "git.log");

    // Escape answers the dialog with its cancel, and nothing happens.
    click(named(QStringLiteral("git worktree remove checkout")));
    auto* box = shown<QMessageBox>(QStringLiteral("confirmation"));
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), QStringLiteral("删除 worktree checkout?"));
    EXPECT_EQ(
        box->informativeText(),
        QStringLiteral("删掉之后这些东西找不回来:2 个改了还没提交的文件。\n这个仓库没有配远端,也就没有别处的备份。"));
    EXPECT_EQ(box->defaultButton()->text(), QStringLiteral("取消"));
    QTest::keyClick(box, Qt::Key_Escape);
    settle();
    EXPECT_EQ(shown<QMessageBox>(QStringLiteral("confirmation")), nullptr);
    test::settle();
    EXPECT_FALSE(model->removingWorktreeID());
    EXPECT_TRUE(fs::exists(dirty / "notes.txt"));
    EXPECT_EQ(test::readFile(bin / "git.log"), logBefore);

    click(named(QStringLiteral("git worktree remove checkout")));
    box = shown<QMessageBox>(QStringLiteral("confirmation"));
    ASSERT_NE(box, nullptr);
    QAbstractButton* force = nullptr;
    for (QAbstractButton* b : box->buttons())
        if (b->text() == QStringLiteral("强制删除(丢弃未保存工作)")) force = b;
    click(force);
    ASSERT_TRUE(waitUntil([this] { return !model->removingWorktreeID() && model->lastSummary().has_value(); }, kLimit));
    EXPECT_EQ(*model->lastSummary(), (ActionSummary{ActionSummary::WorktreeRemoved{"checkout", dirtySize}}));

    EXPECT_FALSE(fs::exists(dirty));
    EXPECT_TRUE(fs::exists(clean / "README.md"));
    EXPECT_EQ(test::readFile(repo / "README.md"), "shop\n");
    const std::string log = test::readFile(bin / "git.log");
    EXPECT_EQ(
        log.substr(logBefore.size()).find("-C " + repo.string() + " worktree remove --force " + dirty.string() + "\n"),
        0u)
        << log.substr(logBefore.size());
    EXPECT_TRUE(waitUntil(
        [this] {
            return !named(QStringLiteral("git worktree remove checkout"))
                   && named(QStringLiteral("git worktree remove docs"));
        },
        kLimit));
}

} // namespace
} // namespace lumabroom
