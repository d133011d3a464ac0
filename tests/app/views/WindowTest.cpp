#include "AnimatedBytes.h"
#include "ContentView.h"
#include "MainWindow.h"
#include "ModelTestSupport.h"
#include "RuleCheckbox.h"
#include "SingleInstance.h"
#include "Theme.h"

#include "host/Settings.h"
#include "model/AppModel.h"
#include "support/TempTree.h"
#include "text/Formatting.h"
#include "text/Localization.h"
#include "update/Updater.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>

namespace lumabroom {
namespace {

class Application : public ::testing::Environment {
public:
    void SetUp() override {
        app = std::make_unique<QApplication>(argc, argv);
        settings = std::make_unique<QTemporaryDir>();
        Settings::useFolder(settings->path().toStdString());
        Localization::setLanguageForThisRun(AppLanguage::chinese);
    }
    void TearDown() override {
        settings.reset();
        app.reset();
    }

private:
    int argc = 1;
    char name[8] = "window";
    char* argv[2] = {name, nullptr};
    std::unique_ptr<QApplication> app;
    std::unique_ptr<QTemporaryDir> settings;
};
const auto* const environment = ::testing::AddGlobalTestEnvironment(new Application);

namespace fs = std::filesystem;
using test::makeResult;
using test::makeRule;

// A window over a model whose scans hand over `found`, which the test may change between scans; the
// scans after the first `freeScans` wait until the test opens the gate.
class WindowTest : public ::testing::Test {
protected:
    void start(std::vector<RuleScanResult> results, int freeScans = 100, bool withDisk = true) {
        found = std::make_shared<std::vector<RuleScanResult>>(std::move(results));
        std::vector<CleanRule> rules;
        for (const RuleScanResult& r : *found) rules.push_back(r.rule);
        ModelServices services = test::testServices(rules, std::make_shared<test::ServiceLog>());
        gate = std::make_shared<test::Gate>();
        started = std::make_shared<std::atomic<int>>(0);
        if (!withDisk) services.diskSpace = [] { return std::optional<DiskSpace>(); };
        services.clean = [cleaned = cleaned](const std::vector<ScanEntry>& entries, CleanMethod method) {
            std::lock_guard guard(cleaned->lock);
            for (const ScanEntry& e : entries) cleaned->calls.push_back(std::string(rawValue(method)) + " " + e.id());
            return CleanResult{};
        };
        services.scan = [gate = gate, started = started, freeScans,
                         found = found](const std::vector<CleanRule>&, const ModelServices::ResultSink& sink) {
            if ((*started)++ >= freeScans) gate->wait();
            for (const RuleScanResult& r : *found) sink(r);
        };
        model = std::make_unique<AppModel>(std::move(services));
        window = std::make_unique<MainWindow>(*model, nullptr);
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    void TearDown() override {
        if (gate) gate->open();
        if (model) test::waitUntil([this] { return !model->isBusy(); });
        window.reset();
        model.reset();
    }
    // Sixteen rules r0 … r15 of 1000 bytes down to 985, in one open group: more than the panel holds.
    void startWithAScrollingList() {
        std::vector<RuleScanResult> results;
        for (int i = 0; i < 16; ++i) {
            std::string id = "r"; // not "r" + to_string(i): GCC 12 warns of a false overlap there
            id += std::to_string(i);
            const std::string path = "/" + id;
            results.push_back(
                makeResult(makeRule(id, Category::packageManager, SafetyLevel::safe), {{path, 1000 - i}}));
        }
        start(results);
        scanned();
        model->toggleExpansion(Category::packageManager);
        test::settle();
    }
    void scanned() {
        ASSERT_TRUE(test::waitUntil([this] { return !model->isBusy(); }));
        test::settle();
    }

    template <class T = QWidget>
    T* find(const QString& name) const {
        return window->findChild<T*>(name);
    }
    // The group headers in order, by category.
    std::string groups() const {
        QStringList names;
        for (QWidget* w : window->findChildren<QPushButton*>())
            if (w->objectName().startsWith(QStringLiteral("group."))) names << w->objectName().mid(6);
        return names.join(QLatin1Char(' ')).toStdString();
    }
    QString emptyTitle() const {
        const auto* title = find<QLabel>(QStringLiteral("emptyTitle"));
        return title ? title->text() : QString();
    }
    void press(int key) {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : window.get(),
                        static_cast<Qt::Key>(key));
        test::settle();
    }

