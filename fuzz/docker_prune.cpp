#include "FuzzCheck.h"

#include "tools/DockerPruner.h"

using namespace lumabroom;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto input = fuzz::text(data, size);
    const std::string freed = DockerPruner::reclaimedSpace(input);
    if (input.find("reclaimed space:") == std::string_view::npos) fuzz::require(freed == "0B", "no line, 0B");
    fuzz::require(freed.find('\n') == std::string::npos && freed.find(':') == std::string::npos,
                  "one piece of one line");
    fuzz::require(freed.empty()
                      || (freed.front() != ' ' && freed.front() != '\t' && freed.back() != ' ' && freed.back() != '\t'),
                  "trimmed");
    return 0;
}
