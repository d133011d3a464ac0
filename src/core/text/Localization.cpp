#include "text/Localization.h"

#include "host/Locale.h"
#include "host/Settings.h"

#include <algorithm>
#include <charconv>
#include <mutex>

namespace lumabroom {

namespace {

constexpr std::string_view settingKey = "LumabroomLanguage";
// The context of the core's messages in its Linguist files.
constexpr std::string_view tableContext = "CleanerCore";

// Most specific first: the docker count form would take almost any text with a blank before "个".
constexpr std::array<std::string_view, 8> forms{
    "%n 天前", "%n 个月前", "%n 年前", "被 %n 个容器使用", "被 %n 个容器挂载", "悬空镜像 %1", "可回收 %1", "%1 %2 个",
};

struct Setting {
    std::mutex lock;
    std::optional<AppLanguage> language; // empty until the first read
};

Setting& setting() {
    static Setting shared;
    return shared;
}

struct Values {
    std::optional<std::int64_t> count;
    std::vector<std::string> texts;
};

bool isPlaceholder(std::string_view form) {
    return form.size() >= 2 && form[0] == '%' && (form[1] == 'n' || (form[1] >= '1' && form[1] <= '9'));
}

// Whether `text` is `form` with a value in place of each placeholder: "%n" a run of digits, "%1"
// to "%9" any text that is not empty. A placeholder takes the longest run that lets the rest
// match, so "%1 %2 个" reads "Build Cache 3 个" as "Build Cache" and "3".
bool match(std::string_view form, std::string_view text, Values& values) {
    if (form.empty()) return text.empty();
    if (!isPlaceholder(form))
        return !text.empty() && text[0] == form[0] && match(form.substr(1), text.substr(1), values);

    const bool isCount = form[1] == 'n';
    std::size_t longest = text.size();
    if (isCount) {
        longest = 0;
        while (longest < text.size() && text[longest] >= '0' && text[longest] <= '9') ++longest;
    }
    for (std::size_t length = longest; length >= 1; --length) {
        if (!match(form.substr(2), text.substr(length), values)) continue;
        const std::string_view value = text.substr(0, length);
        if (isCount) {
            std::int64_t count = 0;
            if (std::from_chars(value.data(), value.data() + value.size(), count).ec != std::errc()) return false;
            values.count = count;
        } else {
            const auto index = static_cast<std::size_t>(form[1] - '1');
            if (values.texts.size() <= index) values.texts.resize(index + 1);
            values.texts[index] = std::string(value);
        }
        return true;
    }
    return false;
}

// One pass, so a value that itself holds "%1" is left as it is.
std::string substitute(std::string_view format, const Values& values) {
    std::string out;
    out.reserve(format.size());
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (isPlaceholder(format.substr(i))) {
            const char which = format[i + 1];
            if (which == 'n' && values.count) {
                out += std::to_string(*values.count);
                ++i;
                continue;
            }
            if (which != 'n' && static_cast<std::size_t>(which - '1') < values.texts.size()) {
                out += values.texts[static_cast<std::size_t>(which - '1')];
                ++i;
                continue;
            }
        }
        out += format[i];
    }
    return out;
}

// Contexts of other modules' tables, searched after the core's in the order they were added.
struct Contexts {
    std::mutex lock;
    std::vector<std::string> names;
};

Contexts& extraContexts() {
    static Contexts shared;
    return shared;
}

std::optional<std::string> englishText(std::string_view key, std::optional<std::int64_t> count = std::nullopt) {
    // A count picks among plural forms, which only a key with "%n" has; the tables find no other key with one.
    const bool plural = key.find("%n") != std::string_view::npos;
    const auto n = plural ? count : std::nullopt;
    const std::string_view language = rawValue(AppLanguage::english);
    if (auto text = Locale::translation(language, tableContext, key, n)) return text;
    std::vector<std::string> others;
    {
        Contexts& contexts = extraContexts();
        std::lock_guard guard(contexts.lock);
        others = contexts.names;
    }
    for (const std::string& context : others)
        if (auto text = Locale::translation(language, context, key, n)) return text;
    return std::nullopt;
}

std::string english(std::string_view key) {
    if (auto text = englishText(key)) return *text;
    for (std::string_view form : forms) {
        Values values;
        if (!match(form, key, values)) continue;
        if (auto text = englishText(form, values.count)) return substitute(*text, values);
    }
    return std::string(key);
}

std::string formattedText(std::string_view key, const Values& values) {
    if (Localization::effectiveLanguage() == AppLanguage::english) {
        if (auto text = englishText(key, values.count)) return substitute(*text, values);
    }
    return substitute(key, values);
}

} // namespace

