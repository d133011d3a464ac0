#pragma once

#include "DetailRows.h"
#include "DetailText.h"
#include "host/Platform.h"

#include <QString>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

class QPushButton;
class QVBoxLayout;

// Layout pieces that the rule panel's cards are built from.
namespace lumabroom::CardParts {

// "Show in …": the file manager by name where the system has one everybody knows.
constexpr std::string_view revealKey() { return Platform::isMacOS() ? "在 Finder 中显示" : "在文件管理器中显示"; }
constexpr std::string_view revealRepositoryKey() {
    return Platform::isMacOS() ? "在 Finder 中显示主仓" : "在文件管理器中显示主仓";
}

// A card file takes these with `using namespace CardParts`.
using DetailRows::Icon;
using DetailRows::label;
using DetailText::counted;
using DetailText::formatted;
using DetailText::text;

inline constexpr auto kSecondary = "color:palette(placeholder-text);";
inline constexpr auto kTertiary = "color:palette(mid);font-size:11px;";

inline QString q(const std::string& s) { return QString::fromStdString(s); }
std::string bytes(std::int64_t n);
inline std::string number(std::int64_t n) { return std::to_string(n); }

// The column of a `DetailRows::card`.
QVBoxLayout* columnOf(QWidget* w);
QPushButton* button(const QString& text, QWidget* parent);
// Rows of a card with a divider between them and none behind the last.
void addRows(QWidget* card, const std::vector<QWidget*>& rows, int indent = 0);
// Null widgets are left out.
QWidget* hbox(QWidget* parent, std::initializer_list<QWidget*> widgets, bool stretchAtEnd = false);
QWidget* vbox(QWidget* parent, std::initializer_list<QWidget*> widgets);
// A check box, or a plain dot for a rule that only reports.
QWidget* tick(bool reportOnly, bool checked, const QString& name, std::function<void()> onToggle, QWidget* parent);
QToolButton* revealButton(BarRow* row, const std::filesystem::path& path);
std::vector<BarRow::MenuItem> pathMenu(const std::filesystem::path& path);

} // namespace lumabroom::CardParts
