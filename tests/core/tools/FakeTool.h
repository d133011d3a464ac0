#pragma once

#include "support/TempTree.h"

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace lumabroom::test {

using Calls = std::vector<std::vector<std::string>>;

// A shell script standing in for docker, ollama or xcrun, written at `binary`. It logs each call's
// arguments (blanks and newlines inside one survive) and answers with what respond() set for the
// call's arguments joined by blanks, else with what it set for "*", else with nothing and status 0.
struct FakeTool {
    explicit FakeTool(std::filesystem::path path) : binary(std::move(path)) {
        std::filesystem::create_directories(folder);
        writeText(binary, "#!/bin/sh\nd='" + folder.string()
                              + "'\n"
                                "printf '%s\\037' \"$@\" >> \"$d/log\"; printf '\\036' >> \"$d/log\"\n"
                                "r=\"$d/$*\"; [ -e \"$r.out\" ] || r=\"$d/*\"\n"
                                "cat \"$r.out\" 2>/dev/null; exit \"$(cat \"$r.status\" 2>/dev/null || echo 0)\"\n");
        std::filesystem::permissions(binary, std::filesystem::perms::owner_all);
    }

    // `arguments` holds no slash.
    void respond(const std::string& arguments, const std::string& output, int status = 0) const {
        writeText(folder / (arguments + ".out"), output);
        writeText(folder / (arguments + ".status"), std::to_string(status));
    }

    Calls calls() const {
        std::istringstream log(readFile(folder / "log"));
        Calls calls;
        for (std::string call; std::getline(log, call, '\x1e');) {
            std::istringstream arguments(call);
            calls.emplace_back();
            for (std::string argument; std::getline(arguments, argument, '\x1f');) calls.back().push_back(argument);
        }
        return calls;
    }

    const std::filesystem::path binary;
    const std::filesystem::path folder{binary.string() + ".d"};
};

} // namespace lumabroom::test
