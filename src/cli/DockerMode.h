#pragma once

#include <iosfwd>

namespace lumabroom::DockerMode {

// `--docker`: the daemon's usage per kind in the tool's order, then its images, containers and
// volumes, largest first. With `json`, one line {"usage": [...]} and one line {"inventory": ...}
// (null when docker fails). Without the daemon's socket only {"daemon": false}, and no process is
// started.
int run(bool json, std::ostream& out);

} // namespace lumabroom::DockerMode
