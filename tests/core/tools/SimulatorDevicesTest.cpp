#include "FakeTool.h"

#include "host/ToolPaths.h"
#include "tools/SimulatorDevices.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using namespace lumabroom::test;
using namespace std::string_literals;

namespace {

std::string xml(const std::string& entries) {
    return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)" + entries + "</dict></plist>";
}

std::string pair(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key><string>" + value + "</string>";
}

// A binary property list as another implementation writes it: {"name": "我的 Vision" (stored as
// UTF-16), "runtime": "com.apple.CoreSimulator.SimRuntime.xrOS-1-0-1", "state": 1}.
const std::string kBinary =
    "\x62\x70\x6c\x69\x73\x74\x30\x30\xd3\x01\x02\x03\x04\x05\x06\x54\x6e\x61\x6d\x65\x57\x72\x75\x6e\x74\x69\x6d"
    "\x65\x55\x73\x74\x61\x74\x65\x69\x62\x11\x76\x84\x00\x20\x00\x56\x00\x69\x00\x73\x00\x69\x00\x6f\x00\x6e\x5f"
    "\x10\x2d\x63\x6f\x6d\x2e\x61\x70\x70\x6c\x65\x2e\x43\x6f\x72\x65\x53\x69\x6d\x75\x6c\x61\x74\x6f\x72\x2e\x53"
    "\x69\x6d\x52\x75\x6e\x74\x69\x6d\x65\x2e\x78\x72\x4f\x53\x2d\x31\x2d\x30\x2d\x31\x10\x01\x08\x0f\x14\x1c\x22"
    "\x35\x65\x00\x00\x00\x00\x00\x00\x01\x01\x00\x00\x00\x00\x00\x00\x00\x07\x00\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\x67"s;

} // namespace

TEST(SimulatorDevices, UdidIsAValidUuidFolderNameUnchanged) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"/d/0A1B2C3D-1111-2222-3333-444455556666", "0A1B2C3D-1111-2222-3333-444455556666"},
        {"/d/0a1b2c3d-aaaa-bbbb-cccc-ddddeeeeffff/", "0a1b2c3d-aaaa-bbbb-cccc-ddddeeeeffff"},
        {"/d/0A1B2C3D-1111-2222-3333-44445555666G", std::nullopt},
        {"/d/0A1B2C3D-1111-2222-3333-4444555566667", std::nullopt},
    };
    for (const auto& [path, udid] : cases) {
        SCOPED_TRACE(path);
        EXPECT_EQ(SimulatorDevices::udid(path), udid);
    }
}

TEST(SimulatorDevices, NameFromThePropertyList) {
    const std::pair<std::string, std::optional<std::string>> cases[] = {
        {xml(pair("name", "iPhone 15") + pair("runtime", "com.apple.CoreSimulator.SimRuntime.iOS-17-2")),
         "iPhone 15 · iOS 17.2"},
        {kBinary, "我的 Vision · xrOS 1.0.1"},
        {xml(pair("name", "Phone")), "Phone"},
        {xml(pair("name", "Phone") + pair("runtime", "com.apple.iOS17")), "Phone"},
        {xml(pair("name", "Phone") + pair("runtime", "a.b.-tvOS--18-")), "Phone · tvOS 18"},
        {xml("<key>name</key><integer>5</integer>" + pair("runtime", "r.iOS-17-2")), std::nullopt},
        {kBinary.substr(0, 60), std::nullopt},
    };
    for (const auto& [data, name] : cases) {
        SCOPED_TRACE(data);
        EXPECT_EQ(SimulatorDevices::deviceNameFromPropertyList(data), name);
    }
}

TEST(SimulatorDevices, RemovesThroughSimctlDelete) {
    TempTree t;
    FakeTool xcrun(t / "xcrun");
    const std::string failing = "0A1B2C3D-1111-2222-3333-444455556666";
    xcrun.respond("simctl delete " + failing, "", 148);
    ToolPaths::setOverride(Tool::xcrun, xcrun.binary.string());
    EXPECT_TRUE(SimulatorDevices::remove("0a1b2c3d-aaaa-bbbb-cccc-ddddeeeeffff"));
    EXPECT_FALSE(SimulatorDevices::remove(failing));
    ToolPaths::setOverride(Tool::xcrun, std::nullopt);
    EXPECT_EQ(xcrun.calls(),
              (Calls{{"simctl", "delete", "0a1b2c3d-aaaa-bbbb-cccc-ddddeeeeffff"}, {"simctl", "delete", failing}}));
}
