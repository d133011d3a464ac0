#pragma once

#include "support/Text.h"
#include "text/Localization.h"

namespace lumabroom::test {

// Sets the language for the life of the object, without storing it, and restores the one before.
struct LanguageScope {
    explicit LanguageScope(AppLanguage language) { Localization::setLanguageForThisRun(language); }
    ~LanguageScope() { Localization::setLanguageForThisRun(previous); }
    LanguageScope(const LanguageScope&) = delete;
    const AppLanguage previous = Localization::language();
};

} // namespace lumabroom::test
