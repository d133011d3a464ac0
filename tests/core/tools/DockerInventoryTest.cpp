#include "tools/DockerInventoryLister.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using Kind = DockerItem::Kind;

TEST(DockerInventoryLister, EveryRowGivesOneItemWhateverItsFields) {
    // Dangling images, a container's own size before its virtual one, ill-typed and missing fields,
    // ids with "sha256:" twice and with letters of more than one byte; equal sizes keep the tool's order.
    const auto inventory = DockerInventoryLister::parse(R"~({"Images": [
  {"Containers":"1","ID":"sha256:sha256:0123456789abcdef0123","Repository":"postgres","Size":"438MB","Tag":"16"},
  {"Containers":"0","ID":"sha256:fedcba9876543210","Repository":"<none>","Size":"1.2GB","Tag":"<none>"},
  {"Containers":"N/A","ID":"abcdefabcdef99","Repository":"node","Size":"438MB","Tag":"<none>"},
  {"Containers":3,"ID":7,"Size":"12.3kB"}], "Containers": [
  {"ID":"3f2a1b4c5d6e7f80","Image":"postgres:16","Names":"db","Size":"12MB (virtual 1.2GB)","Status":"Up 3 hours"},
  {"ID":"éééééééééééééé","Size":"   "},
  {"Image":1,"Status":"Exited (0) 2 days ago","Names":["x"],"Size":"1.5GB (virtual 2GB)"}], "Volumes": [
  {"Links":"1","Name":"pgdata","Size":"47.2MB"},
  {"Links":"N/A","Name":"cache","Size":"47.2MB"},
  {"Links":2,"Size":"1GB"}]})~");
    const DockerInventory expected{
        {{Kind::image, "悬空镜像 fedcba987654", "未被容器使用", 1200000000, "fedcba987654"},
         {Kind::image, "postgres:16", "被 1 个容器使用", 438000000, "0123456789ab"},
         {Kind::image, "node:<none>", "未被容器使用", 438000000, "abcdefabcdef"},
         {Kind::image, "悬空镜像 ", "未被容器使用", 12300, ""}},
        {{Kind::container, "?", "Exited (0) 2 days ago", 1500000000, ""},
         {Kind::container, "db", "postgres:16 · Up 3 hours", 12000000, "3f2a1b4c5d6e"},
         {Kind::container, "?", "", 0, "éééééééééééé"}},
        {{Kind::volume, "?", "未被容器挂载", 1000000000, "?"},
         {Kind::volume, "pgdata", "被 1 个容器挂载", 47200000, "pgdata"},
         {Kind::volume, "cache", "未被容器挂载", 47200000, "cache"}},
    };
    EXPECT_EQ(inventory, expected);
    // Lists that are not all objects count as none; only an object makes an inventory.
    EXPECT_EQ(DockerInventoryLister::parse(R"({"Images": [{"ID": "sha256:aa"}, 5], "Volumes": null})"),
              DockerInventory{});
    for (const char* text : {"[]", "Cannot connect to the Docker daemon"})
        EXPECT_EQ(DockerInventoryLister::parse(text), std::nullopt) << text;
}

TEST(DockerInventory, RemovingDropsEveryItemOfTheSameKindAndRef) {
    const DockerItem image{Kind::image, "busybox:1", "", 5, "shared"}, container{Kind::container, "c", "", 3, "c1"};
    const DockerItem volume{Kind::volume, "shared", "", 5, "shared"};
    const DockerInventory inventory{{image, {Kind::image, "renamed", "", 9, "shared"}}, {container, image}, {volume}};
    EXPECT_EQ(inventory.removing(image), (DockerInventory{{}, {container}, {volume}}));
    EXPECT_EQ(inventory.removing({Kind::container, "other", "", 0, "c2"}), inventory);
}
