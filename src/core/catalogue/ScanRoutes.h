#pragma once

#include "scan/ScanRoute.h"

namespace lumabroom {

namespace ScanRoutes {
// The routes of the built-in rules, keyed by rule id.
const RouteTable& builtin();
} // namespace ScanRoutes

} // namespace lumabroom
