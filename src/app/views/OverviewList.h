#pragma once

#include "scan/Category.h"

#include <QString>
#include <QWidget>

#include <map>
#include <optional>
#include <vector>

class QVBoxLayout;

namespace lumabroom {

class AppModel;

// The panel's overview: a header per group and, under each open group, its rule cards; with a
// category chosen, only that group under a way back to all of them.
//
// It keeps its rows across updates: a group or rule that stays keeps its widget and only its
// figures change, so totals roll and the focus stays where it was.
class OverviewList : public QWidget {
public:
    OverviewList(AppModel& model, bool light, QWidget* parent = nullptr);

    // Shows the model's groups, those of `filter` only when it has a value.
    void showGroups(std::optional<Category> filter);
    // The rows from top to bottom, each a control or a box of them.
    const std::vector<QWidget*>& rows() const { return order_; }

private:
    // The widget kept under `key`, or a new one made by `make`, placed as the next row.
    template <class Row, class Make>
    Row* place(const QString& key, Make make, int indent = 0);
    void placeGroups(std::optional<Category> filter);

    AppModel& model_;
    bool light_;
    QVBoxLayout* list_;
    std::map<QString, QWidget*> rows_;   // by key: "back", "empty", a header's or a card's name
    std::map<QString, QWidget*> unused_; // the rows of the last update not yet placed in this one
    std::vector<QWidget*> order_;
};

} // namespace lumabroom
