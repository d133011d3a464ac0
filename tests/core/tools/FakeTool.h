#pragma once

#include "support/TempTree.h"

#include <filesystem>
#include <string>
#include <vector>

namespace lumabroom::test {

// A shell script standing in for docker, ollama or xcrun. Every call appends its argument list to a
// log; the output and exit status are looked up by the exact argument list, else the default
// (nothing, status 0).
class FakeTool {
public:
    FakeTool(TempTree& tree, const std::string& name);

    const std::filesystem::path& binary() const { return binary_; }
    void respond(const std::vector<std::string>& arguments, const std::string& output, int status = 0);
    void respondToAnything(const std::string& output, int status);

    // Each call's arguments, in the order of the calls.
    std::vector<std::vector<std::string>> calls() const;

private:
    std::filesystem::path folder_;
    std::filesystem::path binary_;
    int responses_ = 0;
};

} // namespace lumabroom::test
