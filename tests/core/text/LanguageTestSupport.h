#pragma once

#include "support/Text.h"
#include "text/Localization.h"

#include <filesystem>
#include <string_view>

namespace lumabroom::test {

// The temporary folder that holds this test program's settings; the store is pointed at it before
// the first test, so no test reads the user's own settings.
const std::filesystem::path& settingsFolder();

// Sets the language for the life of the object, without storing it, and restores the one before.
class LanguageScope {
public:
    explicit LanguageScope(AppLanguage language) : previous_(Localization::language()) {
        Localization::setLanguageForThisRun(language);
    }
    ~LanguageScope() { Localization::setLanguageForThisRun(previous_); }
    LanguageScope(const LanguageScope&) = delete;
    LanguageScope& operator=(const LanguageScope&) = delete;

private:
    AppLanguage previous_;
};

} // namespace lumabroom::test
