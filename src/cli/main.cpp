// lumabroom-scan: the application's scan without its window, for scripts and benchmarks.

#include "DockerMode.h"
#include "ModelsMode.h"
#include "Output.h"
#include "ScanReport.h"
#include "SessionsMode.h"
#include "SimulatorsMode.h"
#include "Texts.h"
#include "WorktreesMode.h"

#include "catalogue/BuiltinScan.h"
#include "host/Paths.h"
#include "scan/BuiltinRules.h"
#include "text/DiskSpace.h"
#include "text/Formatting.h"
#include "text/Localization.h"

#include <QCommandLineParser>

#include <array>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <optional>
#include <set>
#include <string>
#include <unistd.h>
#include <variant>
#include <vector>

using namespace lumabroom;

namespace {

constexpr const char* kUsage =
    "usage: lumabroom-scan [--json] [--catalogue macos|linux] [--language zh-Hans|en|system] [--rule ID]...\n"
    "       lumabroom-scan [--json] [--catalogue macos|linux] --docker | --models | --simulators\n"
    "       lumabroom-scan [--json] --worktrees | --sessions claude|codex [--limit N]\n";

constexpr const char* kAbout = "Scans what development tools leave in your home folder and prints the sizes.\n"
                               "Sizes are allocated bytes in decimal units. Nothing is written or removed.";

// The modes besides the scan, of which one run takes at most one.
constexpr std::array<const char*, 5> kModes{"docker", "models", "simulators", "worktrees", "sessions"};

struct Options {
    bool json = false;
    PathTable table = runningPathTable();
    std::vector<std::string> ruleIds;
    std::optional<AppLanguage> language; // for this run only
    std::string toolMode;                // one of kModes; empty for the scan
    SessionsMode::Agent sessionsOf = SessionsMode::Agent::claude;
    std::optional<std::size_t> limit;
};

int usageError(const std::string& message) {
    std::cerr << "lumabroom-scan: " << message << "\n" << kUsage;
    return 2;
}

void describeOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(QString::fromUtf8(kAbout));
    parser.addOptions({
        {"json", "One JSON object per rule as it finishes, then a final {\"done\": true, ...}."},
        {"catalogue", "The path table to use: macos or linux (default: this system's).", "NAME"},
        {"rule", "Scan only this rule; may be given more than once.", "ID"},
        {"language", "zh-Hans, en or system: the language of this run, not stored (default: the setting).", "NAME"},
        {"docker", "Docker's usage and its images, containers and volumes (needs the daemon's socket)."},
        {"models", "The Ollama models, one per manifest."},
        {"simulators", "The simulator devices with their names."},
        {"worktrees", "The git worktrees that coding agents left, with what removing each would lose; with --json "
                      "one line per report (report k has k sizes), then {\"done\": true}."},
        {"sessions", "The largest session files of claude or codex.", "AGENT"},
        {"limit", "How many sessions to list (default 10).", "N"},
        {{"h", "help"}, "Show this text."},
        {"version", "Show the version of this program."},
    });
}

// The options of the command line, or the message of a usage error.
std::variant<Options, std::string> readOptions(const QCommandLineParser& parser) {
    Options options;
    options.json = parser.isSet("json");
    if (!parser.positionalArguments().isEmpty())
        return "unexpected argument '" + parser.positionalArguments().front().toStdString() + "'";
    if (parser.isSet("catalogue")) {
        const QString name = parser.value("catalogue");
        if (name == "macos") options.table = PathTable::macOS;
        else if (name == "linux") options.table = PathTable::linuxOS;
        else return "unknown catalogue '" + name.toStdString() + "'";
    }
    for (const QString& id : parser.values("rule")) options.ruleIds.push_back(id.toStdString());
    if (parser.isSet("language")) {
        options.language = appLanguageFromRaw(parser.value("language").toStdString());
        if (!options.language) return std::string("--language needs zh-Hans, en or system");
    }
    for (const char* mode : kModes) {
        if (!parser.isSet(mode)) continue;
        if (!options.toolMode.empty()) return "--" + options.toolMode + " and --" + mode + " can't be combined";
        options.toolMode = mode;
    }
    if (parser.isSet("sessions")) {
        const auto agent = SessionsMode::agentFromName(parser.value("sessions").toStdString());
        if (!agent) return std::string("--sessions needs claude or codex");
        options.sessionsOf = *agent;
    }
    if (parser.isSet("limit")) {
        const std::string n = parser.value("limit").toStdString();
        if (n.empty() || n.find_first_not_of("0123456789") != std::string::npos || n.size() > 9)
            return std::string("--limit needs a number");
        if (options.toolMode != "sessions") return std::string("--limit goes with --sessions");
        options.limit = std::stoul(n);
    }
    if (!options.toolMode.empty() && !options.ruleIds.empty()) return "--" + options.toolMode + " takes no --rule";
    return options;
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
    ProgressLine(bool wanted, std::size_t total) : enabled_(wanted && ::isatty(STDERR_FILENO) == 1), total_(total) {
        draw();
    }
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
        const std::string text = Localization::formatted(
            Texts::scanning, {std::to_string(done_), std::to_string(total_), Formatting::bytes(sum_)});
        std::fprintf(stderr, "\r\033[K%s", text.c_str());
        std::fflush(stderr);
    }
    bool enabled_;
    std::size_t total_;
    std::size_t done_ = 0;
    std::int64_t sum_ = 0;
};

int runMode(const Options& options) {
    if (options.toolMode == "worktrees") return WorktreesMode::run(options.json, std::cout);
    if (options.toolMode == "sessions")
        return SessionsMode::run(options.sessionsOf, options.limit.value_or(SessionsMode::kDefaultLimit), options.json,
                                 std::cout);
    if (options.toolMode == "docker") return DockerMode::run(options.json, std::cout);
    if (options.toolMode == "models") return ModelsMode::run(options.json, std::cout);
    return SimulatorsMode::run(options.json, options.table, std::cout);
}

int runScan(const Options& options) {
    std::string unknown;
    std::vector<CleanRule> rules = selectedRules(options, unknown);
    if (!unknown.empty()) return usageError("unknown rule '" + unknown + "'");

    if (!options.json) {
        if (auto disk = DiskSpace::current(Paths::homeDirectory()))
            std::cout << ScanReport::volumeLine(*disk) << std::endl;
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
            Output::writeJsonLine(std::cout, ScanReport::json(*result));
        } else {
            progress.advance(result->totalSize());
            results.push_back(std::move(*result));
        }
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    if (options.json) {
        Output::writeJsonLine(std::cout, ScanReport::doneJson(count, total, seconds));
    } else {
        progress.erase();
        std::cout << ScanReport::readable(results, BuiltinRules::all(options.table), seconds) << std::flush;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    QCommandLineParser parser;
    describeOptions(parser);
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
    if (!parser.parse(arguments)) return usageError(parser.errorText().toStdString());
    if (parser.isSet("help")) {
        // The parser's own first line knows one form of the command; ours lists all three.
        const QString help = parser.helpText();
        std::cout << kUsage << help.mid(help.indexOf('\n')).toStdString();
        return 0;
    }
    if (parser.isSet("version")) {
        std::cout << "lumabroom-scan " << LUMABROOM_VERSION << "\n";
        return 0;
    }
    auto read = readOptions(parser);
    if (auto* message = std::get_if<std::string>(&read)) return usageError(*message);
    const Options& options = std::get<Options>(read);
    if (options.language) Localization::setLanguageForThisRun(*options.language);
    return options.toolMode.empty() ? runScan(options) : runMode(options);
}
