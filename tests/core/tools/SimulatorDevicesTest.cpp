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
    "bplist00\xd3\x01\x02\x03\x04\x05\x06TnameWruntimeUstateib\x11v\x84\x00 \x00V\x00i\x00s\x00i\x00o\x00n_\x10-"
    "com.apple.CoreSimulator.SimRuntime.xrOS-1-0-1\x10\x01\x08\x0f\x14\x1c\x22"
    "5e"s
    + std::string(6, '\0') + "\x01\x01" + std::string(7, '\0') + "\x07" + std::string(15, '\0') + "g";

} // namespace

// Valid names and the XML form are checked end to end by the scanner's tests.
TEST(SimulatorDevices, UdidIsAValidUuidFolderNameUnchanged) {
    const std::string udid = "0a1b2c3d-aaaa-bbbb-cccc-ddddeeeeffff";
    EXPECT_EQ(SimulatorDevices::udid("/d/" + udid + "/"), udid);
    for (const char* path : {"/d/0A1B2C3D-1111-2222-3333-44445555666G", "/d/0A1B2C3D-1111-2222-3333-4444555566667",
                             "/d/0A1B2C3D-1111-2222-33333444455556666"})
        EXPECT_EQ(SimulatorDevices::udid(path), std::nullopt) << path;
}

TEST(SimulatorDevices, NameFromThePropertyList) {
    const std::pair<std::string, std::optional<std::string>> cases[] = {
        {kBinary, "我的 Vision · xrOS 1.0.1"},
        {xml(pair("name", "Phone")), "Phone"},
        {xml(pair("name", "Phone") + pair("runtime", "com.apple.iOS17")), "Phone"},
        {xml(pair("name", "Phone") + pair("runtime", "a.b.-tvOS--18-")), "Phone · tvOS 18"},
        {xml("<key>name</key><integer>5</integer>" + pair("runtime", "r.iOS-17-2")), std::nullopt},
        {kBinary.substr(0, 60), std::nullopt},
    };
    for (const auto& [data, name] : cases) EXPECT_EQ(SimulatorDevices::deviceNameFromPropertyList(data), name) << data;
}

TEST(SimulatorDevices, RemovesThroughSimctlDelete) {
    TempTree t;
    FakeTool xcrun(t / "xcrun");
    const std::string good = "0a1b2c3d-aaaa-bbbb-cccc-ddddeeeeffff", failing = "0A1B2C3D-1111-2222-3333-444455556666";
    xcrun.respond("simctl delete " + failing, "", 148);
    ToolPaths::setOverride(Tool::xcrun, xcrun.binary.string());
    EXPECT_TRUE(SimulatorDevices::remove(good));
    EXPECT_FALSE(SimulatorDevices::remove(failing));
    ToolPaths::setOverride(Tool::xcrun, std::nullopt);
    EXPECT_EQ(xcrun.calls(), (Calls{{"simctl", "delete", good}, {"simctl", "delete", failing}}));
}
