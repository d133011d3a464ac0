#pragma once

#include "DiskBreakdown.h"
#include "Theme.h"

#include <QWidget>

#include <cstdint>

namespace lumabroom {

class FigureLabel;
class SymbolView;

// What both disk views show: the volume and the findings as the model reports them, not yet clamped.
struct DiskFindings {
    DiskSpace disk;
    std::int64_t cleanable = 0;
    std::int64_t reportOnly = 0;
    DiskBreakdown breakdown() const { return DiskBreakdown::of(disk, cleanable, reportOnly); }
};

// The used space split into other, report-only and cleanable parts, then the free space, on one
// capsule.
class DiskSegmentedBar : public QWidget {
public:
    DiskSegmentedBar(int barHeight, QWidget* parent = nullptr);

    void setBreakdown(const DiskBreakdown&);
    QSize sizeHint() const override { return {150, height_}; }

    // Segment `index` of DiskBreakdownBar::segmentWidths, filled as it is drawn in `rect`.
    static QBrush segmentFill(std::size_t index, const QRectF& rect, const Theme&);
    static void paint(QPainter&, const QRectF& rect, const DiskBreakdown&, const Theme&);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    DiskBreakdown breakdown_;
    int height_;
};

// What both disk views share: the findings, the volume with its symbol, the bar and the space left.
class DiskView : public QWidget {
public:
    // `cleanable` and `reportOnly` as the model reports them; they are clamped here.
    void setValues(const DiskSpace& disk, std::int64_t cleanable, std::int64_t reportOnly);

protected:
    DiskView(TextSize size, int barHeight, QWidget* parent);
    void changeEvent(QEvent*) override;
    // Puts the findings into the labels.
    virtual void refresh() = 0;

    DiskFindings findings_;
    SymbolView* icon_;
    FigureLabel* volume_;
    FigureLabel* remaining_;
    DiskSegmentedBar* bar_;
};

// The full bar with its legend and what cleaning would leave free.
class DiskBar : public DiskView {
public:
    explicit DiskBar(QWidget* parent = nullptr);

private:
    void refresh() override;

    FigureLabel* cleanableLegend_;
    FigureLabel* reportOnlyLegend_;
    FigureLabel* hint_;
};

// The bottom bar's disk row; the full bar opens beside it while the pointer is over it.
class DiskStatusSegment : public DiskView {
public:
    explicit DiskStatusSegment(QWidget* parent = nullptr);
    ~DiskStatusSegment() override;

    bool isPopupShown() const;

protected:
    void enterEvent(QEnterEvent*) override;
    void leaveEvent(QEvent*) override;

private:
    void refresh() override;

    QWidget* popup_;
    DiskBar* full_;
};

} // namespace lumabroom
