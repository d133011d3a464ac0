#include "SimulatorsMode.h"

#include "Output.h"
#include "Texts.h"

#include "catalogue/BuiltinScan.h"
#include "text/Formatting.h"
#include "text/Localization.h"
#include "text/Strings.h"
#include "tools/SimulatorDevices.h"

#include <ostream>

namespace lumabroom::SimulatorsMode {

int run(bool json, PathTable table, std::ostream& out) {
    std::vector<ScanEntry> devices;
    if (const CleanRule* rule = BuiltinRules::find("xcode.simulator-devices", table))
        devices = CacheScanner::scanRule(*rule).entries;
    if (json) {
        auto list = Output::Json::array();
        for (const auto& device : devices)
            list.push_back(Output::Json{{"udid", Output::orNull(SimulatorDevices::udid(device.url))},
                                        {"name", Output::orNull(SimulatorDevices::deviceName(device.url))},
                                        {"path", device.url.string()},
                                        {"size", device.size}});
        Output::writeJsonLine(out, Output::Json{{"simulators", std::move(list)}});
        return 0;
    }
    if (devices.empty()) {
        out << Localization::text(Texts::simulatorsNone) << "\n";
        return 0;
    }
    std::vector<Output::Row> rows;
    for (const auto& device : devices) {
        const auto name = SimulatorDevices::deviceName(device.url);
        rows.push_back({{Formatting::bytes(device.size),
                         name ? Strings::quotedForTerminal(*name) : Localization::text(Texts::simulatorNoName),
                         Strings::quotedForTerminal(
                             SimulatorDevices::udid(device.url).value_or(device.url.filename().string()))}});
    }
    out << Output::table({Output::sizeColumn(), {}, {}}, rows);
    return 0;
}

} // namespace lumabroom::SimulatorsMode
