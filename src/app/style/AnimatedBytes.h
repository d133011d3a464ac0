#pragma once

#include "Theme.h"

#include <QFont>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <vector>

class QFontMetricsF;
class QPainter;
class QVariantAnimation;

namespace lumabroom {

// A byte count whose digits roll to a new value; every digit takes the same width, so the figures
// do not jitter as they change.
class AnimatedBytes : public QWidget {
public:
    // The animation's course: progress (0 at the start, 1 at rest, overshooting on the way) after
    // so many seconds.
    using Progress = std::function<double(double seconds)>;

    explicit AnimatedBytes(QWidget* parent = nullptr);

    void setBytes(std::int64_t bytes);
    std::int64_t bytes() const { return bytes_; }
    // Fill with the accent instead of the text colour.
    void setGradient(bool gradient);
    void setProgress(Progress progress, double settleSeconds);

    QSize sizeHint() const override;

    // The left edge of each character's cell: digits in cells of the widest digit, centred, the
    // rest at their own width. One more entry gives the total width.
    static std::vector<double> cellEdges(const QString& text, const QFontMetricsF&);
    // Draws `to` with its baseline at `origin`; with `progress` below 1, the characters that
    // differ from `from` are rolling in from below while the old ones leave upwards.
    static void paintText(QPainter&, QPointF origin, const QFont&, const QString& from, const QString& to,
                          double progress);

    // The spring of every change: response 0.5 s, damping fraction 0.85.
    static double standardSpring(double seconds);

protected:
    void paintEvent(QPaintEvent*) override;
    void changeEvent(QEvent*) override;

private:
    QString text() const;

    std::int64_t bytes_ = 0;
    QString from_;
    double progress_ = 1;
    bool gradient_ = false;
    Progress curve_ = &standardSpring;
    QVariantAnimation* animation_;
};

} // namespace lumabroom
