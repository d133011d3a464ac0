#include "catalogue/ScanRoutes.h"

#include "agents/ClaudeProjects.h"
#include "host/Paths.h"
#include "tools/OllamaModelLister.h"

namespace lumabroom::ScanRoutes {

const RouteTable& builtin() {
    static const RouteTable table{
        // One entry per project folder, named by its working folder; only session files count.
        {"code.claude-sessions",
         []() -> std::optional<std::vector<ScanEntry>> { return ClaudeProjects::sessionEntries(); }},
        // One entry per model from the manifests; without any, the folder is measured as a whole.
        {"tool.ollama", [] { return OllamaModelLister::entries(Paths::expandingTilde("~/.ollama/models")); }},
    };
    return table;
}

} // namespace lumabroom::ScanRoutes
