#include "scan/SafetyLevel.h"

#include "scan/RawValue.h"
#include "text/Localization.h"

namespace lumabroom {

std::string_view rawValue(SafetyLevel s) {
    switch (s) {
    case SafetyLevel::safe: return "safe";
    case SafetyLevel::caution: return "caution";
    case SafetyLevel::reportOnly: return "report-only";
    }
    return "";
}

std::optional<SafetyLevel> safetyFromRaw(std::string_view raw) { return fromRaw(allSafetyLevels, raw); }

std::string_view displayKey(SafetyLevel s) {
    switch (s) {
    case SafetyLevel::safe: return "安全";
    case SafetyLevel::caution: return "谨慎";
    case SafetyLevel::reportOnly: return "仅报告";
    }
    return "";
}

std::string displayName(SafetyLevel level) { return Localization::text(displayKey(level)); }

} // namespace lumabroom
