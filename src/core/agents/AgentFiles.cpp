#include "agents/AgentFiles.h"

#include <system_error>

namespace fs = std::filesystem;

namespace lumabroom::AgentFiles {

std::optional<std::int64_t> logicalSize(const fs::path& file) {
    std::error_code ec;
    const auto size = fs::file_size(file, ec);
    if (ec) return std::nullopt;
    return static_cast<std::int64_t>(size);
}

std::optional<fs::file_time_type> modificationTime(const fs::path& file) {
    std::error_code ec;
    const auto time = fs::last_write_time(file, ec);
    if (ec) return std::nullopt;
    return time;
}

bool hasExtension(std::string_view name, std::string_view extension) {
    const std::string found = fs::path(name).extension().string();
    return found.size() == extension.size() + 1 && found.compare(1, std::string::npos, extension) == 0;
}

} // namespace lumabroom::AgentFiles
