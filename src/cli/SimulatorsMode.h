#pragma once

#include "scan/BuiltinRules.h"

#include <iosfwd>

namespace lumabroom::SimulatorsMode {

// `--simulators`: the simulator device folders of the catalogue's rule, largest first, each with its
// UDID and the name from its property list. With `json`, one line
// {"simulators": [{"udid", "name", "path", "size"}]}, null where there is no UDID or name.
int run(bool json, PathTable table, std::ostream& out);

} // namespace lumabroom::SimulatorsMode
