#include "DiskBar.h"
#include "DiskBreakdown.h"
#include "FigureLabel.h"
#include "QtPrint.h"
#include "text/Localization.h"

#include <QApplication>
#include <QEnterEvent>

#include <gtest/gtest.h>

namespace lumabroom {
namespace {

DiskSpace disk(std::int64_t total, std::int64_t available) { return {.volumeName = "Data", .total = total, .available = available}; }

TEST(DiskBreakdown, ClampsFindingsToTheUsedSpace) {
    struct Case {
        const char* name;
        DiskSpace disk;
        std::int64_t cleanable, reportOnly;
        std::int64_t expectCleanable, expectReportOnly, expectOther;
    };
    const Case cases[] = {
        {"both fit", disk(1000, 400), 100, 200, 100, 200, 300},
        {"cleanable above used", disk(1000, 400), 900, 50, 600, 0, 0},
        {"sum above used", disk(1000, 400), 500, 300, 500, 100, 0},
        {"exactly used", disk(1000, 400), 250, 350, 250, 350, 0},
        {"nothing used", disk(1000, 1000), 10, 10, 0, 0, 0},
        {"more available than total", disk(1000, 1200), 10, 10, 0, 0, 0},
        {"no findings", disk(1000, 1), 0, 0, 0, 0, 999},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const DiskBreakdown b = DiskBreakdown::of(c.disk, c.cleanable, c.reportOnly);
        EXPECT_EQ(b.disk, c.disk);
        EXPECT_EQ(b.cleanable, c.expectCleanable);
        EXPECT_EQ(b.reportOnly, c.expectReportOnly);
        EXPECT_EQ(b.otherUsed, c.expectOther);
    }
}

TEST(DiskBreakdown, SegmentWidthsShareTheTotal) {
    struct Case {
        const char* name;
        DiskSpace disk;
        std::int64_t cleanable, reportOnly;
        double width;
        std::array<double, 4> expected;
    };
    const Case cases[] = {
        {"quarters", disk(400, 100), 100, 100, 200, {50, 50, 50, 50}},
        {"all free", disk(1000, 1000), 5, 5, 150, {0, 0, 0, 150}},
        // A total below 1 divides by 1; what the volume reports still shows, never below 0.
        {"zero total", disk(0, 0), 3, 0, 10, {0, 0, 0, 0}},
        {"negative total", DiskSpace{.volumeName = "x", .total = -5, .available = 2}, 0, 0, 10, {0, 0, 0, 20}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(DiskBreakdownBar::segmentWidths(DiskBreakdown::of(c.disk, c.cleanable, c.reportOnly), c.width), c.expected);
    }
}

std::vector<QString> visibleTexts(const QWidget& widget) {
    std::vector<QString> texts;
    for (const FigureLabel* label : widget.findChildren<FigureLabel*>()) {
        if (label->isVisibleTo(&widget)) {
            texts.push_back(label->text());
        }
    }
    return texts;
}

TEST(DiskBar, ShowsClampedValuesAndTheHintOnlyWithSomethingToClean) {
    struct Case {
        const char* name;
        DiskSpace disk;
        std::int64_t cleanable, reportOnly;
        std::vector<QString> expected;
    };
    const Case cases[] = {
        {"cut to used", disk(10'000'000'000, 4'000'000'000), 7'000'000'000, 1'000'000'000,
         {"Data", "剩余 4.00 GB / 10.00 GB", "可清理 6.00 GB", "需专用操作 0 字节", "清掉可清理的 6.00 GB 后,剩余空间到 10.00 GB"}},
        {"nothing cleanable", disk(10'000'000'000, 4'000'000'000), 0, 2'000'000'000,
         {"Data", "剩余 4.00 GB / 10.00 GB", "可清理 0 字节", "需专用操作 2.00 GB"}},
        {"all free", disk(10'000'000'000, 10'000'000'000), 3, 3,
         {"Data", "剩余 10.00 GB / 10.00 GB", "可清理 0 字节", "需专用操作 0 字节"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        DiskBar bar;
        bar.setValues(c.disk, c.cleanable, c.reportOnly);
        EXPECT_EQ(visibleTexts(bar), c.expected);
    }
}

TEST(DiskBar, SpeaksEnglish) {
    Localization::setLanguageForThisRun(AppLanguage::english);
    DiskBar bar;
    bar.setValues(disk(10'000'000'000, 4'000'000'000), 1'000'000'000, 2'000'000'000);
    Localization::setLanguageForThisRun(AppLanguage::chinese);
    EXPECT_EQ(bar.findChildren<FigureLabel*>().at(1)->toolTip(),
              "“Free” matches the file manager and includes space the system can purge");
    EXPECT_EQ(visibleTexts(bar), (std::vector<QString>{"Data", "4.00 GB free of 10.00 GB", "Cleanable 1.00 GB",
                                                       "Needs its own action 2.00 GB",
                                                       "Cleaning 1.00 GB leaves 5.00 GB free"}));
}

TEST(DiskStatusSegment, OpensTheFullBarWhileThePointerIsOver) {
    DiskStatusSegment segment;
    segment.setValues(disk(10'000'000'000, 4'000'000'000), 1, 2);
    segment.show();
    EXPECT_EQ(visibleTexts(segment).at(1), QStringLiteral("剩余 4.00 GB"));
    EXPECT_FALSE(segment.isPopupShown());
    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), segment.mapToGlobal(QPointF(5, 5)));
    QApplication::sendEvent(&segment, &enter);
    EXPECT_TRUE(segment.isPopupShown());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&segment, &leave);
    EXPECT_FALSE(segment.isPopupShown());
}

} // namespace
} // namespace lumabroom
