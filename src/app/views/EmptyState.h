#pragma once

#include <QWidget>

#include <string>

namespace lumabroom {

// What the panel shows instead of rows: a large symbol, a title and an optional line below.
class EmptyState : public QWidget {
public:
    EmptyState(const std::string& symbol, const QString& title, const QString& description, bool light,
               QWidget* parent = nullptr);
};

} // namespace lumabroom
