// Pattern expansion over a generated folder of fixed shape; the cache is warm after the first iteration.

#include "scan/PathExpander.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {
// "a" and 7 → "a7".
std::string numbered(const char* prefix, int n) { return std::string(prefix).append(std::to_string(n)); }

struct Home {
    fs::path root;
    Home() {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = (fs::path(tmp && *tmp ? tmp : "/tmp") / "lumabroom-bench-XXXXXX").string();
        root = ::mkdtemp(pattern.data());
        // 200 simulator-like folders, half of them UUID-shaped, each with 20 children.
        for (int i = 0; i < 200; ++i) {
            char name[64];
            if (i % 2 == 0) std::snprintf(name, sizeof name, "%08X-0000-4000-8000-%012d", i, i);
            else std::snprintf(name, sizeof name, "not-a-device-%d", i);
            fs::path dir = root / "Devices" / name;
            fs::create_directories(dir / "data");
            for (int j = 0; j < 20; ++j) std::ofstream(dir / numbered("f", j));
        }
    }
    ~Home() { fs::remove_all(root); }
};

const Home& home() {
    static Home h;
    return h;
}
} // namespace

static void BM_ExpandUuidPattern(benchmark::State& state) {
    const std::string pattern = (home().root / R"(Devices/????????-????-????-????-????????????)").string();
    for (auto _ : state) benchmark::DoNotOptimize(lumabroom::PathExpander::expand(pattern));
}
BENCHMARK(BM_ExpandUuidPattern);

static void BM_ExpandTwoWildcardsAndFixedTail(benchmark::State& state) {
    const std::string pattern = (home().root / "Devices/*/*/f1?").string();
    for (auto _ : state) benchmark::DoNotOptimize(lumabroom::PathExpander::expand(pattern));
}
BENCHMARK(BM_ExpandTwoWildcardsAndFixedTail);

static void BM_Resolve(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(lumabroom::PathExpander::resolve("$TMPDIR/*"));
}
BENCHMARK(BM_Resolve);
