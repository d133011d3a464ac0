#pragma once

#include <QString>
#include <QUrl>

#include <filesystem>

// What the views ask of the desktop beyond their own window.
namespace lumabroom::DesktopServices {

// Shows the item selected in the file manager. Returns at once; where the file manager cannot
// select it, its folder opens instead.
void reveal(const std::filesystem::path& item);

// The folder that opens when the item cannot be shown selected.
QUrl parentFolder(const std::filesystem::path& item);

void copyToClipboard(const QString& text);

} // namespace lumabroom::DesktopServices
