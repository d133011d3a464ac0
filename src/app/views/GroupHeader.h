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
    GroupHeader(AppModel& model, Category category, bool light, QWidget* parent = nullptr);

    // The figures of `group`, of this header's category; the total rolls to a new value. The
    // summary shows only while collapsed.
    void setGroup(const VisibleGroup& group, bool collapsed, const QColor& dot);

private:
    QString summaryText(const VisibleGroup& group) const;

    QLabel* dot_;
    QLabel* title_;
    QLabel* count_;
    QLabel* summary_;
    AnimatedBytes* total_;
};

} // namespace lumabroom
