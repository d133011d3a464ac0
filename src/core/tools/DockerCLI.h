#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom::DockerCLI {

// Where the daemon's socket may be, in order (may begin with "~"): OrbStack's, and on Linux then the
// system daemon's "/var/run/docker.sock".
std::vector<std::string> socketCandidates();

// Test seam, in-process only: while set, socketCandidates() gives just these. nullopt restores the
// fixed places. Never read from the environment.
void setSocketCandidatesForTesting(std::optional<std::vector<std::string>> paths);

// The daemon counts as running exactly while a file exists at one of the socket candidates. One
// file test per candidate, no process.
bool daemonAvailable();

// The gate of every docker command: without the socket nothing is started; otherwise the first
// docker candidate runs with `arguments` and the given limit. Gives its standard output, or nothing.
std::optional<std::string> run(const std::vector<std::string>& arguments, double timeoutSeconds);

// Docker's human sizes in decimal units: "12.3kB" → 12300, "1TB" → 10^12. The suffixes are probed
// in the order TB, GB, MB, kB, KB, B; the rest must be a number from end to end. Anything else
// ("N/A", "1.5GiB", " 5MB") is 0.
std::int64_t parseSize(std::string_view text);

} // namespace lumabroom::DockerCLI
