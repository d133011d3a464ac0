// Sizing a generated tree of fixed shape (20,000 files in 2,000 folders), warm cache.

#include "scan/DirectorySizer.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {
// "a" and 7 → "a7".
std::string numbered(const char* prefix, int n) { return std::string(prefix).append(std::to_string(n)); }

struct Tree {
    fs::path root;
    Tree() {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = (fs::path(tmp && *tmp ? tmp : "/tmp") / "lumabroom-bench-XXXXXX").string();
        root = ::mkdtemp(pattern.data());
        for (int a = 0; a < 20; ++a)
            for (int b = 0; b < 100; ++b) {
                fs::path dir = root / numbered("a", a) / numbered("b", b);
                fs::create_directories(dir);
                for (int f = 0; f < 10; ++f) {
                    int fd = ::open((dir / numbered("f", f)).c_str(), O_CREAT | O_WRONLY, 0644);
                    if (fd >= 0) {
                        [[maybe_unused]] auto n = ::write(fd, "0123456789", 10);
                        ::close(fd);
                    }
                }
            }
    }
    ~Tree() { fs::remove_all(root); }
};

const Tree& tree() {
    static Tree t;
    return t;
}
} // namespace

static void BM_SizeOneRoot(benchmark::State& state) {
    const fs::path root = tree().root;
    for (auto _ : state) benchmark::DoNotOptimize(lumabroom::DirectorySizer::size(root, state.range(0) != 0));
    state.SetItemsProcessed(state.iterations() * 20000);
}
BENCHMARK(BM_SizeOneRoot)->Arg(0)->Arg(1)->UseRealTime();

static void BM_SizeManyRoots(benchmark::State& state) {
    std::vector<fs::path> roots;
    for (int a = 0; a < 20; ++a) roots.push_back(tree().root / numbered("a", a));
    for (auto _ : state) benchmark::DoNotOptimize(lumabroom::DirectorySizer::sizes(roots, false));
    state.SetItemsProcessed(state.iterations() * 20000);
}
BENCHMARK(BM_SizeManyRoots)->UseRealTime();
