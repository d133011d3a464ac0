#include "DockerFixture.h"

#include "host/Platform.h"
#include "scan/CleanRule.h"
#include "tools/DockerInventoryLister.h"
#include "tools/DockerItemRemover.h"
#include "tools/DockerPruner.h"
#include "tools/DockerUsageLister.h"
#include "tools/OrbStackRefresher.h"

#include <functional>
#include <limits>

using namespace lumabroom;
using namespace lumabroom::test;
using Calls = std::vector<std::vector<std::string>>;

TEST(DockerCLI, ParseSizeProbesTheUnitTableInOrder) {
    struct Case {
        const char* text;
        std::int64_t bytes;
    };
    const Case cases[] = {
        {"0B", 0},
        {"512B", 512},
        {"12.3kB", 12300},
        {"12.3KB", 12300},
        {"438MB", 438000000},
        {"1.2GB", 1200000000},
        {"1TB", 1000000000000},   // by the "TB" row, not read as "1T" + "B"
        {"1.5TB", 1500000000000},
        {"4.1MB", 4099999},       // truncated toward zero, as the tool's number times the factor
        {"1e3B", 1000},
        {"1.5GiB", 0},            // ends in "B", but "1.5Gi" is no number
        {"N/A", 0},
        {"", 0},
        {"B", 0},
        {"TB", 0},
        {" 5MB", 0},
        {"5 MB", 0},
        {"5MB ", 0},
        {"5mb", 0},
        {"0x10B", 16},
        {"nanB", 0},
        {"infTB", std::numeric_limits<std::int64_t>::max()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(DockerCLI::parseSize(c.text), c.bytes);
    }
}

TEST_F(DockerTest, WithoutTheSocketNoOperationStartsAProcess) {
    docker.respondToAnything("{\"Type\":\"Images\",\"Size\":\"1GB\",\"TotalCount\":\"1\"}\n", 0);
    const DockerItem volume{DockerItem::Kind::volume, "pgdata", "", 0, "pgdata"};
    const std::vector<ScanEntry> disk{{tree / "data/data.img", 1000, std::nullopt}};
    EXPECT_FALSE(DockerCLI::daemonAvailable());
    EXPECT_FALSE(DockerUsageLister::daemonAvailable());
    EXPECT_EQ(DockerCLI::run({"version"}, 5), std::nullopt);
    EXPECT_EQ(DockerUsageLister::entries(tree / "docker"), std::vector<ScanEntry>{});
    EXPECT_EQ(DockerInventoryLister::fetch(), std::nullopt);
    for (auto target : allDockerPruneTargets) EXPECT_EQ(DockerPruner::prune(target), std::nullopt);
    EXPECT_FALSE(DockerItemRemover::remove(volume));
    EXPECT_EQ(OrbStackRefresher::refinedEntries(disk), std::nullopt);
    EXPECT_EQ(docker.calls(), Calls{});
}

TEST_F(DockerTest, AnyExistingSocketCandidateCountsAsTheDaemon) {
    DockerCLI::setSocketCandidatesForTesting(
        std::vector<std::string>{(tree / "absent.sock").string(), (tree / "system.sock").string()});
    EXPECT_FALSE(DockerCLI::daemonAvailable());
    tree.file("system.sock");
    EXPECT_TRUE(DockerCLI::daemonAvailable());
}

TEST(DockerCLIPlaces, OrbStackSocketComesFirst) {
    auto sockets = DockerCLI::socketCandidates();
    ASSERT_FALSE(sockets.empty());
    EXPECT_EQ(sockets.front(), "~/.orbstack/run/docker.sock");
    EXPECT_EQ(sockets.size(), Platform::isMacOS() ? 1u : 2u);
    if (!Platform::isMacOS()) {
        EXPECT_EQ(sockets[1], "/var/run/docker.sock");
    }
}

TEST_F(DockerTest, SocketWithoutAnyDockerBinaryGivesNothing) {
    startDaemon();
    ToolPaths::setOverride(Tool::docker, (tree / "no/docker").string());
    EXPECT_TRUE(DockerCLI::daemonAvailable());
    EXPECT_EQ(DockerUsageLister::entries(tree / "docker"), std::vector<ScanEntry>{});
    EXPECT_EQ(DockerInventoryLister::fetch(), std::nullopt);
    EXPECT_EQ(DockerPruner::prune(DockerPruneTarget::images), std::nullopt);
}

TEST_F(DockerTest, EachOperationPassesExactlyItsArguments) {
    startDaemon();
    struct Case {
        const char* name;
        std::function<void()> call;
        std::vector<std::string> arguments;
    };
    const std::vector<Case> cases{
        {"usage", [&] { DockerUsageLister::entries(tree / "docker"); }, {"system", "df", "--format", "{{json .}}"}},
        {"inventory", [] { DockerInventoryLister::fetch(); }, {"system", "df", "-v", "--format", "{{json .}}"}},
        {"prune build cache", [] { DockerPruner::prune(DockerPruneTarget::buildCache); }, {"builder", "prune", "-f"}},
        {"prune images", [] { DockerPruner::prune(DockerPruneTarget::images); }, {"image", "prune", "-af"}},
        {"prune containers", [] { DockerPruner::prune(DockerPruneTarget::containers); }, {"container", "prune", "-f"}},
        {"prune volumes", [] { DockerPruner::prune(DockerPruneTarget::volumes); }, {"volume", "prune", "-af"}},
        {"remove image", [] { DockerItemRemover::remove({DockerItem::Kind::image, "n", "d", 1, "0123456789ab"}); },
         {"rmi", "0123456789ab"}},
        {"remove container", [] { DockerItemRemover::remove({DockerItem::Kind::container, "db", "", 1, "3f2a"}); },
         {"rm", "3f2a"}},
        {"remove volume", [] { DockerItemRemover::remove({DockerItem::Kind::volume, "my data", "", 1, "my data"}); },
         {"volume", "rm", "my data"}},
    };
    std::size_t expectedCalls = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        c.call();
        auto calls = docker.calls();
        ASSERT_EQ(calls.size(), ++expectedCalls);
        EXPECT_EQ(calls.back(), c.arguments);
    }
}

TEST_F(DockerTest, RemovalSucceedsExactlyWhenDockerExitsZero) {
    startDaemon();
    docker.respond({"volume", "rm", "?"}, "", 1);
    docker.respond({"rmi", "0123456789ab"}, "Untagged: postgres:16\nDeleted: sha256:0123456789ab\n");
    docker.respond({"rm", "3f2a"}, "");
    EXPECT_FALSE(DockerItemRemover::remove({DockerItem::Kind::volume, "?", "", 0, "?"}));
    EXPECT_TRUE(DockerItemRemover::remove({DockerItem::Kind::image, "postgres:16", "", 0, "0123456789ab"}));
    EXPECT_TRUE(DockerItemRemover::remove({DockerItem::Kind::container, "db", "", 0, "3f2a"}));
    EXPECT_EQ(docker.calls().front(), (std::vector<std::string>{"volume", "rm", "?"}));
}
