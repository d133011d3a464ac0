// lumabroom-scan: the application's scan without its window, for scripts and benchmarks.

#include "DockerMode.h"
#include "ModelsMode.h"
#include "ScanReport.h"
#include "SessionsMode.h"
#include "SimulatorsMode.h"
#include "WorktreesMode.h"

#include "catalogue/BuiltinScan.h"
#include "host/Paths.h"
#include "scan/BuiltinRules.h"
#include "text/DiskSpace.h"
#include "text/Formatting.h"
#include "text/Localization.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <optional>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

using namespace lumabroom;

namespace {

constexpr const char* kUsage =
    "usage: lumabroom-scan [--json] [--catalogue macos|linux] [--language zh-Hans|en|system] [--rule ID]...\n"
    "       lumabroom-scan [--json] [--catalogue macos|linux] --docker | --models | --simulators\n"
    "       lumabroom-scan [--json] --worktrees | --sessions claude|codex [--limit N]\n";

constexpr const char* kHelp =
    "Scans what development tools leave in your home folder and prints the sizes.\n"
    "\n"
    "  --json                one JSON object per rule as it finishes, then a final {\"done\": true, ...}\n"
    "  --catalogue NAME      the path table to use: macos or linux (default: this system's)\n"
    "  --rule ID             scan only this rule; may be given more than once\n"
    "  --language NAME       zh-Hans, en or system: the language of this run, not stored (default: the setting)\n"
    "  --docker              Docker's usage and its images, containers and volumes (needs the daemon's socket)\n"
    "  --models              the Ollama models, one per manifest\n"
    "  --simulators          the simulator devices with their names\n"
    "  --worktrees           the git worktrees that coding agents left, with what removing each would lose;\n"
    "                        with --json one line per report (report k has k sizes), then {\"done\": true}\n"
    "  --sessions AGENT      the largest session files of claude or codex\n"
    "  --limit N             how many sessions to list (default 10)\n"
    "  --help                show this text\n"
    "\n"
    "Sizes are allocated bytes in decimal units. Nothing is written or removed.\n";

struct Options {
    bool json = false;
    PathTable table = runningPathTable();
    std::vector<std::string> ruleIds;
    std::optional<AppLanguage> language; // for this run only
    std::string toolMode; // "--docker", "--models", "--simulators", "--worktrees" or "--sessions"; empty for the scan
    SessionsMode::Agent sessionsOf = SessionsMode::Agent::claude;
    std::optional<std::size_t> limit;
};

int usageError(const std::string& message) {
    std::cerr << "lumabroom-scan: " << message << "\n" << kUsage;
    return 2;
}

// Rules of the scan: the catalogue without the worktree rule, whose entries come from git.
std::vector<CleanRule> selectedRules(const Options& options, std::string& unknown) {
    std::vector<CleanRule> rules;
    if (options.ruleIds.empty()) {
        for (const auto& rule : BuiltinRules::all(options.table))
            if (rule.id != "tool.codex-worktrees") rules.push_back(rule);
        return rules;
    }
    std::set<std::string> seen;
    for (const auto& id : options.ruleIds) {
        const CleanRule* rule = BuiltinRules::find(id, options.table);
        if (!rule) {
            unknown = id;
            return {};
        }
        if (seen.insert(id).second) rules.push_back(*rule);
    }
    return rules;
}

class ProgressLine {
public:
    ProgressLine(bool wanted, std::size_t total) : enabled_(wanted && ::isatty(STDERR_FILENO) == 1), total_(total) { draw(); }
    void advance(std::int64_t bytes) {
        ++done_;
        sum_ += bytes;
        draw();
    }
    void erase() const {
        if (enabled_) std::fputs("\r\033[K", stderr);
    }

private:
    void draw() const {
        if (!enabled_) return;
        std::fprintf(stderr, "\r\033[KScanning… %zu of %zu rules, %s", done_, total_, Formatting::bytes(sum_).c_str());
        std::fflush(stderr);
    }
    bool enabled_;
    std::size_t total_;
    std::size_t done_ = 0;
    std::int64_t sum_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        auto value = [&]() -> std::optional<std::string> {
            if (i + 1 >= argc) return std::nullopt;
            return std::string(argv[++i]);
        };
        if (arg == "--help" || arg == "-h") {
            std::cout << kUsage << "\n" << kHelp;
            return 0;
        } else if (arg == "--json") {
            options.json = true;
        } else if (arg == "--catalogue") {
            auto v = value();
            if (!v) return usageError("--catalogue needs a value");
            if (*v == "macos") options.table = PathTable::macOS;
            else if (*v == "linux") options.table = PathTable::linuxOS;
            else return usageError("unknown catalogue '" + *v + "'");
        } else if (arg == "--rule") {
            auto v = value();
            if (!v) return usageError("--rule needs a rule id");
            options.ruleIds.push_back(*v);
        } else if (arg == "--language") {
            auto v = value();
            auto language = v ? appLanguageFromRaw(*v) : std::nullopt;
            if (!language) return usageError("--language needs zh-Hans, en or system");
            options.language = *language;
        } else if (arg == "--sessions") {
            auto v = value();
            auto agent = v ? SessionsMode::agentFromName(*v) : std::nullopt;
            if (!agent) return usageError("--sessions needs claude or codex");
            if (!options.toolMode.empty() && options.toolMode != arg)
                return usageError(options.toolMode + " and " + arg + " can't be combined");
            options.toolMode = arg;
            options.sessionsOf = *agent;
        } else if (arg == "--limit") {
            auto v = value();
            if (!v || v->empty() || v->find_first_not_of("0123456789") != std::string::npos || v->size() > 9)
                return usageError("--limit needs a number");
            options.limit = std::stoul(*v);
        } else if (arg == "--docker" || arg == "--models" || arg == "--simulators" || arg == "--worktrees") {
            if (!options.toolMode.empty() && options.toolMode != arg)
                return usageError(options.toolMode + " and " + arg + " can't be combined");
            options.toolMode = arg;
        } else {
            return usageError("unknown option '" + arg + "'");
        }
    }

