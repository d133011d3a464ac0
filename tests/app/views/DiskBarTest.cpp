#include "DiskBar.h"
#include "FigureLabel.h"
#include "app/style/QtPrint.h"
#include "text/Localization.h"

#include <QApplication>
#include <QEnterEvent>

#include <gtest/gtest.h>

namespace lumabroom {
namespace {

DiskSpace disk(std::int64_t total, std::int64_t available) {
    return {.volumeName = "Data", .total = total, .available = available};
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
        {"cut to used",
         disk(10'000'000'000, 4'000'000'000),
         7'000'000'000,
         1'000'000'000,
         {"Data", "剩余 4.00 GB / 10.00 GB", "可清理 6.00 GB", "需专用操作 0 字节",
          "清掉可清理的 6.00 GB 后,剩余空间到 10.00 GB"}},
        {"nothing cleanable",
         disk(10'000'000'000, 4'000'000'000),
         0,
         2'000'000'000,
         {"Data", "剩余 4.00 GB / 10.00 GB", "可清理 0 字节", "需专用操作 2.00 GB"}},
        {"all free",
         disk(10'000'000'000, 10'000'000'000),
         3,
         3,
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
    EXPECT_EQ(visibleTexts(bar),
              (std::vector<QString>{"Data", "4.00 GB free of 10.00 GB", "Cleanable 1.00 GB",
                                    "Needs its own action 2.00 GB", "Cleaning 1.00 GB leaves 5.00 GB free"}));
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
