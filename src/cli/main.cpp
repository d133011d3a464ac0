// lumabroom-scan: the application's scan without its window, for scripts and benchmarks.

#include "ScanReport.h"

#include "scan/BuiltinRules.h"
#include "scan/CacheScanner.h"
#include "text/Formatting.h"

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
    "usage: lumabroom-scan [--json] [--catalogue macos|linux] [--rule ID]...\n";

constexpr const char* kHelp =
    "Scans what development tools leave in your home folder and prints the sizes.\n"
    "\n"
    "  --json                one JSON object per rule as it finishes, then a final {\"done\": true, ...}\n"
    "  --catalogue NAME      the path table to use: macos or linux (default: this system's)\n"
    "  --rule ID             scan only this rule; may be given more than once\n"
    "  --help                show this text\n"
    "\n"
    "Sizes are allocated bytes in decimal units. Nothing is written or removed.\n";

struct Options {
    bool json = false;
    PathTable table = runningPathTable();
    std::vector<std::string> ruleIds;
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
        } else {
            return usageError("unknown option '" + arg + "'");
        }
    }

    std::string unknown;
    std::vector<CleanRule> rules = selectedRules(options, unknown);
    if (!unknown.empty()) return usageError("unknown rule '" + unknown + "'");

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