    struct Cleaned {
        std::mutex lock;
        std::vector<std::string> calls; // method and entry
    };
    std::shared_ptr<std::vector<RuleScanResult>> found;
    std::shared_ptr<test::Gate> gate;
    std::shared_ptr<std::atomic<int>> started;
    std::shared_ptr<Cleaned> cleaned = std::make_shared<Cleaned>();
    std::unique_ptr<AppModel> model;
    std::unique_ptr<MainWindow> window;
};

const CleanRule npm = makeRule("npm", Category::packageManager, SafetyLevel::safe, {"~/.npm"});
const CleanRule pip = makeRule("pip", Category::packageManager, SafetyLevel::safe, {"~/.cache/pip"});
const CleanRule logs = makeRule("logs", Category::system, SafetyLevel::reportOnly, {"~/Library/Logs"});

TEST_F(WindowTest, OpensAtItsDefaultSizeAndNoSmallerThanItsMinimum) {
    start({});
    scanned();
    EXPECT_EQ(window->size(), QSize(1200, 760));
    EXPECT_EQ(window->minimumSize(), QSize(1080, 680));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Lumabroom"));
}

TEST_F(WindowTest, FirstLaunchShowsNeitherTheEmptyPanelNorAGroupUntilAResultArrives) {
    start({makeResult(npm, {{"/n/a", 300}})}, 0);
    test::settle();
    ASSERT_TRUE(model->isBusy()); // the window started the scan itself
    EXPECT_EQ(find(QStringLiteral("emptyState")), nullptr);
    EXPECT_EQ(groups(), "");
    EXPECT_FALSE(find<QPushButton>(QStringLiteral("clean"))->isEnabled());

    gate->open();
    scanned();
    EXPECT_EQ(find(QStringLiteral("emptyState")), nullptr);
    EXPECT_EQ(groups(), "pm");
}

TEST_F(WindowTest, AScanThatFindsNothingSaysAlreadyCleanAndEmptyRulesShowWithADashedCircle) {
    start({makeResult(npm, {}), makeResult(logs, {})});
    scanned();
    EXPECT_EQ(emptyTitle(), QStringLiteral("已经很干净了"));
    EXPECT_EQ(groups(), "");

    model->setShowEmptyRules(true);
    model->toggleExpansion(Category::packageManager);
    test::settle();
    EXPECT_EQ(find(QStringLiteral("emptyState")), nullptr);
    EXPECT_EQ(groups(), "pm wt sys"); // the worktree rule comes with every scan
    auto* box = find<QToolButton>(QStringLiteral("check.npm"));
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->property("glyph").toString(), QStringLiteral("circle.dashed"));
    EXPECT_FALSE(box->isEnabled());
}

TEST(RuleCheckbox, FollowsTheFirstMatchingRowOfTheGlyphTable) {
    struct Case {
        SafetyLevel safety;
        std::int64_t size;
        RuleSelection selection;
        std::string_view glyph;
        bool enabled;
    };
    const Case cases[] = {
        {SafetyLevel::reportOnly, 500, RuleSelection::all, "info.circle", false},
        {SafetyLevel::reportOnly, 0, RuleSelection::none, "info.circle", false},
        {SafetyLevel::safe, 0, RuleSelection::all, "circle.dashed", false},
        {SafetyLevel::caution, 10, RuleSelection::none, "circle", true},
        {SafetyLevel::safe, 10, RuleSelection::partial, "minus.circle.fill", true},
        {SafetyLevel::caution, 10, RuleSelection::all, "checkmark.circle.fill", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.glyph));
        const RuleCheckbox box = RuleCheckbox::of(c.safety, c.size, c.selection);
        EXPECT_EQ(box.glyph, c.glyph);
        EXPECT_EQ(box.enabled, c.enabled);
        EXPECT_EQ(box.accent, c.selection != RuleSelection::none && c.enabled);
    }
}

