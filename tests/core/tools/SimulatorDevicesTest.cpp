#include "FakeTool.h"

#include "host/ToolPaths.h"
#include "tools/SimulatorDevices.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

std::string xml(const std::string& entries) {
    return R"~(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
)~" + entries + R"~(</dict>
</plist>
)~";
}

std::string pair(const std::string& key, const std::string& value) {
    return "\t<key>" + key + "</key>\n\t<string>" + value + "</string>\n";
}

// A binary property list as another implementation writes it: {"name": "我的 Vision" (stored as
// UTF-16), "runtime": "com.apple.CoreSimulator.SimRuntime.xrOS-1-0-1", "state": 1}.
const char kBinary[] =
    "\x62\x70\x6c\x69\x73\x74\x30\x30\xd3\x01\x02\x03\x04\x05\x06\x54\x6e\x61\x6d\x65\x57\x72\x75\x6e\x74\x69\x6d"
    "\x65\x55\x73\x74\x61\x74\x65\x69\x62\x11\x76\x84\x00\x20\x00\x56\x00\x69\x00\x73\x00\x69\x00\x6f\x00\x6e\x5f"
    "\x10\x2d\x63\x6f\x6d\x2e\x61\x70\x70\x6c\x65\x2e\x43\x6f\x72\x65\x53\x69\x6d\x75\x6c\x61\x74\x6f\x72\x2e\x53"
    "\x69\x6d\x52\x75\x6e\x74\x69\x6d\x65\x2e\x78\x72\x4f\x53\x2d\x31\x2d\x30\x2d\x31\x10\x01\x08\x0f\x14\x1c\x22"
    "\x35\x65\x00\x00\x00\x00\x00\x00\x01\x01\x00\x00\x00\x00\x00\x00\x00\x07\x00\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\x67";

} // namespace

TEST(SimulatorDevices, UdidIsAValidUuidFolderNameUnchanged) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"/d/Devices/0A1B2C3D-1111-2222-3333-444455556666", "0A1B2C3D-1111-2222-3333-444455556666"},
        {"/d/Devices/0a1b2c3d-aaaa-bbbb-cccc-ddddeeeeffff", "0a1b2c3d-aaaa-bbbb-cccc-ddddeeeeffff"},
        {"/d/Devices/0A1B2C3D-1111-2222-3333-444455556666/", "0A1B2C3D-1111-2222-3333-444455556666"},
        {"/d/Devices/0A1B2C3D-1111-2222-3333-44445555666G", std::nullopt},
        {"/d/Devices/0A1B2C3D11112222333344445555666677", std::nullopt},
        {"/d/Devices/0A1B2C3D-1111-2222-3333-4444555566667", std::nullopt},
        {"/d/Devices/{0A1B2C3D-1111-2222-3333-444455556666}", std::nullopt},
        {"/d/Devices/device_set.plist", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [path, udid] : cases) {
        SCOPED_TRACE(path);
        EXPECT_EQ(SimulatorDevices::udid(path), udid);
    }
}

TEST(SimulatorDevices, NameFromThePropertyList) {
    struct Case {
        const char* name;
        std::string data;
        std::optional<std::string> expected;
    };
    const std::vector<Case> cases{
        {"name and runtime",
         xml(pair("UDID", "0A1B2C3D-1111-2222-3333-444455556666") + pair("name", "iPhone 15")
             + pair("runtime", "com.apple.CoreSimulator.SimRuntime.iOS-17-2") + "\t<key>state</key>\n\t<integer>3</integer>\n"),
         "iPhone 15 · iOS 17.2"},
        {"binary, UTF-16 name, three numbers", std::string(kBinary, sizeof kBinary - 1), "我的 Vision · xrOS 1.0.1"},
        {"no runtime", xml(pair("name", "Phone")), "Phone"},
        {"runtime not text", xml(pair("name", "Phone") + "\t<key>runtime</key>\n\t<integer>17</integer>\n"), "Phone"},
        {"last piece without hyphen", xml(pair("name", "Phone") + pair("runtime", "com.apple.iOS17")), "Phone"},
        {"runtime without dots", xml(pair("name", "Phone") + pair("runtime", "watchOS-10-4")), "Phone · watchOS 10.4"},
        {"empty pieces dropped", xml(pair("name", "Phone") + pair("runtime", "a.b.-tvOS--18-")), "Phone · tvOS 18"},
        {"name not text", xml("\t<key>name</key>\n\t<integer>5</integer>\n" + pair("runtime", "r.iOS-17-2")),
         std::nullopt},
        {"no name", xml(pair("runtime", "r.iOS-17-2")), std::nullopt},
        {"not a dictionary", R"~(<?xml version="1.0"?><plist version="1.0"><array><string>x</string></array></plist>)~",
         std::nullopt},
        {"not a property list", "name = Phone", std::nullopt},
        {"truncated binary", std::string(kBinary, 60), std::nullopt},
        {"empty", "", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(SimulatorDevices::deviceNameFromPropertyList(c.data), c.expected);
    }
}

TEST(SimulatorDevices, DeviceNameReadsTheFolderFile) {
    TempTree t;
    auto device = t.dir("Devices/0A1B2C3D-1111-2222-3333-444455556666");
    EXPECT_EQ(SimulatorDevices::deviceName(device), std::nullopt);
    std::ofstream(device / "device.plist", std::ios::binary) << std::string(kBinary, sizeof kBinary - 1);
    EXPECT_EQ(SimulatorDevices::deviceName(device), "我的 Vision · xrOS 1.0.1");
    auto folderInstead = t.dir("Devices/other/device.plist");
    EXPECT_EQ(SimulatorDevices::deviceName(folderInstead.parent_path()), std::nullopt);
}

TEST(SimulatorDevices, RemovesThroughSimctlDelete) {
    TempTree t;
    FakeTool xcrun(t, "xcrun");
    const std::string udid = "0a1b2c3d-aaaa-bbbb-cccc-ddddeeeeffff";
    xcrun.respond({"simctl", "delete", "0A1B2C3D-1111-2222-3333-444455556666"}, "", 148);
    ToolPaths::setOverride(Tool::xcrun, xcrun.binary().string());
    EXPECT_TRUE(SimulatorDevices::remove(udid));
    EXPECT_FALSE(SimulatorDevices::remove("0A1B2C3D-1111-2222-3333-444455556666"));
    ToolPaths::setOverride(Tool::xcrun, std::nullopt);
    EXPECT_EQ(xcrun.calls(), (std::vector<std::vector<std::string>>{
                                 {"simctl", "delete", udid}, {"simctl", "delete", "0A1B2C3D-1111-2222-3333-444455556666"}}));
}
