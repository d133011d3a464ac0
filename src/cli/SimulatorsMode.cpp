#include "SimulatorsMode.h"

#include "Columns.h"

#include "catalogue/BuiltinScan.h"
#include "text/Formatting.h"
#include "tools/SimulatorDevices.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace lumabroom::SimulatorsMode {

namespace {
nlohmann::ordered_json orNull(const std::optional<std::string>& text) {
    return text ? nlohmann::ordered_json(*text) : nlohmann::ordered_json(nullptr);
}
} // namespace

int run(bool json, PathTable table, std::ostream& out) {
    std::vector<ScanEntry> devices;
    if (const CleanRule* rule = BuiltinRules::find("xcode.simulator-devices", table))
        devices = CacheScanner::scanRule(*rule).entries;
    if (json) {
        auto list = nlohmann::ordered_json::array();
        for (const auto& device : devices)
            list.push_back(nlohmann::ordered_json{{"udid", orNull(SimulatorDevices::udid(device.url))},
                                                  {"name", orNull(SimulatorDevices::deviceName(device.url))},
                                                  {"path", device.url.string()},
                                                  {"size", device.size}});
        out << nlohmann::ordered_json{{"simulators", std::move(list)}}.dump(-1, ' ', false,
                                                                             nlohmann::json::error_handler_t::replace)
            << "\n";
        return 0;
    }
    if (devices.empty()) {
        out << "No simulator devices found.\n";
        return 0;
    }
    for (const auto& device : devices) {
        out << "  " << Columns::rightAligned(Formatting::bytes(device.size), 10) << "  "
            << SimulatorDevices::deviceName(device.url).value_or("(no name)") << "  "
            << SimulatorDevices::udid(device.url).value_or(device.url.filename().string()) << "\n";
    }
    return 0;
}

} // namespace lumabroom::SimulatorsMode
