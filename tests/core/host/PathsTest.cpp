#include "host/Paths.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using lumabroom::test::ScopedEnv;

TEST(Paths, HomeFromEnvironmentElseThePasswordDatabase) {
    {
        ScopedEnv env({{"HOME", "/some/home/"}});
        EXPECT_EQ(Paths::homeDirectory(), "/some/home");
        EXPECT_EQ(Paths::expandingTilde("~"), "/some/home");
        EXPECT_EQ(Paths::expandingTilde("~/a b/c"), "/some/home/a b/c");
    }
    ScopedEnv empty({{"HOME", ""}});
    EXPECT_FALSE(Paths::homeDirectory().empty());
    EXPECT_EQ(Paths::homeDirectory().front(), '/');
}

TEST(Paths, TemporaryFolderAlwaysEndsInSlash) {
    if (Paths::temporaryDirectoryIsShared()) {
        {
            ScopedEnv env({{"TMPDIR", "/var/tmp/x"}});
            EXPECT_EQ(Paths::temporaryDirectory(), "/var/tmp/x/");
        }
        ScopedEnv env({{"TMPDIR", ""}});
        EXPECT_EQ(Paths::temporaryDirectory(), "/tmp/");
    }
    EXPECT_EQ(Paths::temporaryDirectory().back(), '/');
}

TEST(Paths, DeletingLastPathComponent) {
    struct Case { const char* in; const char* out; } cases[] = {
        {"/a/b/", "/a"}, {"/a/b", "/a"}, {"/a", "/"}, {"/", "/"}, {"a", ""}, {"/var/folders/xy/T/", "/var/folders/xy"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.in);
        EXPECT_EQ(Paths::deletingLastPathComponent(c.in), c.out);
    }
}