TEST_F(WindowTest, GroupsStartCollapsedAndACardsCheckboxSelectsWithoutNavigating) {
    start({makeResult(npm, {{"/n/a", 300}, {"/n/b", 200}}), makeResult(logs, {{"/l/a", 50}})});
    scanned();
    EXPECT_NE(find(QStringLiteral("groupSummary")), nullptr);
    EXPECT_EQ(find(QStringLiteral("rule.npm")), nullptr);

    find<QPushButton>(QStringLiteral("group.pm"))->click();
    test::settle();
    ASSERT_NE(find(QStringLiteral("rule.npm")), nullptr);
    find<QToolButton>(QStringLiteral("check.npm"))->click();
    test::settle();
    EXPECT_EQ(model->selectedBytes(), 500);
    EXPECT_EQ(model->route(), Route::overview());
    EXPECT_EQ(find<QToolButton>(QStringLiteral("check.npm"))->property("glyph").toString(),
              QStringLiteral("checkmark.circle.fill"));

    // A report-only rule can't be ticked but can still be opened.
    find<QPushButton>(QStringLiteral("group.sys"))->click();
    test::settle();
    EXPECT_FALSE(find<QToolButton>(QStringLiteral("check.logs"))->isEnabled());
    find<QPushButton>(QStringLiteral("rule.logs"))->click();
    test::settle();
    EXPECT_EQ(model->route(), Route::rule("logs"));
}

TEST_F(WindowTest, TheKeyboardOpensAGroupAndTicksARuleInTheOrderOfTheLayout) {
    start({makeResult(npm, {{"/n/a", 300}, {"/n/b", 200}})});
    scanned();
    const auto focused = [] {
        return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
    };
    EXPECT_EQ(focused(), QStringLiteral("chart"));
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), QStringLiteral("group.pm"));
    press(Qt::Key_Space);
    EXPECT_EQ(focused(), QStringLiteral("group.pm"));
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), QStringLiteral("rule.npm"));
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), QStringLiteral("check.npm"));
    press(Qt::Key_Space);
    EXPECT_EQ(model->selectedBytes(), 500);
    EXPECT_EQ(focused(), QStringLiteral("check.npm"));
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), QStringLiteral("clean"));

    // Opening a card leaves the focus in the rule's panel.
    window->findChild<QPushButton*>(QStringLiteral("rule.npm"))->setFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(model->route(), Route::rule("npm"));
    const QWidget* detail = find(QStringLiteral("detail"));
    ASSERT_NE(detail, nullptr);
    EXPECT_TRUE(detail == QApplication::focusWidget() || detail->isAncestorOf(QApplication::focusWidget()));
}

