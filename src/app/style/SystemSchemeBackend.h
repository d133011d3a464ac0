#pragma once

#include "Appearance.h"

#include <memory>
#include <optional>

namespace lumabroom {

// The platform's part of SystemScheme, in Appearance_<platform>.cpp.
struct SystemSchemeBackend {
    // Whatever keeps listening to the system for `scheme`; nothing where the palette says it all.
    static std::unique_ptr<QObject> create(SystemScheme& scheme);
    static void report(SystemScheme& scheme, std::optional<bool> prefersDark) { scheme.set(prefersDark); }
};

} // namespace lumabroom
