#pragma once

#include "FakeTool.h"

#include "host/ToolPaths.h"
#include "tools/DockerCLI.h"

#include <gtest/gtest.h>

namespace lumabroom::test {

// A fake docker found through the test seam, and a socket path in the tree that exists only after
// startDaemon(). Both seams are restored at the end.
class DockerTest : public ::testing::Test {
protected:
    DockerTest() : docker(tree, "docker") {
        ToolPaths::setOverride(Tool::docker, docker.binary().string());
        DockerCLI::setSocketCandidatesForTesting(std::vector<std::string>{(tree / "run/docker.sock").string()});
    }
    ~DockerTest() override {
        ToolPaths::setOverride(Tool::docker, std::nullopt);
        DockerCLI::setSocketCandidatesForTesting(std::nullopt);
    }
    void startDaemon() { tree.file("run/docker.sock"); }

    TempTree tree;
    FakeTool docker;
};

} // namespace lumabroom::test
