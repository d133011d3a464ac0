#include "DockerFixture.h"

#include "tools/DockerUsageLister.h"
#include "tools/OrbStackRefresher.h"

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;
using Calls = std::vector<std::vector<std::string>>;

namespace {

ScanEntry usage(const fs::path& base, DockerUsageKind kind, std::int64_t size, std::string count,
                std::optional<std::string> reclaimable) {
    return {base / std::string(rawValue(kind)), size,
            EntryLabel{DockerUsageLabel{kind, std::move(count), std::move(reclaimable)}}};
}

std::string dfLine(const std::string& type, const std::string& size) {
    return R"~({"Active":"1","Reclaimable":"0B (0%)","Size":")~" + size + R"~(","TotalCount":"1","Type":")~" + type + "\"}\n";
}

const std::vector<std::string> kDf{"system", "df", "--format", "{{json .}}"};

} // namespace

TEST(DockerUsageLister, ReadsEachKnownRowLenientlyInTheToolsOrder) {
    const fs::path base = "/home/u/.orbstack/docker";
    // What the daemon prints, with the oddities a parser meets: a warning line, a line of another
    // type, counts as numbers and strings, missing and ill-typed fields.
    const std::string output =
        "WARNING: not JSON at all\n"
        R"~({"Active":"1","Reclaimable":"1.2GB (45%)","Size":"2.7GB","TotalCount":"5","Type":"Images"})~" "\n"
        "\n"
        R"~({"Active":"1","Reclaimable":"0B (0%)","Size":"12.3kB","TotalCount":3,"Type":"Containers"})~" "\n"
        R"~({"Active":"0","Reclaimable":"1GB","Size":"1GB","TotalCount":"1","Type":"Networks"})~" "\n"
        R"~(["Images"])~" "\n"
        R"~({"Type":7,"Size":"9GB"})~" "\n"
        R"~({"Active":"1","Reclaimable":"  330MB   (100%)","Size":"330MB","Type":"Local Volumes"})~" "\n"
        R"~({"Active":"0","Size":12,"TotalCount":true,"Type":"Build Cache"})~" "\n"
        R"~({"Reclaimable":"","Size":"N/A","TotalCount":"0","Type":"Images"})~";
    const std::vector<ScanEntry> expected{
        usage(base, DockerUsageKind::images, 2700000000, "5", "1.2GB"),
        usage(base, DockerUsageKind::containers, 12300, "3", std::nullopt),
        usage(base, DockerUsageKind::volumes, 330000000, "?", "330MB"),
        usage(base, DockerUsageKind::buildCache, 0, "?", std::nullopt),
        usage(base, DockerUsageKind::images, 0, "0", std::nullopt),
    };
    EXPECT_EQ(DockerUsageLister::parse(output, base), expected);
    EXPECT_EQ(DockerUsageLister::parse(output, base)[3].url, fs::path("/home/u/.orbstack/docker/buildCache"));
}

TEST(DockerUsageLister, OutputWithoutRowsGivesNoEntries) {
    for (const char* output : {"", "\n\n", "{}", "null\n[]\n", "{\"Type\":\"Images\""}) {
        SCOPED_TRACE(output);
        EXPECT_EQ(DockerUsageLister::parse(output, "/d/docker"), std::vector<ScanEntry>{});
    }
}

TEST_F(DockerTest, UsageOfAFailingToolIsEmpty) {
    startDaemon();
    docker.respond(kDf, dfLine("Images", "1GB"), 1);
    EXPECT_EQ(DockerUsageLister::entries(tree / "docker"), std::vector<ScanEntry>{});
    EXPECT_EQ(docker.calls(), Calls{kDf});
}

TEST_F(DockerTest, OrbStackRowsReplaceTheDiskWithARemainderForTheRest) {
    startDaemon();
    const fs::path data = tree / "data";
    const std::vector<ScanEntry> disk{{data / "data.img", 70, std::nullopt}, {data / "swap.img", 30, std::nullopt}};
    const EntryLabel other{DockerOtherLabel{}};
    struct Case {
        const char* name;
        std::string rows;
        std::vector<std::pair<std::string, std::int64_t>> expected; // last path component, size
    };
    const std::vector<Case> cases{
        {"remainder first", dfLine("Images", "30B") + dfLine("Local Volumes", "20B"),
         {{"other", 50}, {"images", 30}, {"volumes", 20}}},
        {"exactly the disk", dfLine("Images", "60B") + dfLine("Build Cache", "40B"), {{"images", 60}, {"buildCache", 40}}},
        {"more than the disk", dfLine("Containers", "80B") + dfLine("Images", "90B"),
         {{"images", 90}, {"containers", 80}}},
        {"ties keep the tool's order, the remainder last", dfLine("Containers", "30B") + dfLine("Images", "30B")
                                                               + dfLine("Local Volumes", "10B"),
         {{"containers", 30}, {"images", 30}, {"other", 30}, {"volumes", 10}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        docker.respondToAnything(c.rows, 0);
        auto refined = OrbStackRefresher::refinedEntries(disk);
        ASSERT_TRUE(refined);
        std::vector<std::pair<std::string, std::int64_t>> got;
        for (const auto& e : *refined) {
            EXPECT_EQ(e.url.parent_path(), data / "docker");
            EXPECT_EQ(e.url.filename() == "other", e.label == other);
            got.emplace_back(e.url.filename().string(), e.size);
        }
        EXPECT_EQ(got, c.expected);
        EXPECT_TRUE(OrbStackRefresher::isRefined(*refined));
    }
    EXPECT_FALSE(OrbStackRefresher::isRefined(disk));
}

TEST_F(DockerTest, OrbStackKeepsTheDiskWhenThereIsNothingToRefine) {
    startDaemon();
    docker.respondToAnything("WARNING: no rows\n" + dfLine("Networks", "1GB"), 0);
    EXPECT_EQ(OrbStackRefresher::refinedEntries({}), std::nullopt);
    EXPECT_EQ(docker.calls(), Calls{}) << "no disk entries: docker is not asked";
    EXPECT_EQ(OrbStackRefresher::refinedEntries({{tree / "data/data.img", 100, std::nullopt}}), std::nullopt);
    EXPECT_EQ(docker.calls(), Calls{kDf});
}
