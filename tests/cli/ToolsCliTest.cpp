#include "core/tools/FakeTool.h"
#include "support/Process.h"
#include "support/TempTree.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

// What a daemon prints for `system df`: one object a line, with a warning line that is no JSON and a
// row of a type that the program doesn't know.
const char* const kDf =
    "WARNING: Error loading config file: /home/u/.docker/config.json: unexpected end of JSON input\n"
    R"~({"Active":"2","Reclaimable":"1.2GB (45%)","Size":"2.7GB","TotalCount":"5","Type":"Images"})~"
    "\n"
    R"~({"Active":"1","Reclaimable":"0B (0%)","Size":"12.3kB","TotalCount":"3","Type":"Containers"})~"
    "\n"
    R"~({"Active":"1","Reclaimable":"0B","Size":"330MB","TotalCount":"2","Type":"Local Volumes"})~"
    "\n"
    R"~({"Active":"0","Reclaimable":"1.1GB","Size":"1.1GB","TotalCount":"40","Type":"Build Cache"})~"
    "\n"
    R"~({"Active":"0","Reclaimable":"0B","Size":"0B","TotalCount":"0","Type":"Networks"})~"
    "\n";

const char* const kDfVerbose = R"~({"Images":[
{"Containers":"1","CreatedAt":"2024-05-02 10:11:12 +0000 UTC","CreatedSince":"2 weeks ago","Digest":"","ID":"sha256:0123456789abcdef0123456789abcdef","Repository":"postgres","SharedSize":"0B","Size":"438MB","Tag":"16","UniqueSize":"438MB","VirtualSize":"438MB"},
{"Containers":"0","CreatedSince":"3 months ago","ID":"sha256:fedcba9876543210fedcba9876543210","Repository":"<none>","Size":"1.2GB","Tag":"<none>"}],
"Containers":[
{"Command":"\"docker-entrypoint.s…\"","ID":"3f2a1b4c5d6e7f8091a2","Image":"postgres:16","LocalVolumes":"1","Names":"db","Size":"63B (virtual 438MB)","State":"running","Status":"Up 3 hours"}],
"Volumes":[
{"Driver":"local","Links":"1","Name":"pgdata","Size":"47.2MB"},
{"Driver":"local","Links":"0","Name":"3b9e0c7d1f","Size":"283MB"}],
"BuildCache":[{"ID":"q1","Size":"1.1GB","Shared":false}]}
)~";

struct Home {
    TempTree tree;
    fs::path home = tree / "home";
    // OrbStack's docker, the first place the program looks.
    FakeTool docker{home / ".orbstack/bin/docker"};

    ProcessResult run(std::vector<std::string> args) const {
        args.insert(args.begin(), scannerBinary());
        return runProcess(args, {{"HOME", home.string()}, {"TMPDIR", tree.root().string()}, {"PATH", "/usr/bin:/bin"}});
    }
    fs::path write(const std::string& relative, const std::string& text) {
        writeText(tree.file("home/" + relative), text);
        return home / relative;
    }
};

} // namespace