TEST_F(WindowTest, ARescanChangesTheFiguresOfTheRowsInPlaceKeepingFocusAndScroll) {
    startWithAScrollingList();
    auto* header = find<QPushButton>(QStringLiteral("group.pm"));
    const auto* total = dynamic_cast<AnimatedBytes*>(header->findChild<QWidget*>(QStringLiteral("groupTotal")));
    ASSERT_NE(total, nullptr);
    auto* card = find<QPushButton>(QStringLiteral("rule.r15"));
    auto* focused = find<QPushButton>(QStringLiteral("rule.r14"));
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(total->bytes(), 16 * 1000 - 120);
    focused->setFocus();
    QScrollBar* scroll = find<QScrollArea>(QStringLiteral("panel"))->verticalScrollBar();
    ASSERT_GT(scroll->maximum(), 0);
    scroll->setValue(scroll->maximum());
    const int scrolled = scroll->value();

    // The smallest rule shrinks further: the order stays, so every row stays.
    (*found)[15].entries[0].size = 900;
    model->scan();
    scanned();
    EXPECT_EQ(find(QStringLiteral("group.pm")), header);
    EXPECT_EQ(total->bytes(), 16 * 1000 - 120 - 85);
    EXPECT_EQ(find(QStringLiteral("rule.r15")), card);
    EXPECT_EQ(card->findChild<QLabel*>(QStringLiteral("size"))->text(), QStringLiteral("900 字节"));
    EXPECT_EQ(QApplication::focusWidget(), focused);
    EXPECT_EQ(scroll->value(), scrolled);

    // Now it grows to the top: the rows change places but keep their widgets.
    (*found)[15].entries[0].size = 5000;
    model->scan();
    scanned();
    EXPECT_EQ(find(QStringLiteral("rule.r15")), card);
    EXPECT_EQ(total->bytes(), 16 * 1000 - 120 + 4015);
    EXPECT_LT(card->y(), find(QStringLiteral("rule.r0"))->y());

    // Closing the group keeps its header and drops the cards.
    header->click();
    test::settle();
    EXPECT_EQ(find(QStringLiteral("group.pm")), header);
    EXPECT_EQ(find(QStringLiteral("rule.r15")), nullptr);
    EXPECT_TRUE(find(QStringLiteral("groupSummary"))->isVisible());
}

TEST_F(WindowTest, ThePanelsEndAboveTheFloatingBottomBar) {
    startWithAScrollingList();
    const QWidget* bar = find(QStringLiteral("bottomBar"));
    const QWidget* last = find(QStringLiteral("rule.r15"));
    const auto top = [this](const QWidget* w) { return w->mapTo(window.get(), QPoint(0, 0)).y(); };
    QScrollBar* scroll = find<QScrollArea>(QStringLiteral("panel"))->verticalScrollBar();
    EXPECT_GT(top(last), top(bar)); // out of view before scrolling
    scroll->setValue(scroll->maximum());
    test::settle();
    EXPECT_LE(top(last) + last->height(), top(bar)); // the whole row shows above the bar

    // A control that takes the focus scrolls into view, clear of the bar.
    QWidget* lower = find(QStringLiteral("rule.r13"));
    scroll->setValue(0);
    test::settle();
    ASSERT_GT(top(lower) + lower->height(), top(bar));
    lower->setFocus();
    test::settle();
    EXPECT_LE(top(lower) + lower->height(), top(bar));

    // A rule's panel ends above the bar.
    model->setRoute(Route::rule("r15"));
    test::settle();
    const auto* detail = find(QStringLiteral("detail"))->findChild<QScrollArea*>();
    ASSERT_NE(detail, nullptr);
    EXPECT_LE(top(detail) + detail->height(), top(bar));
    EXPECT_LE(top(find(QStringLiteral("panel"))) + find(QStringLiteral("panel"))->height(), top(bar));
}

TEST_F(WindowTest, CleanButtonAndReturnDoNothingDuringAScanOrWithZeroBytesSelected) {
    start({makeResult(npm, {{"/n/a", 300}, {"/n/empty", 0}})}, 1);
    scanned();
    auto* clean = find<QPushButton>(QStringLiteral("clean"));

    model->setSelectedEntryIDs({"/n/empty"});
    test::settle();
    ASSERT_EQ(model->selectedEntryCount(), 1);
    EXPECT_FALSE(clean->isEnabled());
    press(Qt::Key_Return);
    EXPECT_EQ(window->content()->cleanDialog(), nullptr);
    EXPECT_EQ(clean->accessibleName(), QStringLiteral("清理"));

    model->setSelectedEntryIDs({"/n/a"});
    model->scan();
    test::settle();
    ASSERT_TRUE(model->isBusy());
    EXPECT_FALSE(clean->isEnabled());
    EXPECT_FALSE(find<QPushButton>(QStringLiteral("rescan"))->isEnabled()); // rescan
    press(Qt::Key_Return);
    EXPECT_EQ(window->content()->cleanDialog(), nullptr);
}

