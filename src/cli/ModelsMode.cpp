#include "ModelsMode.h"

#include "Output.h"
#include "Texts.h"

#include "host/Paths.h"
#include "text/Formatting.h"
#include "text/Localization.h"
#include "text/Strings.h"
#include "tools/OllamaModelLister.h"

#include <limits>
#include <ostream>

namespace lumabroom::ModelsMode {

int run(bool json, std::ostream& out) {
    const std::string modelsDir = Paths::expandingTilde("~/.ollama/models");
    const auto models = OllamaModelLister::entries(modelsDir).value_or(std::vector<ScanEntry>{});
    if (json) {
        auto list = Output::Json::array();
        for (const auto& model : models)
            list.push_back(Output::Json{{"name", Output::orNull(OllamaModelRemover::modelName(model.url))},
                                        {"path", model.url.string()},
                                        {"size", model.size}});
        Output::writeJsonLine(out, Output::Json{{"models", std::move(list)}});
        return 0;
    }
    if (models.empty()) {
        out << Localization::formatted(Texts::modelsNone, {Output::displayPath(modelsDir, Paths::homeDirectory())})
            << "\n";
        return 0;
    }
    std::vector<Output::Row> rows;
    std::int64_t total = 0;
    for (const auto& model : models) {
        rows.push_back(
            {{Formatting::bytes(model.size),
              Strings::quotedForTerminal(OllamaModelRemover::modelName(model.url).value_or(model.url.string()))}});
        if (__builtin_add_overflow(total, model.size, &total)) total = std::numeric_limits<std::int64_t>::max();
    }
    out << Output::table({Output::sizeColumn(), {}}, rows)
        << Localization::counted(Texts::modelsTotal, static_cast<std::int64_t>(models.size()),
                                 {Formatting::bytes(total)})
        << "\n";
    return 0;
}

} // namespace lumabroom::ModelsMode
