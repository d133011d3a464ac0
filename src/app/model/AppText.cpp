#include "AppText.h"

#include "text/Localization.h"

namespace lumabroom::AppText {

namespace {
void registerTable() {
    static const bool once = [] {
        for (std::string_view context : kTableContexts) Localization::addTableContext(context);
        return true;
    }();
    (void)once;
}
} // namespace

std::string text(std::string_view key) {
    registerTable();
    return Localization::text(key);
}

std::string formatted(std::string_view key, const std::vector<std::string>& values) {
    registerTable();
    return Localization::formatted(key, values);
}

std::string counted(std::string_view key, std::int64_t count, const std::vector<std::string>& values) {
    registerTable();
    return Localization::counted(key, count, values);
}

} // namespace lumabroom::AppText
