#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom {

// The language the user chose for this application alone.
enum class AppLanguage { system, chinese, english };

inline constexpr std::array allAppLanguages{AppLanguage::system, AppLanguage::chinese, AppLanguage::english};

std::string_view rawValue(AppLanguage); // "system", "zh-Hans", "en"
std::optional<AppLanguage> appLanguageFromRaw(std::string_view raw);

// The first of English or Chinese in a list of locale names ("de-DE", "en-US", …), most wanted
// first; Chinese when the list names neither.
AppLanguage resolvedFromSystem(std::span<const std::string> preferences);
// The same over the user's preferred interface languages of the platform.
AppLanguage resolvedFromSystem();

// The display name, looked up in the current language at each call. "简体中文" and "English" are
// the same in every language.
std::string displayName(AppLanguage);

namespace Localization {

// The user's choice, kept under "LumabroomLanguage" in the settings. It is read once, at first
// use; every read and write of it takes one lock.
AppLanguage language();
// Stores the choice (the raw value; `system` removes the key). It shows at the next lookup.
void setLanguage(AppLanguage);
// The choice for the rest of this process, without storing it.
void setLanguageForThisRun(AppLanguage);
// The choice, with `system` resolved; never `system`.
AppLanguage effectiveLanguage();

// What a stored setting means: "zh-Hans" and "en" are their languages, anything else, or nothing,
// is `system`.
AppLanguage languageFromStored(const std::optional<std::string>& stored);

// The display text of a key, a simplified-Chinese source text, in the effective language; a key
// that no table has is its own text, and in Chinese every key is. A text built at run time around
// a number or a name ("3 天前", "可回收 1.2GB") that has no translation of its own falls back to its
// formatted form ("%n 天前", "可回收 %1") with the values put back in.
std::string text(std::string_view key);

// The display text of a formatted key with its values: "%1" to "%9" take `values` in order.
std::string formatted(std::string_view key, const std::vector<std::string>& values);
// The same with a count for "%n", which also picks the plural form ("%n 天前": "1 day ago",
// "2 days ago").
std::string counted(std::string_view key, std::int64_t count, const std::vector<std::string>& values = {});

// Makes the table context of another module (such as the application's) searched after the core's
// by every lookup. Safe from any thread; registering a context twice changes nothing.
void addTableContext(std::string_view context);

// The formatted forms that plain keys fall back to, most specific first.
std::span<const std::string_view> formattedForms();

// The text that the table of `language` holds for `key`, if it holds one; Chinese has no table,
// as its texts are the keys.
std::optional<std::string> tableText(AppLanguage language, std::string_view key,
                                     std::optional<std::int64_t> count = std::nullopt);

} // namespace Localization

} // namespace lumabroom
