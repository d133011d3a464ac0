#pragma once

#include "support/TempTree.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>

namespace lumabroom::test {

// An executable shell script at `relative` below the tree, with `body` after the "#!/bin/sh" line.
inline std::string writeScript(TempTree& tree, const std::string& relative, const std::string& body) {
    const std::filesystem::path path = tree.file(relative);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << "#!/bin/sh\n" << body << "\n";
    ::chmod(path.c_str(), 0755);
    return path.string();
}

} // namespace lumabroom::test
