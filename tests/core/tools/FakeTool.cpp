#include "FakeTool.h"

#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace lumabroom::test {

namespace {
void write(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

// Arguments are joined with the unit separator, calls end with the record separator, so that
// blanks and newlines inside an argument survive.
constexpr char kUnit = '\x1f';
constexpr char kRecord = '\x1e';

std::string joined(const std::vector<std::string>& arguments) {
    std::string text;
    for (const auto& a : arguments) text += a + kUnit;
    return text;
}
} // namespace

FakeTool::FakeTool(TempTree& tree, const std::string& name) {
    folder_ = tree.dir("fake-" + name);
    fs::create_directories(folder_ / "responses");
    binary_ = folder_ / name;
    write(binary_, "#!/bin/sh\n"
                   "d='" + folder_.string() + "'\n"
                   "call=''\n"
                   "for a in \"$@\"; do call=\"$call$a$(printf '\\037')\"; done\n"
                   "printf '%s\\036' \"$call\" >> \"$d/log\"\n"
                   "for f in \"$d\"/responses/*.args; do\n"
                   "  [ -e \"$f\" ] || continue\n"
                   "  if [ \"$(cat \"$f\")\" = \"$call\" ]; then cat \"${f%.args}.out\"; exit \"$(cat \"${f%.args}.status\")\"; fi\n"
                   "done\n"
                   "[ -e \"$d/default.out\" ] && cat \"$d/default.out\"\n"
                   "exit \"$(cat \"$d/default.status\" 2>/dev/null || echo 0)\"\n");
    fs::permissions(binary_, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                 fs::perms::others_read | fs::perms::others_exec);
}

void FakeTool::respond(const std::vector<std::string>& arguments, const std::string& output, int status) {
    const fs::path base = folder_ / "responses" / std::to_string(responses_++);
    write(fs::path(base).concat(".args"), joined(arguments));
    write(fs::path(base).concat(".out"), output);
    write(fs::path(base).concat(".status"), std::to_string(status));
}

void FakeTool::respondToAnything(const std::string& output, int status) {
    write(folder_ / "default.out", output);
    write(folder_ / "default.status", std::to_string(status));
}

std::vector<std::vector<std::string>> FakeTool::calls() const {
    std::ifstream in(folder_ / "log", std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    std::vector<std::vector<std::string>> calls;
    std::string record;
    std::istringstream records(text.str());
    while (std::getline(records, record, kRecord)) {
        std::vector<std::string> arguments;
        std::string argument;
        std::istringstream units(record);
        while (std::getline(units, argument, kUnit)) arguments.push_back(argument);
        calls.push_back(std::move(arguments));
    }
    return calls;
}

} // namespace lumabroom::test
