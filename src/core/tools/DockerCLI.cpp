#include "tools/DockerCLI.h"

#include "clean/CommandRunner.h"
#include "host/FileSystem.h"
#include "host/Paths.h"
#include "host/Platform.h"
#include "host/ToolPaths.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <mutex>
#include <utility>

namespace lumabroom::DockerCLI {

namespace {

constexpr std::string_view kOrbStackSocket = "~/.orbstack/run/docker.sock";
constexpr std::string_view kDesktopSocket = "~/.docker/desktop/docker.sock";
constexpr std::string_view kSystemSocket = "/var/run/docker.sock";

struct Unit {
    std::string_view suffix;
    double factor;
};
// Probed in this order, so "TB" is tried before "B" and both spellings of kilo count.
constexpr std::array kUnits{
    Unit{"TB", 1e12}, Unit{"GB", 1e9}, Unit{"MB", 1e6}, Unit{"kB", 1e3}, Unit{"KB", 1e3}, Unit{"B", 1.0},
};

std::mutex overrideMutex;
std::optional<std::string> systemSocketOverride;

// A whole text as a number, the way the platform reads one: an optional sign, then a decimal or
// hexadecimal number, an exponent, or inf/nan; nothing may lead or trail.
std::optional<double> wholeNumber(std::string_view text) {
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.empty() || text.front() == '+' || text.front() == '-') return std::nullopt;
    auto format = std::chars_format::general;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        format = std::chars_format::hex;
        text.remove_prefix(2);
    }
    double value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, format);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return negative ? -value : value;
}

std::int64_t truncatedBytes(double value) {
    // Out of range or not a number is no size docker prints; keep it defined all the same.
    constexpr double kLimit = 9223372036854775808.0; // 2^63
    if (std::isnan(value)) return 0;
    if (value >= kLimit) return std::numeric_limits<std::int64_t>::max();
    if (value <= -kLimit) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(value);
}

} // namespace

std::vector<std::string> socketCandidates() {
    std::vector<std::string> paths{std::string(kOrbStackSocket)};
    if (Platform::isMacOS()) return paths;
    // Docker Desktop for Linux, then a rootless daemon, then the system's.
    paths.emplace_back(kDesktopSocket);
    if (auto runtime = Paths::xdgRuntimeDirectory()) paths.push_back(*runtime + "/docker.sock");
    std::lock_guard lock(overrideMutex);
    paths.push_back(systemSocketOverride.value_or(std::string(kSystemSocket)));
    return paths;
}

void setSystemSocketForTesting(std::optional<std::string> path) {
    std::lock_guard lock(overrideMutex);
    systemSocketOverride = std::move(path);
}

bool daemonAvailable() {
    for (const auto& candidate : socketCandidates())
        if (FileSystem::exists(Paths::expandingTilde(candidate))) return true;
    return false;
}

std::optional<std::string> run(const std::vector<std::string>& arguments, double timeoutSeconds) {
    if (!daemonAvailable()) return std::nullopt;
    auto binary = CommandRunner::findBinary(ToolPaths::candidates(Tool::docker));
    if (!binary) return std::nullopt;
    return CommandRunner::run(*binary, arguments, timeoutSeconds);
}

std::int64_t parseSize(std::string_view text) {
    for (const auto& unit : kUnits) {
        if (!text.ends_with(unit.suffix)) continue;
        if (auto number = wholeNumber(text.substr(0, text.size() - unit.suffix.size())))
            return truncatedBytes(*number * unit.factor);
    }
    return 0;
}

} // namespace lumabroom::DockerCLI
