#include "scan/ScanEntry.h"

#include "scan/HashCombine.h"

using namespace lumabroom;

std::size_t std::hash<ScanEntry>::operator()(const ScanEntry& e) const noexcept {
    std::size_t seed = 0;
    feedHash(seed, e.url.string());
    feed(seed, static_cast<std::size_t>(e.size));
    feed(seed, e.label ? 1 : 0);
    if (e.label) feedHash(seed, *e.label);
    return seed;
}
