#pragma once

#include "scan/CleanRule.h"

#include <QColor>

#include <filesystem>
#include <string>

class QWidget;

// Plain stand-ins for the shared look and the desktop services, one function each, so that the
// real pieces replace them in one place.
namespace lumabroom::StandIns {

QWidget* ruleIconTile(const CleanRule& rule, QWidget* parent);
QWidget* safetyBadge(SafetyLevel safety, QWidget* parent);
QColor ruleColor(const CleanRule& rule);
QColor accent();
QColor rowHover();
QColor orange();
QColor green();

void reveal(const std::filesystem::path& path);
void copyToClipboard(const std::string& text);

} // namespace lumabroom::StandIns
