#pragma once

#include "scan/Category.h"

#include <QWidget>

#include <optional>

class QVBoxLayout;

namespace lumabroom {

class AppModel;

// The panel's overview: a header per group and, under each open group, its rule cards; with a
// category chosen, only that group under a way back to all of them.
class OverviewList : public QWidget {
public:
    OverviewList(AppModel& model, bool light, QWidget* parent = nullptr);

    // Shows the model's groups, those of `filter` only when it has a value.
    void showGroups(std::optional<Category> filter);

private:
    void addBackButton();
    void addRows(std::optional<Category> filter);

    AppModel& model_;
    bool light_;
    QVBoxLayout* list_;
};

} // namespace lumabroom
