#pragma once

#include "scan/ScanEntry.h"
#include "tools/DockerCLI.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace lumabroom::DockerUsageLister {

inline bool daemonAvailable() { return DockerCLI::daemonAvailable(); }

// One entry per kind of usage that the daemon reports, in the tool's order, each at
// `pseudoBase`/<kind raw value> where no file exists. Empty when the daemon can't be asked.
std::vector<ScanEntry> entries(const std::filesystem::path& pseudoBase);

// The rows of `docker system df --format {{json .}}`: one JSON object a line. Lines that are not
// JSON objects, or of a type that is no kind, are skipped.
std::vector<ScanEntry> parse(std::string_view output, const std::filesystem::path& pseudoBase);

} // namespace lumabroom::DockerUsageLister
