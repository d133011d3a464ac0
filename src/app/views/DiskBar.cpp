#include "DiskBar.h"

#include "FigureLabel.h"
#include "StyleText.h"
#include "SymbolView.h"
#include "text/Formatting.h"

#include <QEnterEvent>
#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QVBoxLayout>

namespace lumabroom {

namespace {

QString bytes(std::int64_t count) { return QString::fromStdString(Formatting::bytes(count)); }
std::string bytesText(std::int64_t count) { return Formatting::bytes(count); }

// A legend's swatch: a small capsule in its segment's fill.
class Swatch : public QWidget {
public:
    Swatch(std::size_t segment, QWidget* parent) : QWidget(parent), segment_(segment) { setFixedSize(10, 5); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF r(rect());
        QPainterPath capsule;
        capsule.addRoundedRect(r, r.height() / 2, r.height() / 2);
        painter.fillPath(capsule, DiskSegmentedBar::segmentFill(segment_, r, Theme::of(*this)));
    }

private:
    std::size_t segment_;
};

constexpr std::size_t kReportOnlySegment = 1;
constexpr std::size_t kCleanableSegment = 2;

} // namespace

DiskSegmentedBar::DiskSegmentedBar(int barHeight, QWidget* parent) : QWidget(parent), height_(barHeight) {
    setFixedHeight(barHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void DiskSegmentedBar::setBreakdown(const DiskBreakdown& breakdown) {
    if (breakdown == breakdown_) {
        return;
    }
    breakdown_ = breakdown;
    update();
}

QBrush DiskSegmentedBar::segmentFill(std::size_t index, const QRectF& rect, const Theme& theme) {
    switch (index) {
    case 0: return theme.barUsed;
    case kReportOnlySegment: {
        QColor orange = theme.named(NamedColor::orange);
        orange.setAlphaF(0.55f);
        return orange;
    }
    case kCleanableSegment: return theme.accentGradient(rect);
    default: return theme.barFree;
    }
}

void DiskSegmentedBar::paint(QPainter& painter, const QRectF& rect, const DiskBreakdown& breakdown,
                             const Theme& theme) {
    QPainterPath capsule;
    capsule.addRoundedRect(rect, rect.height() / 2, rect.height() / 2);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(capsule);
    double x = rect.left();
    const auto widths = DiskBreakdownBar::segmentWidths(breakdown, rect.width());
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const QRectF segment(x, rect.top(), widths[i], rect.height());
        if (widths[i] > 0) {
            painter.fillRect(segment, segmentFill(i, segment, theme));
        }
        x += widths[i] + DiskBreakdownBar::kGap;
    }
    painter.restore();
}

void DiskSegmentedBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paint(painter, QRectF(rect()), breakdown_, Theme::of(*this));
}

DiskView::DiskView(TextSize size, int barHeight, QWidget* parent)
    : QWidget(parent),
      icon_(new SymbolView("internaldrive", TextSize::caption, SymbolView::Tone::secondary, this)),
      volume_(new FigureLabel(size, FigureLabel::Tone::primary, this)),
      remaining_(new FigureLabel(size, FigureLabel::Tone::secondary, this)),
      bar_(new DiskSegmentedBar(barHeight, this)) {
    volume_->setFont(textFont(size, QFont::Medium));
}

void DiskView::setValues(const DiskSpace& disk, std::int64_t cleanable, std::int64_t reportOnly) {
    findings_ = {disk, cleanable, reportOnly};
    refresh();
}

void DiskView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        refresh();
    }
    QWidget::changeEvent(event);
}