TEST_F(WindowTest, ReturnOpensTheCleanDialogWhenThereIsSomethingToClean) {
    start({makeResult(npm, {{"/n/a", 300}})});
    scanned();
    model->setSelectedEntryIDs({"/n/a"});
    test::settle();
    auto* clean = find<QPushButton>(QStringLiteral("clean"));
    EXPECT_TRUE(clean->isEnabled());
    EXPECT_EQ(clean->accessibleName(), QString::fromStdString("清理 " + Formatting::bytes(300)));
    press(Qt::Key_Return);
    QDialog* dialog = window->content()->cleanDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->findChild<QPushButton*>(QStringLiteral("delete"))->isDefault());
    dialog->findChild<QPushButton*>(QStringLiteral("cancel"))->click();
    test::settle();
    EXPECT_EQ(window->content()->cleanDialog(), nullptr);
    EXPECT_EQ(model->selectedBytes(), 300);
}

TEST_F(WindowTest, TheSchemeStaysOnTheWindowAndReachesItsPanelMenuAndDialog) {
    const QString systemWindow = QApplication::palette().color(QPalette::Window).name();
    start({makeResult(npm, {{"/n/a", 300}})});
    scanned();
    model->setSelectedEntryIDs({"/n/a"});
    for (const auto& [mode, dark] : {std::pair{AppearanceMode::light, false}, std::pair{AppearanceMode::dark, true}}) {
        SCOPED_TRACE(dark ? "dark" : "light");
        window->setAppearance(mode);
        test::settle();
        window->content()->cleanButton()->click();
        const QString expected = Theme::of(dark).palette().color(QPalette::Window).name();
        EXPECT_EQ(QApplication::palette().color(QPalette::Window).name(), systemWindow);
        EXPECT_EQ(window->palette().color(QPalette::Window).name(), expected);
        for (const char* name : {"panelPage", "optionsMenu", "cleanDialog"}) {
            SCOPED_TRACE(name);
            const QWidget* widget = find(QString::fromLatin1(name));
            ASSERT_NE(widget, nullptr);
            EXPECT_EQ(widget->palette().color(QPalette::Window).name(), expected);
        }
    }
}

TEST_F(WindowTest, TheDialogsChoicesCleanTheSelectionTheirWayOrNot) {
    struct Case {
        const char* button;
        std::vector<std::string> calls;
    };
    const Case cases[] = {
        {"cancel", {}},
        {"trash", {"trash /n/a"}},
        {"delete", {"delete /n/a"}},
    };
    start({makeResult(npm, {{"/n/a", 300}, {"/n/b", 200}})});
    scanned();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.button);
        cleaned->calls.clear();
        model->setSelectedEntryIDs({"/n/a"});
        test::settle();
        window->content()->cleanButton()->click();
        QDialog* dialog = window->content()->cleanDialog();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->windowTitle(), QString::fromStdString("清理选中的 1 项,共 " + Formatting::bytes(300) + "?"));
        dialog->findChild<QPushButton*>(QString::fromLatin1(c.button))->click();
        ASSERT_TRUE(test::waitUntil([this] { return !model->isBusy(); }));
        test::settle();
        EXPECT_EQ(window->content()->cleanDialog(), nullptr);
        std::lock_guard guard(cleaned->lock);
        EXPECT_EQ(cleaned->calls, c.calls);
    }
}

