#pragma once

#include "host/Trash.h"

#include <optional>
#include <string>

// What each platform's Trash file provides to the shared part.
namespace lumabroom::Trash {

// "what: reason" for an errno value.
std::string describe(const std::string& what, int error);

// Moves `item` (no trailing slash, its identity checked) to the Trash.
Outcome moveItem(const std::string& item, const std::optional<FileIdentity>& expected);

// Renames `from` to `to` unless something is at `to`: 0, or the errno value (EEXIST when taken).
int moveWithoutReplacing(const std::string& from, const std::string& to);

} // namespace lumabroom::Trash
