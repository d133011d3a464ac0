#include "FakeTool.h"

#include "host/Platform.h"
#include "host/ToolPaths.h"
#include "tools/DockerCLI.h"
#include "tools/DockerInventoryLister.h"
#include "tools/DockerItemRemover.h"
#include "tools/DockerPruner.h"
#include "tools/DockerUsageLister.h"
#include "tools/OrbStackRefresher.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using namespace lumabroom::test;
using Kind = DockerItem::Kind;
namespace fs = std::filesystem;

namespace {

// A fake docker found through the test seam, and a daemon socket that exists only after
// startDaemon(). It is the system daemon's, the last candidate, so that every candidate counts.
struct DockerTest : ::testing::Test {
    DockerTest() {
        ToolPaths::setOverride(Tool::docker, docker.binary.string());
        DockerCLI::setSystemSocketForTesting((tree / "docker.sock").string());
    }
    ~DockerTest() override {
        ToolPaths::setOverride(Tool::docker, std::nullopt);
        DockerCLI::setSystemSocketForTesting(std::nullopt);
    }
    void startDaemon() { tree.file("docker.sock"); }

    TempTree tree;
    ScopedEnv env{{"HOME", (tree / "home").string()}, {"XDG_RUNTIME_DIR", (tree / "run").string()}};
    FakeTool docker{tree / "docker"};
};

std::string dfLine(const std::string& type, const std::string& size) {
    return R"~({"Reclaimable":"0B (0%)","Size":")~" + size + R"(","TotalCount":"1","Type":")" + type + "\"}\n";
}

} // namespace

TEST(DockerCLI, ParseSizeProbesTheUnitTableInOrder) {
    // "1.5TB" by the "TB" row, not as "1.5T" + "B"; "4.1MB" truncated, not rounded.
    const std::pair<const char*, std::int64_t> cases[] = {{"512B", 512},
                                                          {"12.3KB", 12300},
                                                          {"1.5TB", 1500000000000},
                                                          {"4.1MB", 4099999},
                                                          {"1.5GiB", 0},
                                                          {"N/A", 0},
                                                          {"", 0},
                                                          {"B", 0},
                                                          {" 5MB", 0}};
    for (const auto& [text, bytes] : cases) EXPECT_EQ(DockerCLI::parseSize(text), bytes) << text;
}

// Docker Desktop for Linux and a rootless daemon have their sockets in the user's folders.
TEST_F(DockerTest, EachSocketOfTheUserOrTheSystemTellsThatTheDaemonRuns) {
    if (Platform::isMacOS()) GTEST_SKIP() << "only OrbStack's socket is looked for here";
    EXPECT_EQ(DockerCLI::socketCandidates(),
              (std::vector<std::string>{"~/.orbstack/run/docker.sock", "~/.docker/desktop/docker.sock",
                                        (tree / "run/docker.sock").string(), (tree / "docker.sock").string()}));
    EXPECT_FALSE(DockerCLI::daemonAvailable());
    for (const char* socket :
         {"home/.orbstack/run/docker.sock", "home/.docker/desktop/docker.sock", "run/docker.sock", "docker.sock"}) {
        SCOPED_TRACE(socket);
        tree.file(socket);
        EXPECT_TRUE(DockerCLI::daemonAvailable());
        fs::remove(tree / socket);
    }
    ScopedEnv relative{{"XDG_RUNTIME_DIR", "run"}};
    EXPECT_EQ(DockerCLI::socketCandidates().size(), 3u);
}

TEST(DockerUsageLister, ReadsEachKnownRowLenientlyInTheToolsOrder) {
    // A warning line, counts as numbers, missing and ill-typed fields; rows as the daemon prints them are
    // read end to end by the scanner's tests.
    const std::string output =
        "WARNING: not JSON at all\n"
        R"~({"Active":"1","Reclaimable":"0B (0%)","Size":"12.3kB","TotalCount":3,"Type":"Containers"})~"
        "\n"
        R"~({"Type":7,"Size":"9GB"})~"
        "\n"
        R"~({"Active":"1","Reclaimable":"  330MB   (100%)","Size":"330MB","Type":"Local Volumes"})~"
        "\n"
        R"~({"Active":"0","Size":12,"TotalCount":true,"Type":"Build Cache"})~";
    const std::vector<ScanEntry> expected{
        {"/d/docker/containers", 12300, EntryLabel{DockerUsageLabel{DockerUsageKind::containers, "3", std::nullopt}}},
        {"/d/docker/volumes", 330000000, EntryLabel{DockerUsageLabel{DockerUsageKind::volumes, "?", "330MB"}}},
        {"/d/docker/buildCache", 0, EntryLabel{DockerUsageLabel{DockerUsageKind::buildCache, "?", std::nullopt}}},
    };
    EXPECT_EQ(DockerUsageLister::parse(output, "/d/docker"), expected);
}

