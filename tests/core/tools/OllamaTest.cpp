#include "FakeTool.h"

#include "catalogue/BuiltinScan.h"
#include "host/ToolPaths.h"
#include "scan/BuiltinRules.h"
#include "tools/OllamaModelLister.h"

#include "support/Process.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

fs::path manifest(TempTree& tree, std::string_view relative, std::int64_t config, std::int64_t layer) {
    writeText(tree.file(relative), R"({"config":{"digest":"sha256:c","size":)" + std::to_string(config)
                                       + R"(},"layers":[{"digest":"sha256:l","size":)" + std::to_string(layer) + "}]}");
    return tree / relative;
}

} // namespace

// Plain sums of config and layers are checked end to end by the scanner's tests.
TEST(OllamaModelLister, ManifestSizeAddsTheIntegralSizesItFinds) {
    const std::pair<const char*, std::optional<std::int64_t>> cases[] = {
        {R"({"config":{"size":10}})", 10},
        {R"({"config":{"size":"10"},"layers":[{"size":"100"},{"size":5},{},7,{"size":null}]})", 5},
        {R"({"config":{"size":2.0},"layers":[{"size":2.5},{"size":true},{"size":18446744073709551615}]})", 2},
        {"{}", 0},
        {"[]", std::nullopt},
    };
    for (const auto& [text, size] : cases) EXPECT_EQ(OllamaModelLister::manifestSize(text), size) << text;
}

TEST(OllamaModelLister, OneEntryPerManifestAtAnyDepthAndNoneBehindAnUnreadableFolder) {
    TempTree t;
    const std::string lib = "models/manifests/registry.ollama.ai/library/";
    auto llama = manifest(t, lib + "llama3/8b", 485, 4'661'211'808);
    auto latest = manifest(t, lib + "llama3/latest", 5, 4'661'211'808); // the same blob counts in full again
    auto deep = manifest(t, "models/manifests/hf.co/user/deep/er/qwen/q4", 0, 2'000);
    auto loose = manifest(t, "models/manifests/loose", 1, 1);
    manifest(t, lib + "empty/1b", 0, 0);
    manifest(t, lib + "closed/1b", 1, 9'000'000'000);
    t.makeUnreadable(lib + "closed");
    t.symlink(lib + "linked/1b", llama); // a link is no regular file
    const std::vector<ScanEntry> expected{{llama, 4'661'212'293, std::nullopt},
                                          {latest, 4'661'211'813, std::nullopt},
                                          {deep, 2'000, std::nullopt},
                                          {loose, 2, std::nullopt}};
    EXPECT_EQ(
        asUnprivileged([&] { return static_cast<long long>(OllamaModelLister::entries(t / "models") == expected); }),
        1);
}

// A name that drops its namespace would remove the library model of the same name.
TEST(OllamaModelRemover, ModelNamesKeepAllButTheDefaultRegistryAndNamespace) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"/m/manifests/registry.ollama.ai/library/llama3/8b", "llama3:8b"},
        {"/m/manifests/registry.ollama.ai/alice/llama3/8b", "alice/llama3:8b"},
        {"/m/manifests/registry.ollama.ai/alice/library/7b", "alice/library:7b"},
        {"/m/manifests/hf.co/user/deep/er/qwen/q4", "hf.co/user/deep/er/qwen:q4"},
        {"/m/manifests/example.com/library/phi/latest", "example.com/library/phi:latest"},
        {"/m/manifests/loose", "manifests:loose"},
        {"/m/blobs/sha256-l", std::nullopt},
    };
    for (const auto& [path, expected] : cases) EXPECT_EQ(OllamaModelRemover::modelName(path), expected) << path;
}

TEST(OllamaModelLister, TheRouteFallsBackToTheFolderWithoutModels) {
    TempTree t;
    ScopedEnv env{{"HOME", (t / "home").string()}};
    const CleanRule& rule = *BuiltinRules::find("tool.ollama");
    // No manifest gives a size: the folder is measured as a whole.
    const std::string phi = "home/.ollama/models/manifests/r/library/phi/";
    t.file("home/.ollama/models/blobs/sha256-aa", 8192);
    manifest(t, phi + "zero", 0, 0);
    const auto plain = CacheScanner::scanRule(rule).entries;
    EXPECT_EQ(plain.size() == 1 ? plain[0].url : fs::path(), t / "home/.ollama/models");
    auto small = manifest(t, phi + "mini", 1, 500), large = manifest(t, phi + "medium", 1, 900);
    EXPECT_EQ(CacheScanner::scanRule(rule).entries,
              (std::vector<ScanEntry>{{large, 901, std::nullopt}, {small, 501, std::nullopt}}));
}

TEST(OllamaModelRemover, RemovesThroughOllamaRm) {
    TempTree t;
    FakeTool ollama(t / "ollama");
    ollama.respond("rm gone:7b", "Error: model 'gone:7b' not found\n", 1);
    ToolPaths::setOverride(Tool::ollama, ollama.binary.string());
    EXPECT_TRUE(OllamaModelRemover::remove("llama3:8b"));
    EXPECT_FALSE(OllamaModelRemover::remove("gone:7b"));
    ToolPaths::setOverride(Tool::ollama, std::nullopt);
    EXPECT_EQ(ollama.calls(), (Calls{{"rm", "llama3:8b"}, {"rm", "gone:7b"}}));
}
