#pragma once

#include <QColor>
#include <QIcon>
#include <QWidget>

#include <functional>
#include <vector>

class QHBoxLayout;
class QLabel;
class QToolButton;

namespace lumabroom {

// A list row with a share bar behind it (it takes no clicks), a hover background, an optional
// action for a click anywhere on it and a context menu. The reveal button, if any, shows while
// the pointer is over the row.
class BarRow : public QWidget {
    Q_OBJECT
public:
    struct MenuItem {
        QString text;
        std::function<void()> action;
    };

    BarRow(QColor barColor, double fraction, QWidget* parent);

    QHBoxLayout* content() const { return content_; }
    void setOnClick(std::function<void()> onClick) { onClick_ = std::move(onClick); }
    void setMenu(std::vector<MenuItem> items) { menu_ = std::move(items); }
    void setRevealButton(QToolButton* button);
    double fraction() const { return fraction_; }

protected:
    void paintEvent(QPaintEvent*) override;
    void enterEvent(QEnterEvent*) override;
    void leaveEvent(QEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void contextMenuEvent(QContextMenuEvent*) override;

private:
    QColor barColor_;
    double fraction_;
    bool hovering_ = false;
    QHBoxLayout* content_;
    QToolButton* reveal_ = nullptr;
    std::function<void()> onClick_;
    std::vector<MenuItem> menu_;
};

namespace DetailRows {

enum class Icon { reveal, trash, copy, folder };
QIcon icon(Icon which);
// A borderless icon button whose accessible name is its tooltip.
QToolButton* iconButton(Icon which, const QString& tooltip, QWidget* parent);
// A small busy indicator, named for assistive tools.
QWidget* spinner(const QString& accessibleName, QWidget* parent);
QLabel* label(const QString& text, QWidget* parent, const QString& style = {});
// A one-line label that may be narrower than its text: it shows what fits, with "…" where it cut.
// text() keeps the whole text.
QLabel* elided(const QString& text, Qt::TextElideMode mode, QWidget* parent, const QString& style = {});
// A rounded frame with a column inside.
QWidget* card(QWidget* parent, const QColor& tint = {});
QWidget* divider(QWidget* parent, int indent = 0);

} // namespace DetailRows
} // namespace lumabroom