    if (options.language) Localization::setLanguageForThisRun(*options.language);
    if (options.limit && options.toolMode != "--sessions") return usageError("--limit goes with --sessions");
    if (!options.toolMode.empty()) {
        if (!options.ruleIds.empty()) return usageError(options.toolMode + " takes no --rule");
        if (options.toolMode == "--worktrees") return WorktreesMode::run(options.json, std::cout);
        if (options.toolMode == "--sessions")
            return SessionsMode::run(options.sessionsOf, options.limit.value_or(SessionsMode::kDefaultLimit),
                                     options.json, std::cout);
        if (options.toolMode == "--docker") return DockerMode::run(options.json, std::cout);
        if (options.toolMode == "--models") return ModelsMode::run(options.json, std::cout);
        return SimulatorsMode::run(options.json, options.table, std::cout);
    }

    std::string unknown;
    std::vector<CleanRule> rules = selectedRules(options, unknown);
    if (!unknown.empty()) return usageError("unknown rule '" + unknown + "'");

    if (!options.json) {
        if (auto disk = DiskSpace::current(Paths::homeDirectory())) std::cout << ScanReport::volumeLine(*disk) << std::endl;
    }
    const auto start = std::chrono::steady_clock::now();
    ProgressLine progress(!options.json, rules.size());
    std::vector<RuleScanResult> results;
    std::int64_t total = 0;
    std::size_t count = 0;
    ScanStream stream = CacheScanner::scan(rules);
    while (auto result = stream.next()) {
        total += result->totalSize();
        ++count;
        if (options.json) {
            std::string line = ScanReport::jsonLine(*result);
            line.push_back('\n');
            std::fwrite(line.data(), 1, line.size(), stdout);
            std::fflush(stdout);
        } else {
            progress.advance(result->totalSize());
            results.push_back(std::move(*result));
        }
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    if (options.json) {
        std::cout << ScanReport::doneLine(count, total, seconds) << "\n";
    } else {
        progress.erase();
        std::cout << ScanReport::readable(results, BuiltinRules::all(options.table), seconds);
    }
    std::cout.flush();
    return 0;
}
