#include "host/Removal.h"

#include "host/DirectoryReader.h"

#include "support/DeepTree.h"
#include "support/Mount.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {
std::set<std::string> lines(const std::optional<std::string>& report) {
    std::set<std::string> result;
    std::istringstream in(report.value_or(""));
    for (std::string line; std::getline(in, line);) result.insert(line);
    return result;
}

std::set<std::string> names(const fs::path& folder) {
    std::set<std::string> result;
    for (const auto& child : fs::directory_iterator(folder)) result.insert(child.path().filename().string());
    return result;
}

enum class Kind { tmpfs, bind };

ScopedMount mountAt(Kind kind, TempTree& t, const fs::path& at) {
    fs::create_directories(at);
    return kind == Kind::tmpfs ? ScopedMount::tmpfs(at) : ScopedMount::bind(t.dir("elsewhere"), at);
}
} // namespace

TEST(Removal, NeverLeavesTheFileSystemOfTheItem) {
    for (Kind kind : {Kind::tmpfs, Kind::bind}) {
        SCOPED_TRACE(kind == Kind::tmpfs ? "tmpfs" : "bind mount of the same file system");
        TempTree t;
        t.file("item/plain/a.txt", 100);
        t.file("item/deep/1/2/3/b.txt", 100);
        ScopedMount first = mountAt(kind, t, t / "item/first");
        if (!first.mounted()) GTEST_SKIP() << first.failure();
        ScopedMount second = mountAt(kind, t, t / "item/deep/1/second");
        t.file("item/first/kept.txt", 10); // on the mount (the shared folder where bound)
        t.file("item/deep/1/second/kept-too.txt", 10);

        EXPECT_EQ(lines(Removal::deleteItem((t / "item").string())),
                  (std::set<std::string>{(t / "item/deep/1/second").string() + ": " + Removal::kMountPointReason,
                                         (t / "item/first").string() + ": " + Removal::kMountPointReason}));
        EXPECT_EQ(names(t / "item"), (std::set<std::string>{"deep", "first"}));
        EXPECT_EQ(names(t / "item/deep"), (std::set<std::string>{"1"}));
        EXPECT_EQ(names(t / "item/deep/1"), (std::set<std::string>{"second"}));
        const std::set<std::string> mounted =
            kind == Kind::tmpfs ? std::set<std::string>{"kept.txt"} : std::set<std::string>{"kept-too.txt", "kept.txt"};
        EXPECT_EQ(names(t / "item/first"), mounted);

        // A mount point as the item is refused whole.
        EXPECT_EQ(Removal::deleteItem((t / "item/first").string()),
                  (t / "item/first").string() + ": " + Removal::kMountPointReason);
        EXPECT_TRUE(fs::exists(t / "item/first/kept.txt"));
    }
}

TEST(Removal, RefusesAnItemThatIsNoLongerTheOneFound) {
    struct Case {
        const char* name;
        void (*change)(TempTree&);
    };
    const Case cases[] = {
        {"folder replaced",
         [](TempTree& t) {
             fs::rename(t / "way/item", t / "way/old");
             t.file("way/item/other.txt", 10);
         }},
        {"folder replaced by a file", // the old one kept, so that its number is not reused
         [](TempTree& t) {
             fs::rename(t / "way/item", t / "way/old");
             t.file("way/item", 10);
         }},
        {"folder on the way swapped for a link",
         [](TempTree& t) {
             fs::rename(t / "way", t / "way-moved");
             t.file("victim/item/other.txt", 10);
             fs::create_directory_symlink(t / "victim", t / "way");
         }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TempTree t;
        t.file("way/item/inside.txt", 10);
        const std::string item = (t / "way/item").string();
        const auto identity = identityOf(item);
        ASSERT_TRUE(identity);
        c.change(t);
        const auto before = identityOf(item);
        EXPECT_EQ(Removal::deleteItem(item, identity), item + ": " + Removal::kReplacedReason);
        EXPECT_EQ(identityOf(item), before);
        EXPECT_EQ(Removal::deleteItem(item, before), std::nullopt);
        EXPECT_FALSE(fs::exists(fs::symlink_status(item)));
    }
}

// 25,000 levels are removed at the end of the sizer's test of depth.
TEST(Removal, AnyDepthWithinALowLimitOfOpenFiles) {
    TempTree t;
    ASSERT_GT(makeFolderChain(t.dir("item"), 1'100, 97, 10), 0);
    std::optional<std::string> result;
    {
        ScopedOpenFileLimit limit(1024);
        result = Removal::deleteItem((t / "item").string());
    }
    EXPECT_EQ(result, std::nullopt);
    EXPECT_FALSE(fs::exists(t / "item"));
}

TEST(Removal, RefusesNamesThatAreNoItem) {
    TempTree t;
    t.file("x/keep.txt", 10);
    for (const std::string& path :
         {(t / "x/..").string(), (t / "x/.").string(), (t / "x/../").string(), (t / "x/./").string(), std::string()}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(Removal::deleteItem(path), path + ": Invalid argument");
    }
    EXPECT_TRUE(fs::exists(t / "x/keep.txt"));
}
