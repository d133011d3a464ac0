#include "FuzzCheck.h"

#include "tools/DockerUsageLister.h"

#include <algorithm>

using namespace lumabroom;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto input = fuzz::text(data, size);
    const std::filesystem::path base = "/home/u/.orbstack/docker";
    const auto rows = DockerUsageLister::parse(input, base);
    fuzz::require(rows.size() <= static_cast<std::size_t>(std::count(input.begin(), input.end(), '\n')) + 1,
                  "at most one row a line");
    for (const auto& row : rows) {
        fuzz::require(row.url.parent_path() == base, "rows lie under the pseudo base");
        const auto* label = row.label ? std::get_if<DockerUsageLabel>(&row.label->value) : nullptr;
        fuzz::require(label != nullptr, "every row has a usage label");
        fuzz::require(row.url.filename() == rawValue(label->kind), "the URL names the label's kind");
        if (label->reclaimable) {
            fuzz::require(!label->reclaimable->empty() && *label->reclaimable != "0B", "no empty or 0B reclaimable");
            fuzz::require(label->reclaimable->find(' ') == std::string::npos, "reclaimable is one piece");
        }
    }
    return 0;
}
