#include "BottomBar.h"

#include "CleanDialog.h"
#include "DiskBar.h"
#include "Symbols.h"
#include "Theme.h"
#include "ViewParts.h"
#include "model/AppModel.h"
#include "model/AppText.h"
#include "text/Formatting.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace lumabroom {

using ViewParts::qs;

BottomBar::BottomBar(AppModel& model, bool light, QWidget* parent) : QFrame(parent), model_(model), light_(light) {
    setObjectName(QStringLiteral("bottomBar"));
    setMaximumWidth(960);
    setMinimumHeight(56);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(20, 8, 10, 8);
    row->setSpacing(14);
    addDiskSegment(*row);
    addSummary(*row);
    row->addStretch(1);
    selectionLabel_ = new QLabel(this);
    selectionLabel_->setObjectName(QStringLiteral("selectionStatus"));
    row->addWidget(selectionLabel_);
    addCleanButton(*row);
}

QDialog* BottomBar::cleanDialog() const { return cleanDialog_; }

void BottomBar::followInTabs(QWidget* previous) {
    setTabOrder(previous, undoButton_);
    setTabOrder(undoButton_, cleanButton_);
}

void BottomBar::addDiskSegment(QHBoxLayout& row) {
    diskSegment_ = new DiskStatusSegment(this);
    diskSegment_->setObjectName(QStringLiteral("diskSegment"));
    diskSegment_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred); // it keeps its room first
    row.addWidget(diskSegment_);
}

void BottomBar::addSummary(QHBoxLayout& row) {
    summaryMark_ =
        ViewParts::symbolLabel("checkmark.circle.fill", Theme::of(!light_).named(NamedColor::green), 14, this);
    row.addWidget(summaryMark_);
    summaryLabel_ = new QLabel(this);
    summaryLabel_->setObjectName(QStringLiteral("lastSummary"));
    // As wide as its text, so that Undo stands beside it; clipped when the bar is short of room.
    summaryLabel_->setMinimumWidth(1);
    row.addWidget(summaryLabel_);
    undoButton_ = new QPushButton(ViewParts::buttonText(ViewParts::text("撤销")), this);
    undoButton_->setObjectName(QStringLiteral("undo"));
    undoButton_->setAccessibleName(ViewParts::text("撤销"));
    undoButton_->setToolTip(ViewParts::text("将上次清理移到废纸篓的项目放回原处"));
    undoButton_->setAutoDefault(false);
    undoButton_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    undoButton_->setMinimumHeight(28);
    connect(undoButton_, &QPushButton::clicked, this, [this] { model_.undoLastClean(); });
    row.addWidget(undoButton_);
}

void BottomBar::addCleanButton(QHBoxLayout& row) {
    cleanButton_ = new QPushButton(this);
    cleanButton_->setObjectName(QStringLiteral("clean"));
    cleanButton_->setIconSize(QSize(14, 14));
    cleanButton_->setMinimumHeight(38);
    cleanButton_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(cleanButton_, &QPushButton::clicked, this, &BottomBar::askToClean);
    row.addWidget(cleanButton_);
}

void BottomBar::refresh() {
    refreshDisk();
    refreshSummary();
    refreshSelection();
}

void BottomBar::refreshDisk() {
    const auto& disk = model_.diskSpace();
    diskSegment_->setVisible(disk.has_value());
    if (!disk) return;
    const std::int64_t cleanable = model_.directlyCleanableBytes();
    diskSegment_->setValues(*disk, cleanable, model_.totalBytes() - cleanable);
}

void BottomBar::refreshSummary() {
    const auto& summary = model_.lastSummary();
    summaryLabel_->setVisible(summary.has_value());
    summaryMark_->setVisible(summary.has_value());
    undoButton_->setVisible(model_.canUndo());
    undoButton_->setEnabled(!model_.isBusy() && !model_.isUndoing());
    if (!summary) return;
    summaryLabel_->setText(qs(summary->text()));
    summaryLabel_->setStyleSheet(
        QStringLiteral("color:%1;").arg(ViewParts::rgba(Theme::of(!light_).named(NamedColor::green))));
}

void BottomBar::refreshSelection() {
    const auto& disk = model_.diskSpace();
    const std::int64_t selected = model_.selectedBytes();
    const std::int64_t count = model_.selectedEntryCount();
    if (selected >= 1 && disk) {
        const std::int64_t left = std::min(disk->total, disk->available + selected);
        selectionLabel_->setText(qs(AppText::counted("已选 %n 项 · 清理后剩余 %1", count, {Formatting::bytes(left)})));
    } else {
        selectionLabel_->setText(qs(AppText::counted("已选 %n 项", count)));
    }
    const Theme& theme = Theme::of(!light_);
    cleanButton_->setIcon(Symbols::icon("sparkles", selected >= 1 ? theme.onAccent : theme.secondary));
    const QString label =
        selected >= 1 ? qs(AppText::formatted("清理 %1", {Formatting::bytes(selected)})) : ViewParts::text("清理");
    // A blank keeps the label off the icon, which the style sets close.
    cleanButton_->setText(QStringLiteral(" ") + label);
    cleanButton_->setAccessibleName(label);
    cleanButton_->setEnabled(!model_.isBusy() && selected > 0);
    cleanButton_->setProperty("filled", selected >= 1);
    ViewParts::repolish(*cleanButton_);
}

void BottomBar::askToClean() {
    if (model_.isBusy() || model_.selectedBytes() <= 0 || cleanDialog_) return;
    cleanDialog_ = new CleanDialog(model_, this);
    cleanDialog_->open();
}

} // namespace lumabroom
