#include "ModelsMode.h"

#include "Columns.h"

#include "host/Paths.h"
#include "text/Formatting.h"
#include "text/Strings.h"
#include "tools/OllamaModelLister.h"

#include <nlohmann/json.hpp>

#include <limits>
#include <ostream>

namespace lumabroom::ModelsMode {

int run(bool json, std::ostream& out) {
    const std::string modelsDir = Paths::expandingTilde("~/.ollama/models");
    const auto models = OllamaModelLister::entries(modelsDir).value_or(std::vector<ScanEntry>{});
    if (json) {
        auto list = nlohmann::ordered_json::array();
        for (const auto& model : models) {
            auto name = OllamaModelRemover::modelName(model.url);
            list.push_back(nlohmann::ordered_json{{"name", name ? nlohmann::ordered_json(*name) : nullptr},
                                                  {"path", model.url.string()},
                                                  {"size", model.size}});
        }
        out << nlohmann::ordered_json{{"models", std::move(list)}}.dump(-1, ' ', false,
                                                                         nlohmann::json::error_handler_t::replace)
            << "\n";
        return 0;
    }
    if (models.empty()) {
        out << "No Ollama models in " << modelsDir << ".\n";
        return 0;
    }
    std::int64_t total = 0;
    for (const auto& model : models) {
        out << "  " << Columns::rightAligned(Formatting::bytes(model.size), 10) << "  "
            << Strings::quotedForTerminal(OllamaModelRemover::modelName(model.url).value_or(model.url.string())) << "\n";
        if (__builtin_add_overflow(total, model.size, &total)) total = std::numeric_limits<std::int64_t>::max();
    }
    out << "Total " << Formatting::bytes(total) << " in " << models.size() << " models (shared blobs count in each)\n";
    return 0;
}

} // namespace lumabroom::ModelsMode