std::string_view rawValue(AppLanguage language) {
    switch (language) {
    case AppLanguage::system: return "system";
    case AppLanguage::chinese: return "zh-Hans";
    case AppLanguage::english: return "en";
    }
    return "";
}

std::optional<AppLanguage> appLanguageFromRaw(std::string_view raw) {
    for (AppLanguage language : allAppLanguages)
        if (rawValue(language) == raw) return language;
    return std::nullopt;
}

AppLanguage resolvedFromSystem(std::span<const std::string> preferences) {
    for (const std::string& name : preferences) {
        const std::string code = Locale::languageCode(name);
        if (code == "en") return AppLanguage::english;
        if (code == "zh") return AppLanguage::chinese;
    }
    return AppLanguage::chinese;
}

AppLanguage resolvedFromSystem() {
    const std::vector<std::string> preferences = Locale::preferredLanguages();
    return resolvedFromSystem(preferences);
}

std::string displayName(AppLanguage language) {
    switch (language) {
    case AppLanguage::system: return Localization::text("跟随系统");
    case AppLanguage::chinese: return "简体中文";
    case AppLanguage::english: return "English";
    }
    return "";
}

namespace Localization {

AppLanguage languageFromStored(const std::optional<std::string>& stored) {
    if (!stored) return AppLanguage::system;
    return appLanguageFromRaw(*stored).value_or(AppLanguage::system);
}

AppLanguage language() {
    Setting& shared = setting();
    std::lock_guard guard(shared.lock);
    if (!shared.language) shared.language = languageFromStored(Settings::string(settingKey));
    return *shared.language;
}

void setLanguageForThisRun(AppLanguage language) {
    Setting& shared = setting();
    std::lock_guard guard(shared.lock);
    shared.language = language;
}

void setLanguage(AppLanguage language) {
    setLanguageForThisRun(language);
    // Outside the lock: readers need not wait for the disk.
    if (language == AppLanguage::system) Settings::remove(settingKey);
    else Settings::setString(settingKey, rawValue(language));
}

AppLanguage effectiveLanguage() {
    const AppLanguage chosen = language();
    return chosen == AppLanguage::system ? resolvedFromSystem() : chosen;
}

std::string text(std::string_view key) {
    if (effectiveLanguage() == AppLanguage::english) return english(key);
    return std::string(key);
}

std::string formatted(std::string_view key, const std::vector<std::string>& values) {
    return formattedText(key, Values{std::nullopt, values});
}

std::string counted(std::string_view key, std::int64_t count, const std::vector<std::string>& values) {
    return formattedText(key, Values{count, values});
}

void addTableContext(std::string_view context) {
    Contexts& contexts = extraContexts();
    std::lock_guard guard(contexts.lock);
    if (std::find(contexts.names.begin(), contexts.names.end(), context) == contexts.names.end())
        contexts.names.emplace_back(context);
}

std::span<const std::string_view> formattedForms() { return forms; }

std::optional<std::string> tableText(AppLanguage language, std::string_view key, std::optional<std::int64_t> count) {
    if (language != AppLanguage::english) return std::nullopt;
    return englishText(key, count);
}

} // namespace Localization

} // namespace lumabroom
