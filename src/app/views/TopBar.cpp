#include "TopBar.h"

#include "BrandMark.h"
#include "OptionsMenu.h"
#include "Symbols.h"
#include "Theme.h"
#include "ViewParts.h"
#include "host/Platform.h"
#include "model/AppModel.h"
#include "model/AppText.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

namespace lumabroom {

using ViewParts::text;

TopBar::TopBar(AppModel& model, Updater* updater, bool light, QWidget* parent) : QWidget(parent), model_(model) {
    setObjectName(QStringLiteral("topBar"));
    setFixedHeight(58);
    auto* row = new QHBoxLayout(this);
    // The leading room on macOS keeps clear of the window's own buttons.
    row->setContentsMargins(Platform::isMacOS() ? 84 : 24, 0, 24, 0);
    row->setSpacing(10);
    auto* brand = new BrandMark(30, this);
    brand->setObjectName(QStringLiteral("brand"));
    brand->setAccessibleName(QStringLiteral("Lumabroom"));
    row->addWidget(brand);
    addTitles(*row);
    row->addStretch(1);
    addRescanButton(*row, light);
    addOptionsButton(*row, updater, light);
}

void TopBar::refresh() {
    rescan_->setEnabled(!model_.isBusy());
    menu_->refresh();
}

void TopBar::addTitles(QHBoxLayout& row) {
    auto* titles = new QVBoxLayout;
    titles->setSpacing(0);
    auto* title = new QLabel(text("Lumabroom"), this);
    QFont bold = title->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    title->setFont(bold);
    auto* caption = new QLabel(text("开发者缓存清理"), this);
    caption->setObjectName(QStringLiteral("secondary"));
    titles->addStretch(1);
    titles->addWidget(title);
    titles->addWidget(caption);
    titles->addStretch(1);
    row.addLayout(titles);
}

void TopBar::addRescanButton(QHBoxLayout& row, bool light) {
    const QKeySequence key(Qt::CTRL | Qt::Key_R);
    rescan_ = ViewParts::roundButton(
        "arrow.clockwise", Theme::of(!light).primary,
        ViewParts::qs(AppText::formatted("重新扫描 (%1)", {key.toString(QKeySequence::NativeText).toStdString()})),
        this);
    rescan_->setObjectName(QStringLiteral("rescan"));
    // Pressed at once rather than after the button's animated click, like Return.
    auto* shortcut = new QShortcut(key, this);
    connect(shortcut, &QShortcut::activated, this, [this] {
        if (rescan_->isEnabled()) rescan_->click();
    });
    connect(rescan_, &QPushButton::clicked, &model_, [this] { model_.scan(); });
    row.addWidget(rescan_);
}

void TopBar::addOptionsButton(QHBoxLayout& row, Updater* updater, bool light) {
    options_ = new QToolButton(this);
    options_->setObjectName(QStringLiteral("options"));
    options_->setIcon(Symbols::icon("ellipsis", Theme::of(!light).primary));
    options_->setIconSize(QSize(16, 16));
    options_->setToolTip(text("选项"));
    options_->setAccessibleName(text("选项"));
    options_->setFixedSize(34, 34);
    options_->setPopupMode(QToolButton::InstantPopup);
    options_->setStyleSheet(QStringLiteral("QToolButton::menu-indicator { image: none; width: 0; }"));
    menu_ = new OptionsMenu(model_, updater, options_);
    options_->setMenu(menu_);
    row.addWidget(options_);
}

} // namespace lumabroom
