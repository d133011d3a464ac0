#pragma once

#include "support/TempTree.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace lumabroom::test {

// An executable shell script at `relative` below the tree, with `body` after the "#!/bin/sh" line.
inline std::string writeScript(TempTree& tree, std::string_view relative, std::string_view body) {
    std::filesystem::path path = tree.file(relative);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << "#!/bin/sh\n" << body << "\n";
    ::chmod(path.c_str(), 0755);
    return path.string();
}

// prefix followed by the number, e.g. "d7".
inline std::string numbered(std::string_view prefix, long long number) {
    std::string text(prefix);
    text += std::to_string(number);
    return text;
}

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace lumabroom::test
