#pragma once

#include <cstdint>
#include <string>

namespace lumabroom::Formatting {

// A byte count in decimal units (1 kB = 1000 bytes), the unit and the precision chosen by size.
std::string bytes(std::int64_t count);

} // namespace lumabroom::Formatting
