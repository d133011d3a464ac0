#pragma once

#include "model/VisibleGroup.h"

#include <QPushButton>

class QLabel;

namespace lumabroom {

class AnimatedBytes;
class AppModel;

// A group's row: its colour, name, rule count, a one-line summary while collapsed, and its total.
// A press opens or closes the group.
class GroupHeader : public QPushButton {
public:
    GroupHeader(AppModel& model, const VisibleGroup& group, bool collapsed, bool light, QWidget* parent = nullptr);

    // The figures of `group`, the same category; its total rolls to the new value.
    void setGroup(const VisibleGroup& group, const QColor& dot);
    bool isCollapsed() const { return collapsed_; }

private:
    QString summaryText(const VisibleGroup& group) const;

    bool collapsed_;
    QLabel* dot_;
    QLabel* title_;
    QLabel* count_;
    QLabel* summary_ = nullptr;
    AnimatedBytes* total_;
};

} // namespace lumabroom