TEST_F(WindowTest, WithoutDiskDataTheBarLeavesOutTheDiskAndTheSpaceLeft) {
    start({makeResult(npm, {{"/n/a", 800}})}, 100, false);
    scanned();
    model->setSelectedEntryIDs({"/n/a"});
    test::settle();
    EXPECT_FALSE(find(QStringLiteral("diskSegment"))->isVisible());
    EXPECT_EQ(find<QLabel>(QStringLiteral("selectionStatus"))->text(), QStringLiteral("已选 1 项"));
}

TEST_F(WindowTest, CtrlRRescansUnlessAScanRuns) {
    start({makeResult(npm, {{"/n/a", 800}})}, 1);
    scanned();
    ASSERT_EQ(started->load(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_R, Qt::ControlModifier);
    test::settle();
    EXPECT_EQ(started->load(), 2);
    ASSERT_TRUE(model->isBusy());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_R, Qt::ControlModifier);
    test::settle();
    EXPECT_EQ(started->load(), 2);
}

TEST_F(WindowTest, SelectionStatusNeverPromisesMoreThanTheDisk) {
    // The test disk holds 1000 bytes with 400 free.
    start({makeResult(npm, {{"/n/a", 800}})});
    scanned();
    auto* status = find<QLabel>(QStringLiteral("selectionStatus"));
    EXPECT_EQ(status->text(), QStringLiteral("已选 0 项"));
    model->setSelectedEntryIDs({"/n/a"});
    test::settle();
    EXPECT_EQ(status->text(), QString::fromStdString("已选 1 项 · 清理后剩余 " + Formatting::bytes(1000)));
}

TEST_F(WindowTest, EscapeGoesBackOneLevelPerRoute) {
    start({makeResult(npm, {{"/n/a", 300}})});
    scanned();
    struct Case {
        Route from;
        Route to;
    };
    const Case cases[] = {
        {Route::overview(), Route::overview()},
        {Route::category(Category::packageManager), Route::overview()},
        {Route::rule("npm"), Route::category(Category::packageManager)},
        {Route::rule("gone"), Route::rule("gone")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.from.value.index()));
        model->setRoute(c.from);
        test::settle();
        press(Qt::Key_Escape);
        EXPECT_EQ(model->route(), c.to);
    }
    model->setRoute(Route::rule("gone"));
    test::settle();
    EXPECT_EQ(emptyTitle(), QStringLiteral("该项已不存在"));
}

TEST_F(WindowTest, LanguageChangeKeepsRouteAndSelectionAndClosesTheCleanDialog) {
    start({makeResult(npm, {{"/n/a", 300}})});
    scanned();
    model->setRoute(Route::rule("npm"));
    model->setSelectedEntryIDs({"/n/a"});
    test::settle();
    window->content()->cleanButton()->click();
    ASSERT_NE(window->content()->cleanDialog(), nullptr);

    window->setLanguage(AppLanguage::english);
    test::settle();
    EXPECT_EQ(window->content()->cleanDialog(), nullptr);
    EXPECT_EQ(model->route(), Route::rule("npm"));
    EXPECT_EQ(model->selectedEntryIDs(), AppModel::IDSet{"/n/a"});
    EXPECT_EQ(find<QLabel>(QStringLiteral("selectionStatus"))->text(),
              QString::fromStdString("1 selected · " + Formatting::bytes(700) + " free after cleaning"));
    EXPECT_EQ(window->findChildren<QDialog*>().size(), 0);

    window->setLanguage(AppLanguage::chinese);
    Localization::setLanguageForThisRun(AppLanguage::chinese);
}

TEST_F(WindowTest, CheckForUpdatesWaitsUntilTheUpdaterCanCheck) {
    Updater::setAutomaticallyChecksForUpdates(false); // no check of its own, so nothing leaves the machine
    Updater::Options options;
    options.builtInFeedURL = QUrl(QStringLiteral("http://127.0.0.1:9/appcast.xml"));
    Updater updater(options);
    model = std::make_unique<AppModel>(test::testServices({}, std::make_shared<test::ServiceLog>()));
    window = std::make_unique<MainWindow>(*model, &updater);
    const auto* check = window->findChild<QAction*>(QStringLiteral("checkForUpdates"));
    ASSERT_NE(check, nullptr);
    EXPECT_FALSE(check->isEnabled());
    updater.start();
    EXPECT_TRUE(check->isEnabled());
    window.reset();
    Settings::remove("automaticallyChecksForUpdates");
}

