#include "scan/Category.h"

#include "scan/RawValue.h"
#include "text/Localization.h"

namespace lumabroom {

std::string_view rawValue(Category c) {
    switch (c) {
    case Category::xcode: return "xcode";
    case Category::packageManager: return "pm";
    case Category::tool: return "tool";
    case Category::runtimeDownloads: return "rt";
    case Category::code: return "wt";
    case Category::system: return "sys";
    }
    return "";
}

std::optional<Category> categoryFromRaw(std::string_view raw) { return fromRaw(allCategories, raw); }

std::string_view displayKey(Category c) {
    switch (c) {
    case Category::xcode: return "Xcode 与模拟器";
    case Category::packageManager: return "包管理器缓存";
    case Category::tool: return "容器与虚拟机";
    case Category::runtimeDownloads: return "浏览器与运行时下载";
    case Category::code: return "Code & Worktrees";
    case Category::system: return "系统与下载";
    }
    return "";
}

std::string displayName(Category category) {
    if (displayKeyIsLiteral(category)) return std::string(displayKey(category));
    return Localization::text(displayKey(category));
}

} // namespace lumabroom
