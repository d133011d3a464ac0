#include "FuzzCheck.h"

#include "agents/ClaudeProjects.h"

using namespace lumabroom;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto cwd = ClaudeProjects::firstCwd(fuzz::text(data, size));
    if (cwd) fuzz::require(!cwd->empty(), "an empty value gives nothing");
    return 0;
}
