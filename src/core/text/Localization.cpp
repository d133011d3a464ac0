#include "text/Localization.h"

namespace lumabroom::Localization {

std::string text(std::string_view key) { return std::string(key); }

} // namespace lumabroom::Localization
