#pragma once

#include "host/FolderChain.h"

#include <optional>
#include <string>

// What each platform's Trash file provides to the shared part.
namespace lumabroom::Trash {

// "what: reason" for an errno value.
std::string describe(const std::string& what, int error);

// Moves `item` (no trailing slash, its identity checked) to the Trash; an error text, or nothing.
std::optional<std::string> moveItem(const std::string& item, const std::optional<FileIdentity>& expected);

} // namespace lumabroom::Trash
