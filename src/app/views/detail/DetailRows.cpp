#include "DetailRows.h"

#include "DetailLook.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFrame>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QProgressBar>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace lumabroom {

BarRow::BarRow(QColor barColor, double fraction, QWidget* parent)
    : QWidget(parent),
      barColor_(barColor),
      fraction_(fraction),
      content_(new QHBoxLayout(this)) {
    content_->setContentsMargins(8, 6, 8, 6);
    setAttribute(Qt::WA_Hover);
}

void BarRow::setRevealButton(QToolButton* button) {
    reveal_ = button;
    auto* effect = new QGraphicsOpacityEffect(button);
    effect->setOpacity(0);
    button->setGraphicsEffect(effect);
}

void BarRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (hovering_) painter.fillRect(rect(), DetailLook::rowHover());
    QColor bar = barColor_;
    bar.setAlphaF(0.1f);
    painter.fillRect(QRectF(0, 0, width() * fraction_, height()), bar);
}

void BarRow::enterEvent(QEnterEvent*) {
    hovering_ = true;
    if (reveal_) static_cast<QGraphicsOpacityEffect*>(reveal_->graphicsEffect())->setOpacity(1);
    update();
}

void BarRow::leaveEvent(QEvent*) {
    hovering_ = false;
    if (reveal_) static_cast<QGraphicsOpacityEffect*>(reveal_->graphicsEffect())->setOpacity(0);
    update();
}

void BarRow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()) && onClick_) onClick_();
}

void BarRow::contextMenuEvent(QContextMenuEvent* event) {
    if (menu_.empty()) return;
    QMenu menu(this);
    for (const MenuItem& item : menu_) {
        QAction* action = menu.addAction(item.text);
        connect(action, &QAction::triggered, this, item.action);
    }
    menu.exec(event->globalPos());
}

namespace {

class ElidedLabel : public QLabel {
public:
    ElidedLabel(const QString& text, Qt::TextElideMode mode, QWidget* parent) : QLabel(text, parent), mode_(mode) {
        setTextFormat(Qt::PlainText);
    }
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent* event) override {
        QFrame::paintEvent(event); // the style sheet's background and border
        QPainter painter(this);
        const QRect room = contentsRect();
        style()->drawItemText(&painter, room, static_cast<int>(alignment()), palette(), isEnabled(),
                              fontMetrics().elidedText(text(), mode_, room.width()), foregroundRole());
    }

private:
    Qt::TextElideMode mode_;
};

} // namespace

namespace DetailRows {

QIcon icon(Icon which) {
    QStyle* style = QApplication::style();
    switch (which) {
    case Icon::reveal:
        return QIcon::fromTheme(QStringLiteral("edit-find"), style->standardIcon(QStyle::SP_FileDialogContentsView));
    case Icon::trash: return QIcon::fromTheme(QStringLiteral("user-trash"), style->standardIcon(QStyle::SP_TrashIcon));
    case Icon::copy: return QIcon::fromTheme(QStringLiteral("edit-copy"), style->standardIcon(QStyle::SP_FileLinkIcon));
    case Icon::folder: return style->standardIcon(QStyle::SP_DirIcon);
    }
    return {};
}

QToolButton* iconButton(Icon which, const QString& tooltip, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setIcon(icon(which));
    button->setToolTip(tooltip);
    button->setAccessibleName(tooltip);
    button->setAutoRaise(true);
    return button;
}

QWidget* spinner(const QString& accessibleName, QWidget* parent) {
    auto* bar = new QProgressBar(parent);
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    bar->setFixedSize(32, 8);
    bar->setAccessibleName(accessibleName);
    return bar;
}

QLabel* label(const QString& text, QWidget* parent, const QString& style) {
    auto* l = new QLabel(text, parent);
    l->setTextFormat(Qt::PlainText);
    if (!style.isEmpty()) l->setStyleSheet(style);
    return l;
}

QLabel* elided(const QString& text, Qt::TextElideMode mode, QWidget* parent, const QString& style) {
    QLabel* l = new ElidedLabel(text, mode, parent);
    if (!style.isEmpty()) l->setStyleSheet(style);
    return l;
}

QWidget* card(QWidget* parent, const QColor& tint) {
    auto* frame = new QFrame(parent);
    frame->setFrameShape(QFrame::StyledPanel);
    if (tint.isValid()) {
        QColor background = tint;
        background.setAlphaF(0.12f);
        frame->setStyleSheet(
            QStringLiteral("QFrame#tinted{background:%1;border-radius:8px;}").arg(background.name(QColor::HexArgb)));
        frame->setObjectName(QStringLiteral("tinted"));
    }
    auto* column = new QVBoxLayout(frame);
    column->setContentsMargins(8, 8, 8, 8);
    column->setSpacing(2);
    return frame;
}

QWidget* divider(QWidget* parent, int indent) {
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setContentsMargins(indent, 0, 0, 0);
    line->setStyleSheet(QStringLiteral("color:rgba(128,128,128,60);margin-left:%1px;").arg(indent));
    return line;
}

} // namespace DetailRows
} // namespace lumabroom