TEST_F(DockerTest, WithoutTheSocketOrWithAFailingToolNoOperationGivesAnything) {
    // First no process may start; then the tool fails, with output that each operation would take.
    for (int status : {0, 1}) {
        SCOPED_TRACE(status);
        if (status == 1) startDaemon();
        EXPECT_EQ(DockerCLI::daemonAvailable(), status == 1);
        docker.respond("*", R"({"Type":"Images","Size":"1GB","TotalCount":"1"})", status);
        EXPECT_EQ(DockerUsageLister::entries(tree / "docker"), std::vector<ScanEntry>{});
        EXPECT_EQ(DockerInventoryLister::fetch(), std::nullopt);
        for (auto target : allDockerPruneTargets) EXPECT_EQ(DockerPruner::prune(target), std::nullopt);
        EXPECT_FALSE(DockerItemRemover::remove({Kind::volume, "pgdata", "", 0, "pgdata"}));
        EXPECT_EQ(OrbStackRefresher::refinedEntries({{tree / "data.img", 1000, std::nullopt}}), std::nullopt);
        EXPECT_EQ(OrbStackRefresher::refinedEntries({}), std::nullopt); // without disk entries, never asks
        EXPECT_EQ(docker.calls().size(), status == 1 ? 8u : 0u);
    }
}

// The two listings' command lines are checked end to end by the scanner's tests.
TEST_F(DockerTest, PruneAndRemovePassExactlyTheirArguments) {
    startDaemon();
    // The last "reclaimed space:" line counts, not the last colon.
    docker.respond("*", "Deleted Images:\nuntagged: node@sha256:99aa\nTotal reclaimed space: 5GB\n"
                        "Total reclaimed space: \t1.2GB \ndeleted: sha256:fedc\n");
    for (auto target : allDockerPruneTargets) EXPECT_EQ(DockerPruner::prune(target), "1.2GB");
    for (const DockerItem& item : {DockerItem{Kind::image, "n", "d", 1, "0123456789ab"},
                                   {Kind::container, "db", "", 1, "3f2a"},
                                   {Kind::volume, "my data", "", 1, "my data"}})
        EXPECT_TRUE(DockerItemRemover::remove(item));
    EXPECT_EQ(docker.calls(), (Calls{{"builder", "prune", "-f"},
                                     {"image", "prune", "-af"},
                                     {"container", "prune", "-f"},
                                     {"volume", "prune", "-af"},
                                     {"rmi", "0123456789ab"},
                                     {"rm", "3f2a"},
                                     {"volume", "rm", "my data"}}));
    docker.respond("*", "Deleted Volumes:\npgdata\n");
    EXPECT_EQ(DockerPruner::prune(DockerPruneTarget::volumes), "0B");
}

TEST_F(DockerTest, OrbStackRowsReplaceTheDiskWithARemainderForTheRest) {
    startDaemon();
    const fs::path data = tree / "data";
    const std::vector<ScanEntry> disk{{data / "data.img", 70, std::nullopt}, {data / "swap.img", 30, std::nullopt}};
    const std::pair<std::string, const char*> cases[] = {
        {dfLine("Images", "30B") + dfLine("Local Volumes", "20B"), "other 50, images 30, volumes 20, "},
        {dfLine("Images", "60B") + dfLine("Build Cache", "40B"), "images 60, buildCache 40, "},
        {dfLine("Containers", "80B") + dfLine("Images", "90B"), "images 90, containers 80, "},
        // Ties keep the tool's order, the remainder last.
        {dfLine("Containers", "30B") + dfLine("Images", "30B") + dfLine("Local Volumes", "10B"),
         "containers 30, images 30, other 30, volumes 10, "},
        // Nothing to refine: the caller keeps the disk.
        {"WARNING: no rows\n" + dfLine("Networks", "1GB"), "nothing"},
    };
    for (const auto& [rows, expected] : cases) {
        SCOPED_TRACE(rows);
        docker.respond("*", rows);
        const auto refined = OrbStackRefresher::refinedEntries(disk);
        std::string got = refined ? "" : "nothing";
        for (const auto& e : refined.value_or(std::vector<ScanEntry>{})) {
            EXPECT_EQ(e.label == EntryLabel{DockerOtherLabel{}}, e.url.filename() == "other");
            got += e.url.lexically_relative(data / "docker").string() + " " + std::to_string(e.size) + ", ";
        }
        EXPECT_EQ(got, expected);
        EXPECT_EQ(OrbStackRefresher::isRefined(refined.value_or(disk)), refined.has_value());
    }
}
