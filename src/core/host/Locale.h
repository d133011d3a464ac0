#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom::Locale {

// The user's preferred languages for the interface, most wanted first, as locale names such as
// "de-DE" (on Linux from LANGUAGE, LC_ALL, LC_MESSAGES and LANG; "C" when none is set).
std::vector<std::string> preferredLanguages();

// The ISO 639 code of a locale name's language: "zh-Hant-TW" → "zh", "en_GB" → "en"; "C" for a
// name that no locale has.
std::string languageCode(std::string_view localeName);

// A byte count in decimal units (1 kB = 1000 bytes) with `decimals` digits after the point, the
// unit chosen by size, in the words and digits of the locale ("en", "zh-Hans").
std::string dataSize(std::int64_t bytes, int decimals, std::string_view localeName);

// The text of `key` in the embedded language tables of `language` ("en"), within `context` (one
// per module, such as "CleanerCore"); nothing if no table has it. A `count` picks the plural form
// of a key that holds "%n"; the "%n" is left in the text.
std::optional<std::string> translation(std::string_view language, std::string_view context, std::string_view key,
                                       std::optional<std::int64_t> count = std::nullopt);

} // namespace lumabroom::Locale
