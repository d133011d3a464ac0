#include "RuleCheckbox.h"

namespace lumabroom {

RuleCheckbox RuleCheckbox::of(SafetyLevel safety, std::int64_t totalSize, RuleSelection selection) {
    if (safety == SafetyLevel::reportOnly) return {"info.circle", false, 0.7, false};
    if (totalSize <= 0) return {"circle.dashed", false, 0.5, false};
    switch (selection) {
    case RuleSelection::none: return {"circle", false, 0.55, true};
    case RuleSelection::partial: return {"minus.circle.fill", true, 1, true};
    case RuleSelection::all: return {"checkmark.circle.fill", true, 1, true};
    }
    return {"circle", false, 0.55, true};
}

} // namespace lumabroom
