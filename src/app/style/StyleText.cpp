#include "StyleText.h"

#include "text/Localization.h"

namespace lumabroom::StyleText {

namespace {
void registerTable() {
    static const bool once = [] {
        Localization::addTableContext(kTableContext);
        return true;
    }();
    (void)once;
}
} // namespace

QString text(std::string_view key) {
    registerTable();
    return QString::fromStdString(Localization::text(key));
}

QString formatted(std::string_view key, const std::vector<std::string>& values) {
    registerTable();
    return QString::fromStdString(Localization::formatted(key, values));
}

} // namespace lumabroom::StyleText
