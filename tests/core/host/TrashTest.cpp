#include "host/Trash.h"

#include "host/DirectoryReader.h"
#include "host/Removal.h"

#include "support/Mount.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <functional>
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

namespace {
// Everything at and below `item`, links not followed: relative path → type, mode, modification time
// to the nanosecond, and content or link target.
std::map<std::string, std::string> snapshot(const fs::path& item) {
    std::map<std::string, std::string> items;
    const auto describe = [&](const fs::path& path) {
        struct stat st {};
        ::lstat(path.c_str(), &st);
        std::string text = std::to_string(st.st_mode & 07777) + " " + std::to_string(st.st_mtim.tv_sec) + "."
                           + std::to_string(st.st_mtim.tv_nsec) + " ";
        if (S_ISLNK(st.st_mode)) text += "link:" + fs::read_symlink(path).string();
        else if (S_ISDIR(st.st_mode)) text += "dir";
        else text += "file:" + readFile(path);
        items[path.lexically_relative(item.parent_path()).string()] = text;
    };
    describe(item);
    if (fs::is_directory(fs::symlink_status(item)))
        for (auto it = fs::recursive_directory_iterator(item); it != fs::recursive_directory_iterator(); ++it)
            describe(it->path());
    return items;
}

void setModeAndTime(const fs::path& path, mode_t mode, std::int64_t seconds) {
    const struct timespec times[2] = {{seconds, 0}, {seconds, 123456789}};
    ::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW);
    if (!fs::is_symlink(path)) ::chmod(path.c_str(), mode);
}

