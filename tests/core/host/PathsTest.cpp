#include "host/Paths.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using lumabroom::test::ScopedEnv;

TEST(Paths, HomeFromEnvironmentElseThePasswordDatabase) {
    {
        ScopedEnv env({{"HOME", "/some/home/"}});
        EXPECT_EQ(Paths::expandingTilde("~/a b/c"), "/some/home/a b/c");
    }
    std::string fromDatabase;
    {
        ScopedEnv empty({{"HOME", ""}});
        fromDatabase = Paths::homeDirectory();
    }
    EXPECT_TRUE(fromDatabase.starts_with('/')) << fromDatabase;
    ScopedEnv relative({{"HOME", "relative/home"}});
    EXPECT_EQ(Paths::homeDirectory(), fromDatabase);
}

TEST(Paths, TemporaryFolderAlwaysEndsInSlash) {
    if (!Paths::temporaryDirectoryIsShared()) GTEST_SKIP() << "the system gives the per-user folder";
    for (const auto& [variable, expected] :
         {std::pair{"/var/tmp/x", "/var/tmp/x/"}, {"/var/tmp/y/", "/var/tmp/y/"}, {"", "/tmp/"}}) {
        ScopedEnv env({{"TMPDIR", variable}});
        EXPECT_EQ(Paths::temporaryDirectory(), expected);
    }
}
