#include "DetailText.h"

#include "text/Localization.h"

namespace lumabroom::DetailText {

namespace {
// The context is searched once it is named, before the first lookup.
void registerTable() {
    static const bool registered = [] {
        Localization::addTableContext("Detail");
        return true;
    }();
    (void)registered;
}
QString q(const std::string& s) { return QString::fromStdString(s); }
} // namespace

QString text(std::string_view key) {
    registerTable();
    return q(Localization::text(key));
}

QString formatted(std::string_view key, const std::vector<std::string>& values) {
    registerTable();
    return q(Localization::formatted(key, values));
}

QString counted(std::string_view key, std::int64_t count, const std::vector<std::string>& values) {
    registerTable();
    return q(Localization::counted(key, count, values));
}

} // namespace lumabroom::DetailText
