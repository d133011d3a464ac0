#include "support/Process.h"
#include "support/TempTree.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <sstream>

using namespace lumabroom::test;
using nlohmann::json;
namespace fs = std::filesystem;

namespace {
void writeText(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

std::string readText(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<json> jsonLines(const std::string& out) {
    std::vector<json> lines;
    std::istringstream in(out);
    for (std::string line; std::getline(in, line);) lines.push_back(json::parse(line)); // throws on bad JSON
    return lines;
}

// What a daemon prints for `system df`: one object a line, with a warning line that is no JSON and a
// row of a type that the program doesn't know.
const char* const kDf =
    "WARNING: Error loading config file: /home/u/.docker/config.json: unexpected end of JSON input\n"
    R"~({"Active":"2","Reclaimable":"1.2GB (45%)","Size":"2.7GB","TotalCount":"5","Type":"Images"})~" "\n"
    R"~({"Active":"1","Reclaimable":"0B (0%)","Size":"12.3kB","TotalCount":"3","Type":"Containers"})~" "\n"
    R"~({"Active":"1","Reclaimable":"0B","Size":"330MB","TotalCount":"2","Type":"Local Volumes"})~" "\n"
    R"~({"Active":"0","Reclaimable":"1.1GB","Size":"1.1GB","TotalCount":"40","Type":"Build Cache"})~" "\n"
    R"~({"Active":"0","Reclaimable":"0B","Size":"0B","TotalCount":"0","Type":"Networks"})~" "\n";

const char* const kDfVerbose = R"~({"Images":[
{"Containers":"1","CreatedAt":"2024-05-02 10:11:12 +0000 UTC","CreatedSince":"2 weeks ago","Digest":"","ID":"sha256:0123456789abcdef0123456789abcdef","Repository":"postgres","SharedSize":"0B","Size":"438MB","Tag":"16","UniqueSize":"438MB","VirtualSize":"438MB"},
{"Containers":"0","CreatedSince":"3 months ago","ID":"sha256:fedcba9876543210fedcba9876543210","Repository":"<none>","Size":"1.2GB","Tag":"<none>"},
{"Containers":"0","ID":"sha256:aaaabbbbccccddddeeee","Repository":"node","Size":"1.1GB","Tag":"20"}],
"Containers":[
{"Command":"\"docker-entrypoint.s…\"","ID":"3f2a1b4c5d6e7f8091a2","Image":"postgres:16","LocalVolumes":"1","Names":"db","Size":"63B (virtual 438MB)","State":"running","Status":"Up 3 hours"},
{"ID":"99aa88bb77cc66dd","Image":"node:20","Names":"build","Size":"12MB (virtual 1.1GB)","State":"exited","Status":"Exited (0) 2 days ago"}],
"Volumes":[
{"Driver":"local","Links":"1","Name":"pgdata","Size":"47.2MB"},
{"Driver":"local","Links":"0","Name":"3b9e0c7d1f","Size":"283MB"},
{"Driver":"local","Links":"N/A","Name":"cache","Size":"47.2MB"}],
"BuildCache":[{"ID":"q1","Size":"1.1GB","Shared":false}]}
)~";

struct Home {
    TempTree tree;
    fs::path home() const { return tree / "home"; }
    fs::path log() const { return tree / "docker.log"; }
    std::map<std::string, std::string> env() const {
        return {{"HOME", home().string()}, {"TMPDIR", (tree / "tmp").string() + "/"}, {"PATH", "/usr/bin:/bin"}};
    }
    ProcessResult run(std::vector<std::string> args) const {
        args.insert(args.begin(), scannerBinary());
        return runProcess(args, env());
    }
    // OrbStack's docker, the first place the program looks, answering the two usage commands.
    void installDocker() {
        writeText(tree / "df.out", kDf);
        writeText(tree / "dfv.out", kDfVerbose);
        const fs::path docker = home() / ".orbstack/bin/docker";
        writeText(docker, "#!/bin/sh\n"
                          "printf '%s\\n' \"$*\" >> '" + log().string() + "'\n"
                          "case \"$*\" in\n"
                          "  'system df --format {{json .}}') cat '" + (tree / "df.out").string() + "' ;;\n"
                          "  'system df -v --format {{json .}}') cat '" + (tree / "dfv.out").string() + "' ;;\n"
                          "  *) exit 1 ;;\n"
                          "esac\n");
        fs::permissions(docker, fs::perms::owner_all);
    }
    void startDaemon() { writeText(home() / ".orbstack/run/docker.sock", ""); }
};

json item(const char* kind, const char* name, const char* detail, std::int64_t size, const char* ref) {
    return json{{"kind", kind}, {"name", name}, {"detail", detail}, {"size", size}, {"ref", ref}};
}

} // namespace

