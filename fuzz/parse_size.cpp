#include "FuzzCheck.h"

#include "tools/DockerCLI.h"

using namespace lumabroom;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto input = fuzz::text(data, size);
    const std::int64_t bytes = DockerCLI::parseSize(input);
    fuzz::require(input.ends_with('B') || bytes == 0, "a size without a unit suffix is 0");
    return 0;
}
