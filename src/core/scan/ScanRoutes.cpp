#include "scan/ScanRoutes.h"

namespace lumabroom::ScanRoutes {

const RouteTable& builtin() {
    static const RouteTable table{};
    return table;
}

} // namespace lumabroom::ScanRoutes
