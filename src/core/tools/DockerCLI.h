#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom::DockerCLI {

// Where the daemon's socket may be, in order (may begin with "~"): OrbStack's, and on Linux then
// Docker Desktop's "~/.docker/desktop/docker.sock", a rootless daemon's "$XDG_RUNTIME_DIR/docker.sock"
// and the system daemon's "/var/run/docker.sock".
std::vector<std::string> socketCandidates();

// Test seam, in-process only: while set, the system daemon's socket is looked for here instead.
// nullopt restores the fixed place. Never read from the environment.
void setSystemSocketForTesting(std::optional<std::string> path);

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
