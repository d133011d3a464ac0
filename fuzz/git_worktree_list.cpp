#include "FuzzCheck.h"

#include "agents/WorktreeDiscovery.h"

#include <algorithm>

using namespace lumabroom;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto input = fuzz::text(data, size);
    const auto paths = WorktreeDiscovery::parseWorktreeList(input);
    fuzz::require(paths.size() <= static_cast<std::size_t>(std::count(input.begin(), input.end(), '\n')) + 1,
                  "at most one worktree a line");
    for (const auto& path : paths) fuzz::require(path.find('\n') == std::string::npos, "one line a path");
    return 0;
}
