#include "clean/CommandRunner.h"

#include "host/ChildProcess.h"
#include "host/FileSystem.h"
#include "host/Paths.h"

#include <string_view>

namespace lumabroom::CommandRunner {

namespace {
// Well-formed UTF-8 only: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text) {
    std::size_t i = 0;
    const std::size_t n = text.size();
    while (i < n) {
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead < 0x80) {
            ++i;
            continue;
        }
        std::size_t length = 0;
        unsigned char low = 0x80, high = 0xBF; // allowed range of the second byte
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            if (lead == 0xE0) low = 0xA0;
            if (lead == 0xED) high = 0x9F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            if (lead == 0xF0) low = 0x90;
            if (lead == 0xF4) high = 0x8F;
        } else {
            return false;
        }
        if (n - i < length) return false;
        const auto second = static_cast<unsigned char>(text[i + 1]);
        if (second < low || second > high) return false;
        for (std::size_t k = 2; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return false;
        i += length;
    }
    return true;
}
} // namespace

std::optional<std::string> findBinary(const std::vector<std::string>& candidates) {
    std::vector<std::string> expanded;
    expanded.reserve(candidates.size());
    for (const auto& candidate : candidates) expanded.push_back(Paths::expandingTilde(candidate));
    for (auto& path : expanded)
        if (FileSystem::isExecutableFile(path)) return std::move(path);
    return std::nullopt;
}

std::optional<std::string> run(const std::string& binary, const std::vector<std::string>& arguments,
                               double timeoutSeconds) {
    auto outcome = ChildProcess::run(binary, arguments, timeoutSeconds, kKillGraceSeconds);
    // A child stopped at its limit may have printed only part of what it meant to.
    if (!outcome || outcome->reachedTimeLimit || outcome->exitStatus != 0) return std::nullopt;
    if (!isValidUtf8(outcome->standardOutput)) return std::nullopt;
    return std::move(outcome->standardOutput);
}

} // namespace lumabroom::CommandRunner
