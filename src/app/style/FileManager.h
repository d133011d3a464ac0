#pragma once

#include <QDBusMessage>

#include <filesystem>

namespace lumabroom::FileManager {

// The freedesktop file manager's call that shows `item` selected in its folder.
QDBusMessage showItems(const std::filesystem::path& item);

} // namespace lumabroom::FileManager