TEST(ToolsCli, DockerGivesUsageInTheToolsOrderThenTheSortedInventory) {
    Home h;
    h.docker.respond("system df --format {{json .}}", kDf);
    h.docker.respond("system df -v --format {{json .}}", kDfVerbose);
    h.write(".orbstack/run/docker.sock", "");
    auto r = h.run({"--docker", "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(
        r.out,
        R"~({"usage":[{"kind":"images","size":2700000000,"count":"5","reclaimable":"1.2GB"},)~"
        R"~({"kind":"containers","size":12300,"count":"3","reclaimable":null},)~"
        R"~({"kind":"volumes","size":330000000,"count":"2","reclaimable":null},)~"
        R"~({"kind":"buildCache","size":1100000000,"count":"40","reclaimable":"1.1GB"}]})~"
        "\n"
        R"~({"inventory":{"images":[{"kind":"image",)~"
        R"~("name":"悬空镜像 fedcba987654","detail":"未被容器使用","size":1200000000,"ref":"fedcba987654"},)~"
        R"~({"kind":"image","name":"postgres:16","detail":"被 1 个容器使用","size":438000000,"ref":"0123456789ab"}],)~"
        R"~("containers":[{"kind":"container","name":"db","detail":"postgres:16 · Up 3 hours","size":63,)~"
        R"~("ref":"3f2a1b4c5d6e"}],"volumes":[)~"
        R"~({"kind":"volume","name":"3b9e0c7d1f","detail":"未被容器挂载","size":283000000,"ref":"3b9e0c7d1f"},)~"
        R"~({"kind":"volume","name":"pgdata","detail":"被 1 个容器挂载","size":47200000,"ref":"pgdata"}]}})~"
        "\n");
    EXPECT_EQ(h.docker.calls(),
              (Calls{{"system", "df", "--format", "{{json .}}"}, {"system", "df", "-v", "--format", "{{json .}}"}}));

    r = h.run({"--docker", "--language", "en"});
    for (const char* line : {"Docker usage\n", "\nImages (2)\n", "  db  ·  postgres:16 · Up 3 hours  [3f2a1b4c5d6e]\n"})
        EXPECT_NE(r.out.find(line), std::string::npos) << line << " in:\n" << r.out;
}

TEST(ToolsCli, DockerWithoutTheSocketStartsNothing) {
    if (fs::exists("/var/run/docker.sock")) GTEST_SKIP() << "this machine's own daemon socket counts as a daemon";
    Home h;
    EXPECT_EQ(h.run({"--docker", "--json"}).out, "{\"daemon\":false}\n");
    EXPECT_EQ(h.run({"--docker", "--language", "en"}).out,
              "The Docker daemon is not running: no socket found. Nothing was asked.\n");
    EXPECT_EQ(h.docker.calls(), Calls{});
}

TEST(ToolsCli, ModelsListsOneRowPerManifest) {
    Home h;
    EXPECT_EQ(h.run({"--models", "--json"}).out, "{\"models\":[]}\n");
    const std::string lib = ".ollama/models/manifests/registry.ollama.ai/library/";
    auto llama = h.write(lib + "llama3/8b", R"({"config":{"size":485},"layers":[{"size":4661211808},{"size":96}]})");
    auto phi = h.write(lib + "phi3/mini", R"({"layers":[{"size":2176178913}]})");
    h.write(lib + "bad/1b", "{");
    EXPECT_EQ(h.run({"--models", "--json"}).out, R"({"models":[{"name":"llama3:8b","path":")" + llama.string()
                                                     + R"(","size":4661212389},)"
                                                       R"({"name":"phi3:mini","path":")"
                                                     + phi.string()
                                                     + R"(","size":2176178913}]})"
                                                       "\n");
}

TEST(ToolsCli, SimulatorsCarryTheirNames) {
    Home h;
    const std::string devices = "Library/Developer/CoreSimulator/Devices/";
    auto plist = h.write(devices + "0A1B2C3D-1111-2222-3333-444455556666/device.plist",
                         R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>name</key>)"
                         R"(<string>iPhone 15</string><key>runtime</key>)"
                         R"(<string>com.apple.CoreSimulator.SimRuntime.iOS-17-2</string></dict></plist>)");
    auto blob = h.write(devices + "ffffffff-1111-2222-3333-444455556666/blob", std::string(20000, 'x'));
    EXPECT_EQ(h.run({"--simulators", "--json", "--catalogue", "macos"}).out,
              R"({"simulators":[{"udid":"ffffffff-1111-2222-3333-444455556666","name":null,"path":")"
                  + blob.parent_path().string() + R"(","size":)" + std::to_string(allocatedBytes(blob))
                  + R"(},{"udid":"0A1B2C3D-1111-2222-3333-444455556666","name":"iPhone 15 · iOS 17.2","path":")"
                  + plist.parent_path().string() + R"(","size":)" + std::to_string(allocatedBytes(plist)) + "}]}\n");
}

TEST(ToolsCli, ModesAreExclusive) {
    Home h;
    EXPECT_EQ(h.run({"--docker", "--models"}).status, 2);
    EXPECT_EQ(h.run({"--models", "--rule", "tool.ollama"}).status, 2);
}
