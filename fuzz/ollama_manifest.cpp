#include "FuzzCheck.h"

#include "tools/OllamaModelLister.h"

#include <nlohmann/json.hpp>

using namespace lumabroom;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto input = fuzz::text(data, size);
    const auto total = OllamaModelLister::manifestSize(input);
    if (total) fuzz::require(nlohmann::json::accept(input), "a size only from JSON");
    return 0;
}
