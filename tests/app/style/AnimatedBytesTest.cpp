#include "AnimatedBytes.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace lumabroom {
namespace {

QImage render(const QString& text, const QFont& font) {
    QImage image(200, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setBrush(Qt::black);
    AnimatedBytes::paintText(painter, QPointF(0, 30), font, {}, text, 1);
    return image;
}

TEST(AnimatedBytes, DigitsTakeCellsOfEqualWidth) {
    QFont font;
    font.setPixelSize(20);
    const QFontMetricsF metrics(font);
    const std::vector<double> narrow = AnimatedBytes::cellEdges("111.1 GB", metrics);
    const std::vector<double> wide = AnimatedBytes::cellEdges("888.8 GB", metrics);
    EXPECT_EQ(narrow, wide);
    ASSERT_EQ(narrow.size(), 9u);
    EXPECT_EQ(narrow[1] - narrow[0], narrow[3] - narrow[2]);

    // The unit after the figures lands on the same pixels whatever the digits before it.
    const QImage ones = render("111.1 GB", font);
    const QImage eights = render("888.8 GB", font);
    const int unitLeft = int(std::ceil(narrow[6]));
    const QRect unit(unitLeft, 0, ones.width() - unitLeft, ones.height());
    EXPECT_EQ(ones.copy(unit), eights.copy(unit));
    EXPECT_NE(ones, eights);
}

TEST(AnimatedBytes, SettlesOnTheNewTextAndUnchangedCellsStayPut) {
    QFont font;
    font.setPixelSize(20);
    const auto draw = [&](const QString& from, const QString& to, double progress) {
        QImage image(200, 40, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setBrush(Qt::black);
        AnimatedBytes::paintText(painter, QPointF(0, 30), font, from, to, progress);
        return image;
    };
    EXPECT_EQ(draw("1.5 GB", "2.5 GB", 1), render("2.5 GB", font));
    const QImage midway = draw("1.5 GB", "2.5 GB", 0.5);
    EXPECT_NE(midway, render("2.5 GB", font));
    const int rolling = int(std::ceil(AnimatedBytes::cellEdges("2.5 GB", QFontMetricsF(font))[1]));
    const QRect still(rolling, 0, 200 - rolling, 40);
    EXPECT_EQ(midway.copy(still), render("2.5 GB", font).copy(still));
}

TEST(AnimatedBytes, StandardSpringStartsAtRestAndSettlesAtOne) {
    EXPECT_DOUBLE_EQ(AnimatedBytes::standardSpring(0), 0.0);
    EXPECT_NEAR(AnimatedBytes::standardSpring(1.0), 1.0, 1e-3);
}

} // namespace
} // namespace lumabroom
