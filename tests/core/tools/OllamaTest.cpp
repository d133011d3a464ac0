#include "FakeTool.h"

#include "host/ToolPaths.h"
#include "scan/BuiltinRules.h"
#include "scan/CacheScanner.h"
#include "tools/OllamaModelLister.h"

#include "support/Process.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

fs::path manifest(TempTree& tree, std::string_view relative, std::int64_t config, std::int64_t layer) {
    writeFile(tree.file(relative), R"({"config":{"digest":"sha256:c","size":)" + std::to_string(config)
                                       + R"(},"layers":[{"digest":"sha256:l","size":)" + std::to_string(layer) + "}]}");
    return tree / relative;
}

} // namespace

TEST(OllamaModelLister, ManifestSizeAddsTheIntegralSizesItFinds) {
    const std::pair<const char*, std::optional<std::int64_t>> cases[] = {
        {R"({"config":{"size":10},"layers":[{"size":100},{"size":1000}]})", 1110},
        {R"({"layers":[{"size":100},{"size":1000}]})", 1100},
        {R"({"config":{"size":10}})", 10},
        {R"({"config":{"size":"10"},"layers":[{"size":"100"},{"size":5},{},7,{"size":null}]})", 5},
        {R"({"config":{"size":2.0},"layers":[{"size":2.5},{"size":true},{"size":18446744073709551615}]})", 2},
        {"{}", 0},
        {"[]", std::nullopt},
    };
    for (const auto& [text, size] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(OllamaModelLister::manifestSize(text), size);
    }
}

TEST(OllamaModelLister, OneEntryPerManifestAtAnyDepth) {
    TempTree t;
    const std::string lib = "models/manifests/registry.ollama.ai/library/";
    auto llama = manifest(t, lib + "llama3/8b", 485, 4'661'211'808);
    auto latest = manifest(t, lib + "llama3/latest", 5, 4'661'211'808); // the same blob counts in full again
    auto deep = manifest(t, "models/manifests/hf.co/user/deep/er/qwen/q4", 0, 2'000);
    auto loose = manifest(t, "models/manifests/loose", 1, 1);
    manifest(t, lib + "empty/1b", 0, 0);
    writeFile(t.file(lib + "broken/1b"), R"({"layers": [)");
    t.symlink(lib + "linked/1b", llama); // a link is no regular file
    EXPECT_EQ(OllamaModelLister::entries(t / "models"),
              (std::vector<ScanEntry>{{llama, 4'661'212'293, std::nullopt}, {latest, 4'661'211'813, std::nullopt},
                                      {deep, 2'000, std::nullopt}, {loose, 2, std::nullopt}}));
    EXPECT_EQ(OllamaModelRemover::modelName(llama), "llama3:8b");
    EXPECT_EQ(OllamaModelRemover::modelName(loose), "manifests:loose");
    EXPECT_EQ(OllamaModelRemover::modelName(t / "models/blobs/sha256-l"), std::nullopt);
}

TEST(OllamaModelLister, AnUnreadableFolderLosesOnlyItsOwnModels) {
    TempTree t;
    manifest(t, "models/manifests/r/library/open/1b", 1, 10);
    manifest(t, "models/manifests/r/library/closed/1b", 1, 20);
    manifest(t, "models/manifests/r/library/zz/1b", 1, 30);
    t.makeUnreadable("models/manifests/r/library/closed");
    long long found = asUnprivileged([models = t / "models"]() -> long long {
        auto entries = OllamaModelLister::entries(models);
        return entries && entries->size() == 2 ? (*entries)[0].size * 100 + (*entries)[1].size : -1;
    });
    EXPECT_EQ(found, 31 * 100 + 11);
}

TEST(OllamaModelLister, TheRouteFallsBackToTheFolderWithoutModels) {
    TempTree t;
    ScopedEnv env{{"HOME", (t / "home").string()}};
    const CleanRule* rule = BuiltinRules::find("tool.ollama");
    ASSERT_NE(rule, nullptr);
    // No manifest gives a size: the folder is measured as a whole.
    t.file("home/.ollama/models/blobs/sha256-aa", 8192);
    writeFile(t.file("home/.ollama/models/manifests/r/library/phi/bad"), "not json");
    manifest(t, "home/.ollama/models/manifests/r/library/phi/zero", 0, 0);
    auto plain = CacheScanner::scanRule(*rule).entries;
    ASSERT_EQ(plain.size(), 1u);
    EXPECT_EQ(plain[0].url, t / "home/.ollama/models");

    auto small = manifest(t, "home/.ollama/models/manifests/r/library/phi/mini", 1, 500);
    auto large = manifest(t, "home/.ollama/models/manifests/r/library/phi/medium", 1, 900);
    EXPECT_EQ(CacheScanner::scanRule(*rule).entries,
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
