#include "DockerFixture.h"

#include "tools/DockerInventoryLister.h"

using namespace lumabroom;
using namespace lumabroom::test;
using Kind = DockerItem::Kind;

namespace {

// What `docker system df -v --format {{json .}}` prints, trimmed to the keys that vary here plus a
// few that are read by nobody.
const char* const kVerbose = R"~({
 "Images": [
  {"Containers":"1","CreatedSince":"2 weeks ago","ID":"sha256:0123456789abcdef0123","Repository":"postgres",
   "SharedSize":"0B","Size":"438MB","Tag":"16","UniqueSize":"438MB"},
  {"Containers":"0","ID":"sha256:fedcba9876543210","Repository":"<none>","Size":"1.2GB","Tag":"<none>"},
  {"Containers":"N/A","ID":"abcdefabcdef99","Repository":"node","Size":"438MB","Tag":"<none>"},
  {"Containers":3,"ID":7,"Size":"12.3kB"},
  {"Containers":"2","ID":"sha256:","Repository":"redis","Tag":"7"}
 ],
 "Containers": [
  {"ID":"3f2a1b4c5d6e7f80","Image":"postgres:16","Names":"db","Size":"12MB (virtual 1.2GB)","Status":"Up 3 hours"},
  {"ID":"99aa","Image":"node:20","Names":"web","Size":"63B"},
  {"ID":"77bb","Size":"   "},
  {"Image":1,"Status":"Exited (0) 2 days ago","Names":["x"],"Size":"1.5GB (virtual 2GB)"}
 ],
 "Volumes": [
  {"Links":"1","Name":"pgdata","Size":"47.2MB"},
  {"Links":"N/A","Name":"cache","Size":"47.2MB"},
  {"Links":"0","Name":"empty","Size":"0B"},
  {"Links":2,"Size":"1GB"}
 ],
 "BuildCache": [{"ID":"q1","Size":"5GB"}]
})~";

DockerItem item(Kind kind, std::string name, std::string detail, std::int64_t size, std::string ref) {
    return {kind, std::move(name), std::move(detail), size, std::move(ref)};
}

} // namespace

TEST(DockerInventoryLister, EveryRowGivesOneItemWhateverItsFields) {
    auto inventory = DockerInventoryLister::parse(kVerbose);
    ASSERT_TRUE(inventory);
    const std::vector<DockerItem> images{
        item(Kind::image, "悬空镜像 fedcba987654", "未被容器使用", 1200000000, "fedcba987654"),
        item(Kind::image, "postgres:16", "被 1 个容器使用", 438000000, "0123456789ab"),
        item(Kind::image, "node:<none>", "未被容器使用", 438000000, "abcdefabcdef"),
        item(Kind::image, "悬空镜像 ", "未被容器使用", 12300, ""),
        item(Kind::image, "redis:7", "被 2 个容器使用", 0, ""),
    };
    const std::vector<DockerItem> containers{
        item(Kind::container, "?", "Exited (0) 2 days ago", 1500000000, ""),
        item(Kind::container, "db", "postgres:16 · Up 3 hours", 12000000, "3f2a1b4c5d6e"),
        item(Kind::container, "web", "node:20", 63, "99aa"),
        item(Kind::container, "?", "", 0, "77bb"),
    };
    const std::vector<DockerItem> volumes{
        item(Kind::volume, "?", "未被容器挂载", 1000000000, "?"),
        item(Kind::volume, "pgdata", "被 1 个容器挂载", 47200000, "pgdata"),
        item(Kind::volume, "cache", "未被容器挂载", 47200000, "cache"),
        item(Kind::volume, "empty", "未被容器挂载", 0, "empty"),
    };
    EXPECT_EQ(inventory->images, images);
    EXPECT_EQ(inventory->containers, containers);
    EXPECT_EQ(inventory->volumes, volumes);
}

TEST(DockerInventoryLister, OnlyAJsonObjectMakesAnInventory) {
    struct Case {
        const char* text;
        std::optional<DockerInventory> expected;
    };
    const Case cases[] = {
        {"{}", DockerInventory{}},
        {R"~({"Images": {"a": 1}, "Containers": "none", "Volumes": null})~", DockerInventory{}},
        {R"~({"Images": [{"ID": "sha256:aa"}, 5]})~", DockerInventory{}}, // not a list of objects
        {"[]", std::nullopt},
        {"", std::nullopt},
        {"Cannot connect to the Docker daemon", std::nullopt},
        {R"~({"Images": [)~", std::nullopt},
        {"{} {}", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(DockerInventoryLister::parse(c.text), c.expected);
    }
}

TEST(DockerInventoryLister, ShortIdDropsEveryPrefixThenKeepsTwelveCharacters) {
    const std::pair<const char*, const char*> cases[] = {
        {"sha256:0123456789abcdef", "0123456789ab"},
        {"0123456789abcdef", "0123456789ab"},
        {"sha256:sha256:0123456789abcdef", "0123456789ab"},
        {"01234sha256:56789abcdef", "0123456789ab"},
        {"abc", "abc"},
        {"", ""},
        {"sha256:", ""},
        {"éééééééééééééé", "éééééééééééé"}, // characters, not bytes
    };
    for (const auto& [id, expected] : cases) {
        SCOPED_TRACE(id);
        EXPECT_EQ(DockerInventoryLister::shortId(id), expected);
    }
}

TEST(DockerInventory, RemovingFiltersEveryListByKindAndRef) {
    const DockerItem image = item(Kind::image, "busybox:1", "未被容器使用", 5, "shared");
    const DockerItem volume = item(Kind::volume, "shared", "未被容器挂载", 5, "shared");
    const DockerItem container = item(Kind::container, "c", "", 3, "c1");
    const DockerInventory inventory{{image, item(Kind::image, "renamed", "", 9, "shared")}, {container}, {volume}};

    EXPECT_EQ(image.id(), "image:shared");
    EXPECT_EQ(volume.id(), "volume:shared");
    EXPECT_EQ(inventory.removing(image), (DockerInventory{{}, {container}, {volume}}));
    EXPECT_EQ(inventory.removing(item(Kind::container, "other", "", 0, "c2")), inventory);
    // Placed in the wrong list all the same, an item of the id goes.
    const DockerInventory misplaced{{}, {image}, {}};
    EXPECT_EQ(misplaced.removing(image), DockerInventory{});
}

TEST_F(DockerTest, FetchReadsTheVerboseTableAndFailsWithTheTool) {
    startDaemon();
    const std::vector<std::string> verbose{"system", "df", "-v", "--format", "{{json .}}"};
    docker.respond(verbose, R"~({"Volumes":[{"Links":"1","Name":"pgdata","Size":"47.2MB"}]})~" "\n");
    EXPECT_EQ(DockerInventoryLister::fetch(),
              (DockerInventory{{}, {}, {item(Kind::volume, "pgdata", "被 1 个容器挂载", 47200000, "pgdata")}}));
    FakeTool failing(tree, "docker-failing");
    failing.respondToAnything("{}", 125);
    ToolPaths::setOverride(Tool::docker, failing.binary().string());
    EXPECT_EQ(DockerInventoryLister::fetch(), std::nullopt);
}
