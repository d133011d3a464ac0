#pragma once

#include "scan/CleanRule.h"

#include <QColor>

#include <filesystem>
#include <string>

class QWidget;

// The shared look and the desktop services as the panel uses them, one function each.
namespace lumabroom::DetailLook {

QWidget* ruleIconTile(const CleanRule& rule, QWidget* parent);
QWidget* safetyBadge(SafetyLevel safety, QWidget* parent);
QColor ruleColor(const CleanRule& rule);
QColor accent();
QColor rowHover();
QColor orange();
QColor green();

void reveal(const std::filesystem::path& path);
void copyToClipboard(const std::string& text);

} // namespace lumabroom::DetailLook
