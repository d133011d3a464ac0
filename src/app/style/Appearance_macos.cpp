#include "SystemSchemeBackend.h"

namespace lumabroom {

// The platform palette follows the system's appearance here, and the controller watches it.
std::unique_ptr<QObject> SystemSchemeBackend::create(SystemScheme&) { return nullptr; }

} // namespace lumabroom
