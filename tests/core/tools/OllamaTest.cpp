#include "FakeTool.h"

#include "host/ToolPaths.h"
#include "scan/BuiltinRules.h"
#include "scan/CacheScanner.h"
#include "tools/OllamaModelLister.h"

#include "support/Process.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

fs::path writeText(TempTree& tree, std::string_view relative, const std::string& text) {
    fs::path path = tree.file(relative);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    return path;
}

std::string manifest(std::int64_t config, std::vector<std::int64_t> layers) {
    std::string text = R"~({"schemaVersion":2,"mediaType":"application/vnd.docker.distribution.manifest.v2+json",)~"
                       R"~("config":{"mediaType":"application/vnd.docker.container.image.v1+json","digest":"sha256:c","size":)~"
                       + std::to_string(config) + R"~(},"layers":[)~";
    for (std::size_t i = 0; i < layers.size(); ++i)
        text += (i ? "," : "") + std::string(R"~({"mediaType":"application/vnd.ollama.image.model","digest":"sha256:l",)~")
                + R"~("size":)~" + std::to_string(layers[i]) + "}";
    return text + "]}";
}

std::vector<std::pair<std::string, std::int64_t>> named(const std::vector<ScanEntry>& entries) {
    std::vector<std::pair<std::string, std::int64_t>> out;
    for (const auto& e : entries) out.emplace_back(OllamaModelRemover::modelName(e.url).value_or("-"), e.size);
    return out;
}

} // namespace