TEST(ToolsCli, DockerJsonGivesUsageInTheToolsOrderThenTheSortedInventory) {
    Home h;
    h.installDocker();
    h.startDaemon();
    auto r = h.run({"--docker", "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    auto lines = jsonLines(r.out);
    ASSERT_EQ(lines.size(), 2u) << r.out;

    const json usage = {{"usage",
                         {{{"kind", "images"}, {"size", 2700000000}, {"count", "5"}, {"reclaimable", "1.2GB"}},
                          {{"kind", "containers"}, {"size", 12300}, {"count", "3"}, {"reclaimable", nullptr}},
                          {{"kind", "volumes"}, {"size", 330000000}, {"count", "2"}, {"reclaimable", nullptr}},
                          {{"kind", "buildCache"}, {"size", 1100000000}, {"count", "40"}, {"reclaimable", "1.1GB"}}}}};
    EXPECT_EQ(lines[0], usage);
    EXPECT_EQ(r.out.rfind(R"~({"usage":[{"kind":"images","size":2700000000,"count":"5","reclaimable":"1.2GB"},)~", 0), 0u)
        << "keys in the documented order";

    const json inventory = {
        {"inventory",
         {{"images",
           {item("image", "悬空镜像 fedcba987654", "未被容器使用", 1200000000, "fedcba987654"),
            item("image", "node:20", "未被容器使用", 1100000000, "aaaabbbbcccc"),
            item("image", "postgres:16", "被 1 个容器使用", 438000000, "0123456789ab")}},
          {"containers",
           {item("container", "build", "node:20 · Exited (0) 2 days ago", 12000000, "99aa88bb77cc"),
            item("container", "db", "postgres:16 · Up 3 hours", 63, "3f2a1b4c5d6e")}},
          {"volumes",
           {item("volume", "3b9e0c7d1f", "未被容器挂载", 283000000, "3b9e0c7d1f"),
            item("volume", "pgdata", "被 1 个容器挂载", 47200000, "pgdata"),
            item("volume", "cache", "未被容器挂载", 47200000, "cache")}}}}};
    EXPECT_EQ(lines[1], inventory);
    EXPECT_EQ(readText(h.log()), "system df --format {{json .}}\nsystem df -v --format {{json .}}\n");
}

TEST(ToolsCli, DockerWithoutTheSocketStartsNothing) {
    if (fs::exists("/var/run/docker.sock")) GTEST_SKIP() << "this machine's own daemon socket counts as a daemon";
    Home h;
    h.installDocker();
    for (bool asJson : {true, false}) {
        SCOPED_TRACE(asJson ? "json" : "text");
        auto r = h.run(asJson ? std::vector<std::string>{"--docker", "--json"} : std::vector<std::string>{"--docker"});
        ASSERT_EQ(r.status, 0) << r.err;
        if (asJson) EXPECT_EQ(r.out, "{\"daemon\":false}\n");
        else EXPECT_EQ(r.out, "The Docker daemon is not running: no socket found. Nothing was asked.\n");
    }
    EXPECT_FALSE(fs::exists(h.log()));
}

TEST(ToolsCli, DockerReadableTables) {
    Home h;
    h.installDocker();
    h.startDaemon();
    auto r = h.run({"--docker"});
    ASSERT_EQ(r.status, 0) << r.err;
    for (const char* line : {"Docker usage\n", "Images (3)\n", "Containers (2)\n", "Volumes (3)\n",
                             "  悬空镜像 fedcba987654  ·  未被容器使用  [fedcba987654]\n",
                             "  db  ·  postgres:16 · Up 3 hours  [3f2a1b4c5d6e]\nVolumes"}) {
        SCOPED_TRACE(line);
        EXPECT_NE(r.out.find(line), std::string::npos) << r.out;
    }
}

TEST(ToolsCli, ModelsListsOneRowPerManifest) {
    Home h;
    const fs::path manifests = h.home() / ".ollama/models/manifests/registry.ollama.ai/library";
    writeText(manifests / "llama3/8b", R"~({"config":{"size":485},"layers":[{"size":4661211808},{"size":96}]})~");
    writeText(manifests / "phi3/mini", R"~({"layers":[{"size":2176178913}]})~");
    writeText(manifests / "bad/1b", "{");
    auto r = h.run({"--models", "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(jsonLines(r.out),
              (std::vector<json>{{{"models",
                                   {{{"name", "llama3:8b"}, {"path", (manifests / "llama3/8b").string()}, {"size", 4661212389}},
                                    {{"name", "phi3:mini"}, {"path", (manifests / "phi3/mini").string()}, {"size", 2176178913}}}}}}));

    fs::remove_all(h.home() / ".ollama");
    r = h.run({"--models", "--json"});
    EXPECT_EQ(r.out, "{\"models\":[]}\n");
}

TEST(ToolsCli, SimulatorsCarryTheirNames) {
    Home h;
    const fs::path devices = h.home() / "Library/Developer/CoreSimulator/Devices";
    const std::string named = "0A1B2C3D-1111-2222-3333-444455556666";
    const std::string nameless = "ffffffff-1111-2222-3333-444455556666";
    writeText(devices / named / "device.plist",
              R"~(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>name</key><string>iPhone 15</string>)~"
              R"~(<key>runtime</key><string>com.apple.CoreSimulator.SimRuntime.iOS-17-2</string></dict></plist>)~");
    writeText(devices / nameless / "data/blob", std::string(20000, 'x'));
    writeText(devices / "device_set.plist", "");
    auto r = h.run({"--simulators", "--json", "--catalogue", "macos"});
    ASSERT_EQ(r.status, 0) << r.err;
    auto lines = jsonLines(r.out);
    ASSERT_EQ(lines.size(), 1u);
    const json& list = lines[0]["simulators"];
    ASSERT_EQ(list.size(), 2u) << r.out;
    EXPECT_EQ(list[0]["udid"], nameless);
    EXPECT_EQ(list[0]["name"], nullptr);
    EXPECT_EQ(list[1]["udid"], named);
    EXPECT_EQ(list[1]["name"], "iPhone 15 · iOS 17.2");
    EXPECT_EQ(list[1]["path"], (devices / named).string());
}

TEST(ToolsCli, ModesAreExclusive) {
    Home h;
    EXPECT_EQ(h.run({"--docker", "--models"}).status, 2);
    EXPECT_EQ(h.run({"--models", "--rule", "tool.ollama"}).status, 2);
}