// The folder, with times and modes set from the deepest item up, so that making one does not touch
// the time of the folder above.
fs::path makeOddFolder(TempTree& t, const std::string& at) {
    t.file(at + "/locked/readonly.txt", 300, 'r');
    t.file(at + "/-dash \n\xff.bin", 20, 'd');
    t.symlink(at + "/locked/to-sibling", "../-dash \n\xff.bin");
    t.symlink(at + "/absolute", t / "elsewhere");
    setModeAndTime(t / at / "locked/to-sibling", 0, 1'600'000'001);
    setModeAndTime(t / at / "locked/readonly.txt", 0400, 1'600'000'002);
    setModeAndTime(t / at / "locked", 0555, 1'600'000'003);
    setModeAndTime(t / at / "-dash \n\xff.bin", 0604, 1'600'000'004);
    setModeAndTime(t / at / "absolute", 0, 1'600'000'005);
    setModeAndTime(t / at, 0710, 1'600'000'006);
    return t / at;
}
} // namespace

TEST(Trash, RestorePutsEveryKindOfItemBackAsItWasAndClearsItsRecord) {
    TrashHome h;
    struct Case {
        const char* name;
        std::function<fs::path()> make;
    };
    const std::vector<Case> cases{
        {"file of an odd mode",
         [&] {
             const fs::path file = h.t.file("cache/plain.bin", 70000, 'p');
             setModeAndTime(file, 0751, 1'500'000'000);
             return file;
         }},
        {"folder of odd modes with links inside", [&] { return makeOddFolder(h.t, "cache/odd folder"); }},
        {"name with a newline", [&] { return h.t.file("cache/two\nlines", 3, 'n'); }},
        {"name that is no UTF-8", [&] { return h.t.file("cache/\xff\xfe latin \xe9", 4, 'u'); }},
        {"name with a leading dash", [&] { return h.t.file("cache/-rf", 5, 'l'); }},
        {"link as the item", [&] { return h.t.symlink("cache/link", "dir/../nowhere"); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const fs::path item = c.make();
        const auto before = snapshot(item);
        const auto identity = identityOf(item.string());

        const Trash::Outcome outcome = Trash::trash(item.string());
        ASSERT_EQ(outcome.failure, std::nullopt);
        ASSERT_TRUE(outcome.trashed.has_value());
        const Trash::TrashedItem& trashed = *outcome.trashed;
        const std::string name = item.filename().string();
        EXPECT_EQ(trashed, (Trash::TrashedItem{item.string(), (h.trash / "files" / name).string(),
                                               (h.trash / "info" / (name + ".trashinfo")).string(), *identity}));
        EXPECT_EQ(recordedPath(trashed.record), item.string());
        EXPECT_FALSE(fs::exists(fs::symlink_status(item)));

        EXPECT_EQ(Trash::restore(trashed), std::nullopt);
        EXPECT_EQ(snapshot(item), before);
        EXPECT_EQ(identityOf(item.string()), identity);
        EXPECT_TRUE(fs::is_empty(h.trash / "files"));
        EXPECT_TRUE(fs::is_empty(h.trash / "info"));
    }
}

TEST(Trash, RestoreNeverReplacesAndLeavesInTheTrashWhatCannotGoBack) {
    TrashHome h;
    struct Case {
        const char* name;
        std::function<void(const Trash::TrashedItem&)> meanwhile;
        const char* reason; // nothing: it goes back
    };
    const std::vector<Case> cases{
        {"Trash emptied",
         [&](const Trash::TrashedItem& t) {
             fs::remove_all(t.location);
             fs::remove(t.record);
         },
         Trash::kEntryGoneReason},
        {"Trash folder removed as a whole", [&](const Trash::TrashedItem&) { fs::remove_all(h.trash); },
         Trash::kEntryGoneReason},
        {"put back by another program, another item of that name trashed since",
         [&](const Trash::TrashedItem& t) {
             fs::rename(t.location, h.t / "put-back");
             fs::remove(t.record);
             ASSERT_EQ(Trash::moveToTrash(h.t.file("other/item", 2, 'o').string()), std::nullopt);
         },
         Trash::kEntryGoneReason},
        {"place taken by a file", [&](const Trash::TrashedItem& t) { writeText(t.original, "new"); },
         Trash::kPlaceTakenReason},
        {"place taken by an empty folder", [&](const Trash::TrashedItem& t) { fs::create_directory(t.original); },
         Trash::kPlaceTakenReason},
        {"place taken by a dangling link",
         [&](const Trash::TrashedItem& t) { fs::create_symlink(h.t / "nowhere", t.original); },
         Trash::kPlaceTakenReason},
        {"folders above removed", [&](const Trash::TrashedItem&) { fs::remove_all(h.t / "work"); }, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const fs::path item = h.t.file("work/deep/item/inside.txt", 6, 'i').parent_path();
        const auto before = snapshot(item);
        const Trash::Outcome outcome = Trash::trash(item.string());
        ASSERT_TRUE(outcome.trashed.has_value());
        const Trash::TrashedItem& trashed = *outcome.trashed;
        c.meanwhile(trashed);
        const auto placeBefore = fs::exists(fs::symlink_status(item)) ? snapshot(item) : decltype(before){};
        const auto trashBefore = fs::exists(h.trash) ? snapshot(h.trash) : decltype(before){};

        if (!c.reason) {
            EXPECT_EQ(Trash::restore(trashed), std::nullopt);
            EXPECT_EQ(snapshot(item), before);
        } else {
            EXPECT_EQ(Trash::restore(trashed), item.string() + ": " + c.reason);
            EXPECT_EQ(fs::exists(fs::symlink_status(item)) ? snapshot(item) : decltype(before){}, placeBefore);
            EXPECT_EQ(fs::exists(h.trash) ? snapshot(h.trash) : decltype(before){}, trashBefore);
        }
        fs::remove_all(h.t / "work");
        fs::remove_all(h.t / "other");
        fs::remove_all(h.trash);
    }
}

TEST(Trash, AnItemInTheTrashAtTheTopOfItsVolumeGoesBackUnlessTheVolumeIsGone) {
    TrashHome h;
    std::optional<ScopedMount> volume = ScopedMount::tmpfs(h.t.dir("volume"));
    if (!volume->mounted()) GTEST_SKIP() << volume->failure();
    const fs::path folder = makeOddFolder(h.t, "volume/dir/odd");
    const auto before = snapshot(folder);
    const fs::path trash = h.t / "volume" / (".Trash-" + uid());

    const Trash::Outcome first = Trash::trash(folder.string());
    ASSERT_TRUE(first.trashed.has_value());
    EXPECT_EQ(first.trashed->location, (trash / "files/odd").string());
    EXPECT_EQ(first.trashed->record, (trash / "info/odd.trashinfo").string());
    EXPECT_EQ(Trash::restore(*first.trashed), std::nullopt);
    EXPECT_EQ(snapshot(folder), before);
    EXPECT_TRUE(fs::is_empty(trash / "info"));
    EXPECT_TRUE(fs::is_empty(trash / "files"));

    const Trash::Outcome second = Trash::trash(folder.string());
    ASSERT_TRUE(second.trashed.has_value());
    volume.reset();
    EXPECT_EQ(Trash::restore(*second.trashed), folder.string() + ": " + Trash::kVolumeGoneReason);
    EXPECT_TRUE(fs::is_empty(h.t / "volume")) << "nothing is made where the volume was";
}