TEST(OllamaModelLister, ManifestSizeAddsTheIntegralSizesItFinds) {
    struct Case {
        const char* text;
        std::optional<std::int64_t> size;
    };
    const Case cases[] = {
        {R"~({"config":{"size":10},"layers":[{"size":100},{"size":1000}]})~", 1110},
        {R"~({"layers":[{"size":100},{"size":1000}]})~", 1100},
        {R"~({"config":{"size":10}})~", 10},
        {R"~({"config":{"size":"10"},"layers":[{"size":"100"},{"size":5},{},7,{"size":null}]})~", 5},
        {R"~({"config":{"size":2.0},"layers":[{"size":2.5},{"size":true},{"size":18446744073709551615}]})~", 2},
        {R"~({"config":[{"size":10}],"layers":{"size":100}})~", 0},
        {R"~({"layers":[{"size":9223372036854775807},{"size":9223372036854775807}]})~", 9223372036854775807},
        {"{}", 0},
        {"[]", std::nullopt},
        {R"~({"layers":[)~", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(OllamaModelLister::manifestSize(c.text), c.size);
    }
}

TEST(OllamaModelLister, OneEntryPerManifestAtAnyDepth) {
    TempTree t;
    const std::string lib = "models/manifests/registry.ollama.ai/library/";
    auto llama = writeText(t, lib + "llama3/8b", manifest(485, {4'661'211'808, 12'403, 96}));
    writeText(t, lib + "llama3/latest", manifest(485, {4'661'211'808, 12'403, 96})); // the same blobs, in full
    writeText(t, "models/manifests/hf.co/user/deep/er/qwen/q4", manifest(0, {2'000}));
    writeText(t, lib + "qwen/.hidden", manifest(7, {}));
    writeText(t, "models/manifests/loose", manifest(1, {1}));
    writeText(t, lib + "broken/1b", "{\"layers\": [");
    writeText(t, lib + "array/1b", "[1, 2]");
    writeText(t, lib + "empty/1b", manifest(0, {}));
    writeText(t, "models/blobs/sha256-l", "never read");
    t.symlink(lib + "linked/1b", llama); // a link is no regular file

    auto entries = OllamaModelLister::entries(t / "models");
    ASSERT_TRUE(entries);
    auto got = named(*entries);
    ASSERT_EQ(got.size(), 5u);
    // The two llama3 tags tie, in the order of their folder.
    std::sort(got.begin(), got.begin() + 2);
    EXPECT_EQ(got, (std::vector<std::pair<std::string, std::int64_t>>{{"llama3:8b", 4'661'224'792},
                                                                       {"llama3:latest", 4'661'224'792},
                                                                       {"qwen:q4", 2'000},
                                                                       {"qwen:.hidden", 7},
                                                                       {"manifests:loose", 2}}));
    for (const auto& e : *entries) EXPECT_EQ(e.label, std::nullopt);
    EXPECT_EQ((*entries)[2].url, t / "models/manifests/hf.co/user/deep/er/qwen/q4");
}

TEST(OllamaModelLister, AnUnreadableFolderLosesOnlyItsOwnModels) {
    TempTree t;
    writeText(t, "models/manifests/r/library/open/1b", manifest(1, {10}));
    writeText(t, "models/manifests/r/library/closed/1b", manifest(1, {20}));
    writeText(t, "models/manifests/r/library/zz/1b", manifest(1, {30}));
    t.makeUnreadable("models/manifests/r/library/closed");
    const fs::path models = t / "models";
    long long found = asUnprivileged([&]() -> long long {
        auto entries = OllamaModelLister::entries(models);
        if (!entries || entries->size() != 2) return -1;
        return (*entries)[0].size * 100 + (*entries)[1].size;
    });
    EXPECT_EQ(found, 31 * 100 + 11);
}

TEST(OllamaModelLister, NoManifestsGiveNothing) {
    TempTree t;
    EXPECT_EQ(OllamaModelLister::entries(t / "models"), std::nullopt);
    t.dir("models/manifests");
    EXPECT_EQ(OllamaModelLister::entries(t / "models"), std::nullopt);
    writeText(t, "models/manifests/a/b", "not json");
    writeText(t, "models/manifests/a/c", manifest(0, {0}));
    EXPECT_EQ(OllamaModelLister::entries(t / "models"), std::nullopt);
}

TEST(OllamaModelLister, TheRouteFallsBackToTheFolderWithoutModels) {
    TempTree t;
    ScopedEnv env{{"HOME", (t / "home").string()}};
    const CleanRule* rule = BuiltinRules::find("tool.ollama");
    ASSERT_NE(rule, nullptr);

    EXPECT_EQ(CacheScanner::scanRule(*rule).entries, std::vector<ScanEntry>{});

    t.file("home/.ollama/models/blobs/sha256-aa", 8192);
    auto plain = CacheScanner::scanRule(*rule).entries;
    ASSERT_EQ(plain.size(), 1u);
    EXPECT_EQ(plain[0].url, t / "home/.ollama/models");

    auto small = writeText(t, "home/.ollama/models/manifests/registry.ollama.ai/library/phi/mini", manifest(1, {500}));
    auto large = writeText(t, "home/.ollama/models/manifests/registry.ollama.ai/library/phi/medium", manifest(1, {900}));
    EXPECT_EQ(CacheScanner::scanRule(*rule).entries,
              (std::vector<ScanEntry>{{large, 901, std::nullopt}, {small, 501, std::nullopt}}));
}

TEST(OllamaModelRemover, ModelNameIsFolderColonFile) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"/h/.ollama/models/manifests/registry.ollama.ai/library/llama3/8b", "llama3:8b"},
        {"/h/.ollama/models/manifests/hf.co/user/model/Q4_K_M", "model:Q4_K_M"},
        {"/h/.ollama/models/manifests/loose", "manifests:loose"},
        {"/h/.ollama/models/blobs/sha256-aa", std::nullopt},
        {"/h/manifests", std::nullopt},
    };
    for (const auto& [path, name] : cases) {
        SCOPED_TRACE(path);
        EXPECT_EQ(OllamaModelRemover::modelName(path), name);
    }
}

TEST(OllamaModelRemover, RemovesThroughOllamaRm) {
    TempTree t;
    FakeTool ollama(t, "ollama");
    ollama.respond({"rm", "gone:7b"}, "Error: model 'gone:7b' not found\n", 1);
    ToolPaths::setOverride(Tool::ollama, ollama.binary().string());
    EXPECT_TRUE(OllamaModelRemover::remove("llama3:8b"));
    EXPECT_FALSE(OllamaModelRemover::remove("gone:7b"));
    EXPECT_EQ(ollama.calls(), (std::vector<std::vector<std::string>>{{"rm", "llama3:8b"}, {"rm", "gone:7b"}}));
    ToolPaths::setOverride(Tool::ollama, (t / "absent/ollama").string());
    EXPECT_FALSE(OllamaModelRemover::remove("llama3:8b"));
    ToolPaths::setOverride(Tool::ollama, std::nullopt);
}