DiskBar::DiskBar(QWidget* parent)
    : DiskView(TextSize::subheadline, 8, parent),
      cleanableLegend_(new FigureLabel(TextSize::caption, FigureLabel::Tone::secondary, this)),
      reportOnlyLegend_(new FigureLabel(TextSize::caption, FigureLabel::Tone::secondary, this)),
      hint_(new FigureLabel(TextSize::caption, FigureLabel::Tone::tertiary, this)) {
    setFixedWidth(340);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(14, 14, 14, 14);
    column->setSpacing(8);

    auto* header = new QHBoxLayout;
    header->setSpacing(6);
    header->addWidget(icon_);
    header->addWidget(volume_);
    header->addStretch(1);
    header->addWidget(remaining_);
    column->addLayout(header);
    column->addWidget(bar_);

    auto* legend = new QHBoxLayout;
    legend->setSpacing(12);
    for (const auto& [segment, label] :
         {std::pair{kCleanableSegment, cleanableLegend_}, std::pair{kReportOnlySegment, reportOnlyLegend_}}) {
        auto* item = new QHBoxLayout;
        item->setSpacing(5);
        item->addWidget(new Swatch(segment, this), 0, Qt::AlignVCenter);
        item->addWidget(label);
        legend->addLayout(item);
    }
    legend->addStretch(1);
    column->addLayout(legend);
    column->addWidget(hint_);
    refresh();
}

void DiskBar::refresh() {
    const DiskBreakdown breakdown = findings_.breakdown();
    const DiskSpace& disk = findings_.disk;
    volume_->setText(QString::fromStdString(disk.volumeName));
    remaining_->setText(StyleText::formatted("剩余 %1 / %2", {bytesText(disk.available), bytesText(disk.total)}));
    const QString tip = StyleText::text("「剩余」与访达一致,含系统的可清除空间");
    volume_->setToolTip(tip);
    remaining_->setToolTip(tip);
    bar_->setBreakdown(breakdown);
    cleanableLegend_->setText(StyleText::text("可清理") + QLatin1Char(' ') + bytes(breakdown.cleanable));
    reportOnlyLegend_->setText(StyleText::text("需专用操作") + QLatin1Char(' ') + bytes(breakdown.reportOnly));
    hint_->setVisible(breakdown.cleanable >= 1);
    hint_->setText(
        StyleText::formatted("清掉可清理的 %1 后,剩余空间到 %2",
                             {bytesText(breakdown.cleanable), bytesText(disk.available + breakdown.cleanable)}));
    setAccessibleName(remaining_->text());
}

DiskStatusSegment::DiskStatusSegment(QWidget* parent)
    : DiskView(TextSize::callout, 6, parent),
      popup_(new QWidget(this, Qt::ToolTip | Qt::FramelessWindowHint)),
      full_(new DiskBar(popup_)) {
    bar_->setFixedWidth(150);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    for (QWidget* item : {static_cast<QWidget*>(icon_), static_cast<QWidget*>(volume_), static_cast<QWidget*>(bar_),
                          static_cast<QWidget*>(remaining_)}) {
        row->addWidget(item, 0, Qt::AlignVCenter);
    }
    auto* popupLayout = new QVBoxLayout(popup_);
    popupLayout->setContentsMargins(0, 0, 0, 0);
    popupLayout->addWidget(full_);
    popup_->setAutoFillBackground(true);
    refresh();
}

DiskStatusSegment::~DiskStatusSegment() = default;

bool DiskStatusSegment::isPopupShown() const { return popup_->isVisible(); }

void DiskStatusSegment::refresh() {
    const DiskSpace& disk = findings_.disk;
    volume_->setText(QString::fromStdString(disk.volumeName));
    bar_->setBreakdown(findings_.breakdown());
    remaining_->setText(StyleText::formatted("剩余 %1", {bytesText(disk.available)}));
    setAccessibleName(volume_->text() + QLatin1Char(' ') + remaining_->text());
    full_->setValues(findings_.disk, findings_.cleanable, findings_.reportOnly);
}

void DiskStatusSegment::enterEvent(QEnterEvent* event) {
    popup_->setPalette(palette());
    popup_->adjustSize();
    // Above the row, as the row sits at the bottom of the window; below where there is no room.
    QPoint at = mapToGlobal(QPoint(0, -popup_->height() - 6));
    if (const QScreen* display = screen(); display && at.y() < display->availableGeometry().top()) {
        at = mapToGlobal(QPoint(0, height() + 6));
    }
    popup_->move(at);
    popup_->show();
    QWidget::enterEvent(event);
}

void DiskStatusSegment::leaveEvent(QEvent* event) {
    popup_->hide();
    QWidget::leaveEvent(event);
}

} // namespace lumabroom