// Real files, the real Trash of a home of the test's own, and the real clean and restore.
TEST_F(WindowTest, TwoEntriesCleanedToTheTrashFromTheBarComeBackWithUndo) {
    test::TempTree tree;
    test::ScopedEnv home{{"HOME", tree.dir("home").string()}, {"XDG_DATA_HOME", (tree / "home/.local/share").string()}};
    const std::string one = tree.file("cache/one/first.bin", 7000, '1').parent_path().string();
    const std::string two = tree.file("cache/two/second.bin", 3000, '2').parent_path().string();
    tree.symlink("cache/two/link", "second.bin");
    const CleanRule cache =
        makeRule("cache", Category::packageManager, SafetyLevel::safe, {(tree / "cache/*").string()});
    model = std::make_unique<AppModel>(test::testServices({cache}, std::make_shared<test::ServiceLog>()));
    window = std::make_unique<MainWindow>(*model, nullptr);
    window->show();
    scanned();
    auto* undo = find<QPushButton>(QStringLiteral("undo"));
    ASSERT_NE(undo, nullptr);
    EXPECT_FALSE(undo->isVisible());

    model->setSelectedEntryIDs({one, two});
    test::settle();
    const std::int64_t selected = model->selectedBytes();
    window->content()->cleanButton()->click();
    ASSERT_NE(window->content()->cleanDialog(), nullptr);
    window->content()->cleanDialog()->findChild<QPushButton*>(QStringLiteral("trash"))->click();
    ASSERT_TRUE(test::waitUntil([this] { return model->canUndo(); }));
    test::settle();
    const fs::path trash = tree / "home/.local/share/Trash";
    EXPECT_FALSE(fs::exists(one));
    EXPECT_EQ(std::distance(fs::directory_iterator(trash / "files"), {}), 2);
    ASSERT_TRUE(undo->isVisible());
    EXPECT_TRUE(undo->isEnabled());
    EXPECT_EQ(undo->accessibleName(), QStringLiteral("撤销"));
    EXPECT_TRUE(undo->focusPolicy() & Qt::TabFocus);

    undo->setFocus();
    QTest::keyClick(undo, Qt::Key_Space);
    ASSERT_TRUE(test::waitUntil([this] { return !model->isUndoing() && !model->canUndo(); }));
    test::settle();
    EXPECT_FALSE(undo->isVisible());
    EXPECT_EQ(test::readFile(one + "/first.bin"), std::string(7000, '1'));
    EXPECT_EQ(test::readFile(two + "/second.bin"), std::string(3000, '2'));
    EXPECT_EQ(fs::read_symlink(two + "/link"), "second.bin");
    EXPECT_TRUE(fs::is_empty(trash / "files"));
    EXPECT_TRUE(fs::is_empty(trash / "info"));
    EXPECT_EQ(find<QLabel>(QStringLiteral("lastSummary"))->text(),
              QString::fromStdString("已恢复 " + Formatting::bytes(selected)));
}

TEST(SingleInstance, ASecondLaunchKnocksAndTheFirstIsAskedToComeForward) {
    const QString name = QStringLiteral("lumabroom-test-") + QString::number(QCoreApplication::applicationPid());
    SingleInstance first(name);
    ASSERT_FALSE(first.knockOnRunning());
    QSignalSpy asked(&first, &SingleInstance::activationRequested);
    SingleInstance second(name);
    EXPECT_TRUE(second.knockOnRunning());
    EXPECT_TRUE(asked.wait(5000));
    EXPECT_EQ(asked.count(), 1);
}

} // namespace
} // namespace lumabroom
