#include "FuzzCheck.h"

#include "agents/WorktreeDiscovery.h"

#include <algorithm>

using namespace lumabroom;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto input = fuzz::text(data, size);
    const auto summary = WorktreeDiscovery::parseStatusV2(input);
    fuzz::require(summary.dirtyFiles >= 0, "no negative count");
    fuzz::require(static_cast<std::size_t>(summary.dirtyFiles)
                      <= static_cast<std::size_t>(std::count(input.begin(), input.end(), '\n')) + 1,
                  "at most one dirty file a line");
    return 0;
}
