#include "DockerFixture.h"

#include "tools/DockerPruner.h"

using namespace lumabroom;
using namespace lumabroom::test;

TEST(DockerPruner, ReadsTheLastReclaimedSpaceLine) {
    struct Case {
        const char* name;
        const char* output;
        const char* expected;
    };
    const Case cases[] = {
        {"one line", "Total reclaimed space: 1.2GB\n", "1.2GB"},
        {"several lines, the last counts",
         "Deleted build cache objects:\nq1\nTotal reclaimed space: 5GB\nTotal reclaimed space: 1.2GB\n\n", "1.2GB"},
        {"nothing freed", "Total reclaimed space: 0B\n", "0B"},
        {"hashes with colons don't count",
         "Deleted Images:\nuntagged: node@sha256:99aa\ndeleted: sha256:0123456789abcdef\n\nTotal reclaimed space: 438MB\n"
         "deleted: sha256:fedcba9876543210\n",
         "438MB"},
        {"empty output", "", "0B"},
        {"no such line", "Deleted Volumes:\npgdata\n", "0B"},
        {"only in this case", "Total Reclaimed Space: 3GB\n", "0B"},
        {"blanks and tabs trimmed, past the last colon", "Build cache reclaimed space: \t 2.5kB \t\n", "2.5kB"},
        {"trailing colons are no piece", "x: reclaimed space: 7MB::\n", "7MB"},
        {"nothing behind the colon", "Total reclaimed space:   \n", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(DockerPruner::reclaimedSpace(c.output), c.expected);
    }
}

TEST(DockerPruneTarget, VocabularyOfTheCard) {
    struct Case {
        DockerPruneTarget target;
        const char* id;
        const char* titleKey;
        DockerUsageKind kind;
        bool destructive;
    };
    const Case cases[] = {
        {DockerPruneTarget::buildCache, "build-cache", "构建缓存", DockerUsageKind::buildCache, false},
        {DockerPruneTarget::images, "images", "未使用镜像", DockerUsageKind::images, false},
        {DockerPruneTarget::containers, "containers", "已停止容器", DockerUsageKind::containers, false},
        {DockerPruneTarget::volumes, "volumes", "未使用数据卷", DockerUsageKind::volumes, true},
    };
    ASSERT_EQ(allDockerPruneTargets.size(), std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& c = cases[i];
        SCOPED_TRACE(c.id);
        EXPECT_EQ(allDockerPruneTargets[i], c.target);
        EXPECT_EQ(rawValue(c.target), c.id);
        EXPECT_EQ(dockerPruneTargetFromRaw(c.id), c.target);
        EXPECT_EQ(titleKey(c.target), c.titleKey);
        EXPECT_EQ(usageKind(c.target), c.kind);
        EXPECT_EQ(isDestructive(c.target), c.destructive);
    }
    // The usage row of the build cache is named differently from its prune target.
    EXPECT_EQ(rawValue(usageKind(DockerPruneTarget::buildCache)), "buildCache");
    EXPECT_EQ(dockerPruneTargetFromRaw("buildCache"), std::nullopt);
}

TEST_F(DockerTest, PruneGivesTheFreedSpaceOrNothingOnFailure) {
    startDaemon();
    docker.respond({"image", "prune", "-af"}, "Deleted Images:\ndeleted: sha256:aa\n\nTotal reclaimed space: 1.2GB\n");
    docker.respond({"builder", "prune", "-f"}, "");
    docker.respond({"volume", "prune", "-af"}, "Total reclaimed space: 5GB\n", 1);
    EXPECT_EQ(DockerPruner::prune(DockerPruneTarget::images), "1.2GB");
    EXPECT_EQ(DockerPruner::prune(DockerPruneTarget::buildCache), "0B");
    EXPECT_EQ(DockerPruner::prune(DockerPruneTarget::volumes), std::nullopt);
}
