#include "UpdateTexts.h"

#include "text/Localization.h"

namespace lumabroom::UpdateTexts {

std::string text(std::string_view key, const std::vector<std::string>& values) {
    // The table's context is searched once it is named, before the first lookup.
    static const bool registered = [] {
        Localization::addTableContext("Updater");
        return true;
    }();
    (void)registered;
    return values.empty() ? Localization::text(key) : Localization::formatted(key, values);
}

} // namespace lumabroom::UpdateTexts
