#include "host/Trash.h"

#include "host/DirectoryReader.h"
#include "host/Removal.h"

#include "support/Mount.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {
// A home whose Trash is made inside the tree.
struct TrashHome {
    TempTree t;
    ScopedEnv env{{"HOME", t.dir("home").string()}, {"XDG_DATA_HOME", (t / "home/.local/share").string()}};
    fs::path trash = t / "home/.local/share/Trash";
};

std::set<std::string> names(const fs::path& folder) {
    std::set<std::string> result;
    for (const auto& child : fs::directory_iterator(folder)) result.insert(child.path().filename().string());
    return result;
}

// The original path a record names, its escapes undone.
std::string recordedPath(const fs::path& info) {
    const std::string text = readFile(info);
    const auto start = text.find("\nPath=") + 6;
    const std::string raw = text.substr(start, text.find('\n', start) - start);
    std::string path;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] != '%') {
            path += raw[i];
            continue;
        }
        path += static_cast<char>(std::stoi(raw.substr(i + 1, 2), nullptr, 16));
        i += 2;
    }
    return path;
}

std::string uid() { return std::to_string(::getuid()); }
} // namespace

TEST(Trash, NamesTooLongForTheirRecordAreStoredShortenedAndUnique) {
    TrashHome h;
    const std::string ascii(246, 'n'), wide = [] {
        std::string s;
        for (int i = 0; i < 85; ++i) s += "\xe2\x82\xac"; // 255 bytes of "€"
        return s;
    }();
    std::map<std::string, std::string> expected; // trashed name → original path
    for (const auto& name : {ascii, wide}) {
        for (const char* folder : {"one", "two"}) {
            SCOPED_TRACE(std::string(folder) + " " + std::to_string(name.size()));
            const fs::path item = h.t.file(std::string(folder) + "/" + name, 10, folder[0]);
            ASSERT_EQ(Trash::moveToTrash(item.string()), std::nullopt);
            EXPECT_FALSE(fs::exists(item));
        }
    }
    const auto stored = names(h.trash / "files");
    ASSERT_EQ(stored.size(), 4u);
    std::set<std::string> originals;
    for (const auto& name : stored) {
        SCOPED_TRACE(name);
        EXPECT_LE(name.size(), 245u);
        EXPECT_EQ(fs::path(name).filename().string().size(), name.size());
        const std::string original = recordedPath(h.trash / "info" / (name + ".trashinfo"));
        originals.insert(original);
        const std::string head = fs::path(original).filename().string().substr(0, 100);
        EXPECT_EQ(name.substr(0, 100), head) << "the name starts as the original does";
        fs::rename(h.trash / "files" / name, original);
        EXPECT_EQ(readFile(original), std::string(10, fs::path(original).parent_path().filename().string()[0]));
    }
    EXPECT_EQ(originals, (std::set<std::string>{(h.t / "one" / ascii).string(), (h.t / "two" / ascii).string(),
                                                (h.t / "one" / wide).string(), (h.t / "two" / wide).string()}));
}

TEST(Trash, AnUnrecordedItemInTheTrashIsNeverReplaced) {
    TrashHome h;
    writeText(h.trash / "files/item", "left by another program");
    fs::create_directories(h.trash / "info");
    const fs::path item = h.t.file("work/item", 5, 'i');
    EXPECT_EQ(Trash::moveToTrash(item.string()), std::nullopt);
    EXPECT_EQ(readFile(h.trash / "files/item"), "left by another program");
    EXPECT_EQ(readFile(h.trash / "files/item.2"), "iiiii");
    EXPECT_EQ(names(h.trash / "info"), (std::set<std::string>{"item.2.trashinfo"}));
}

TEST(Trash, OnAnotherVolumeTheTrashAtItsTopRecordsPathsRelativeToIt) {
    TrashHome h;
    ScopedMount volume = ScopedMount::tmpfs(h.t.dir("volume"));
    if (!volume.mounted()) GTEST_SKIP() << volume.failure();
    const fs::path item = h.t.file("volume/dir/sub/item", 5);
    EXPECT_EQ(Trash::moveToTrash(item.string()), std::nullopt);
    const fs::path trash = h.t / "volume" / (".Trash-" + uid());
    EXPECT_EQ(names(trash / "files"), (std::set<std::string>{"item"}));
    EXPECT_EQ(recordedPath(trash / "info/item.trashinfo"), "dir/sub/item");
    EXPECT_FALSE(fs::exists(h.trash / "files/item"));
}

TEST(Trash, AVolumeWithoutAUsableTrashSaysSoAndKeepsTheItem) {
    TrashHome h;
    ScopedMount volume = ScopedMount::tmpfs(h.t.dir("volume"));
    if (!volume.mounted()) GTEST_SKIP() << volume.failure();
    writeText(h.t / "volume" / (".Trash-" + uid()), "a file where the Trash would go");
    const fs::path item = h.t.file("volume/item", 5);
    EXPECT_EQ(Trash::moveToTrash(item.string()), item.string() + ": " + Trash::kNoTrashReason);
    EXPECT_TRUE(fs::exists(item));

    // The item as a mount point cannot go anywhere.
    EXPECT_EQ(Trash::moveToTrash((h.t / "volume").string()),
              (h.t / "volume").string() + ": " + Removal::kMountPointReason);
}

TEST(Trash, AHomeItemNeverMakesATrashAtTheTopOfTheSystemVolume) {
    TempTree t;
    struct stat top {
    }, tree{};
    if (::stat("/", &top) != 0 || ::stat(t.root().c_str(), &tree) != 0 || top.st_dev != tree.st_dev)
        GTEST_SKIP() << "the temporary folder is not on the system volume";
    const fs::path rootTrash = "/.Trash-" + uid();
    if (fs::exists(rootTrash)) GTEST_SKIP() << rootTrash << " exists already";
    ScopedMount data = ScopedMount::tmpfs(t.dir("data"));
    if (!data.mounted()) GTEST_SKIP() << data.failure();
    ScopedEnv env{{"HOME", t.dir("home").string()}, {"XDG_DATA_HOME", (t / "data").string()}};
    const fs::path item = t.file("home/.cache/item", 5);

    const auto result = Trash::moveToTrash(item.string());
    const bool made = fs::exists(rootTrash);
    if (made) fs::remove_all(rootTrash); // only where this fails
    EXPECT_FALSE(made);
    EXPECT_EQ(result, item.string() + ": " + Trash::kNoTrashReason);
    EXPECT_TRUE(fs::exists(item));
}

TEST(Trash, RefusesAnItemThatIsNoLongerTheOneFoundAndNamesThatAreNoItem) {
    TrashHome h;
    const fs::path item = h.t.file("work/item", 5, 'a');
    const auto identity = identityOf(item.string());
    fs::rename(item, h.t / "work/old"); // kept, so that its number is not reused
    h.t.file("work/item", 5, 'b');
    EXPECT_EQ(Trash::moveToTrash(item.string(), identity), item.string() + ": " + Removal::kReplacedReason);
    EXPECT_EQ(readFile(item), "bbbbb");
    EXPECT_EQ(Trash::moveToTrash(item.string(), identityOf(item.string())), std::nullopt);
    EXPECT_EQ(readFile(h.trash / "files/item"), "bbbbb");

    h.t.file("x/keep.txt", 10);
    for (const std::string& path : {(h.t / "x/..").string(), (h.t / "x/.").string(), (h.t / "x/../").string()}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(Trash::moveToTrash(path), path.substr(0, path.find_last_not_of('/') + 1) + ": Invalid argument");
    }
    EXPECT_TRUE(fs::exists(h.t / "x/keep.txt"));
}
