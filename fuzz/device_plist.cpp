#include "FuzzCheck.h"

#include "tools/SimulatorDevices.h"

using namespace lumabroom;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Binary and XML property lists alike; whatever it is, a name or nothing comes back.
    (void)SimulatorDevices::deviceNameFromPropertyList(fuzz::text(data, size));
    return 0;
}
