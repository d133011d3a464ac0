#include "clean/Cleaner.h"

#include "host/DirectoryReader.h"
#include "host/Platform.h"
#include "host/Removal.h"

#include "Script.h"
#include "support/Process.h"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <thread>
#include <utility>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

// Everything below a folder, links not followed: relative path → type, and mode and content or target.
std::map<std::string, std::string> snapshot(const fs::path& root) {
    std::map<std::string, std::string> items;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator(); ++it) {
        struct stat st {};
        ::lstat(it->path().c_str(), &st);
        std::string& item = items[it->path().lexically_relative(root).string()];
        if (S_ISLNK(st.st_mode)) item = "link:" + fs::read_symlink(it->path()).string();
        else if (!S_ISREG(st.st_mode)) item = S_ISDIR(st.st_mode) ? "dir" : "other";
        else item = "file:" + std::to_string(st.st_mode & 07777) + ":" + readFile(it->path());
    }
    return items;
}

std::vector<fs::path> urls(const std::vector<ScanEntry>& entries) {
    std::vector<fs::path> paths;
    for (const auto& e : entries) paths.push_back(e.url);
    return paths;
}

fs::path makeVictim(TempTree& t) {
    std::ofstream(t.file("victim/precious.txt")) << "precious";
    std::ofstream(t.file("victim/sub/more/.hidden")) << "hidden";
    t.file("victim/sub/more/block.bin", 100000, 'v');
    return t / "victim";
}

// Original path → item, as the records of the Trash tell: "[Trash Info]", then a percent-encoded
// path and the date.
std::map<std::string, fs::path> trashRecords(const fs::path& trash) {
    std::map<std::string, fs::path> records;
    for (const auto& info : fs::directory_iterator(trash / "info")) {
        const std::string text = readFile(info.path());
        EXPECT_EQ(text.rfind("[Trash Info]\n", 0), 0u) << text;
        EXPECT_NE(text.find("\nDeletionDate="), std::string::npos) << text;
        const auto start = text.find("\nPath=") + 6;
        const std::string raw = text.substr(start, text.find('\n', start) - start);
        EXPECT_EQ(raw.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/%"),
                  std::string::npos)
            << raw;
        std::string path;
        for (std::size_t i = 0; i < raw.size(); ++i) {
            const bool escaped = raw[i] == '%';
            path += escaped ? static_cast<char>(std::stoi(raw.substr(i + 1, 2), nullptr, 16)) : raw[i];
            if (escaped) i += 2;
        }
        records.emplace(path, trash / "files" / info.path().stem());
    }
    return records;
}

// A home whose Trash is made inside the tree.
struct TrashHome {
    TempTree t;
    ScopedEnv env{{"HOME", t.dir("home").string()}, {"XDG_DATA_HOME", (t / "home/.local/share").string()}};
};

} // namespace

TEST(Cleaner, ReportsEachEntryInOrderAndAFailureStopsNothing) {
    TrashHome h;
    for (auto method : {CleanMethod::trash, CleanMethod::delete_}) {
        SCOPED_TRACE(rawValue(method));
        const std::string name = "area-" + std::string(rawValue(method));
        const fs::path area = h.t / name;
        h.t.file(name + "/build/objects/one.o", 3000);
        h.t.file(name + "/empty.log");
        h.t.symlink(name + "/link", area / "build");
        const std::vector<ScanEntry> entries{{area / "missing", 500, {}},
                                             {area / "build", 8192, {}},
                                             {area / "build", 8192, {}},
                                             {area / "empty.log", 0, {}}};
        const auto before = snapshot(h.t.root());
        EXPECT_EQ(Cleaner::clean(entries, method, true), (CleanResult{urls(entries), {}, 16884, {}}));
        EXPECT_EQ(snapshot(h.t.root()), before) << "a dry run touches nothing";

        const std::string gone = ": No such file or directory";
        const fs::path trash = h.t / "home/.local/share/Trash";
        const auto trashed = [&](const char* item, std::int64_t bytes) {
            return CleanResult::Trashed{area / item, bytes,
                                        Trash::TrashedItem{(area / item).string(), (trash / "files" / item).string(),
                                                           (trash / "info" / item).string() + ".trashinfo",
                                                           *identityOf((area / item).string())}};
        };
        std::vector<CleanResult::Trashed> expectedTrashed;
        if (method == CleanMethod::trash) expectedTrashed = {trashed("build", 8192), trashed("empty.log", 0)};
        EXPECT_EQ(Cleaner::clean(entries, method, false),
                  (CleanResult{{area / "build", area / "empty.log"},
                               {{area / "missing", (area / "missing").string() + gone},
                                {area / "build", (area / "build").string() + gone}},
                               8192,
                               expectedTrashed}));
        EXPECT_EQ(snapshot(area), (std::map<std::string, std::string>{{"link", "link:" + (area / "build").string()}}));
    }
}

TEST(Cleaner, ADeleteThatFailsHalfWayKeepsWhatItDeletedAndCountsNothing) {
    TempTree t;
    const fs::path entry = t.dir("open/entry");
    for (const char* file : {"a.txt", "b/inner.txt", "locked/kept.txt", "z.txt"})
        t.file("open/entry/" + std::string(file), 100);
    for (const char* folder : {"open", "open/entry", "open/entry/b"}) ::chmod((t / folder).c_str(), 0777);
    ::chmod((t / "open/entry/locked/kept.txt").c_str(), 0644);
    ::chmod((t / "open/entry/locked").c_str(), 0555);

    // As root nothing is refused, so the removal runs as an ordinary user.
    const CleanResult expected{{}, {{entry, (entry / "locked/kept.txt").string() + ": Permission denied"}}, 0, {}};
    const std::vector<ScanEntry> entries{{entry, 4096, {}}};
    const auto agreed = [&] { return Cleaner::clean(entries, CleanMethod::delete_, false) == expected ? 1LL : 0LL; };
    EXPECT_EQ(asUnprivileged(agreed), 1);
    EXPECT_EQ(snapshot(entry), (std::map<std::string, std::string>{
                                   {"locked", "dir"}, {"locked/kept.txt", "file:420:" + std::string(100, 'x')}}));
}

// Links as entries and links inside entries, to a sibling "victim" folder; what goes to the Trash
// can be put back to the paths its records name.
TEST(Cleaner, NothingOutsideTheEntriesIsTouchedAndTheTrashCanPutItBack) {
    for (auto method : {CleanMethod::delete_, CleanMethod::trash}) {
        SCOPED_TRACE(rawValue(method));
        TrashHome h;
        TempTree& t = h.t;
        const fs::path victim = makeVictim(t), work = t / "work";
        t.symlink("work/links/to-folder", victim);
        t.symlink("work/links/to-file", victim / "precious.txt");
        t.symlink("work/links/relative", "../../victim");
        t.symlink("work/links/trailing", victim / "sub");
        t.symlink("work/again/to-file", victim / "sub"); // a second item of one name in the Trash
        std::ofstream(t.file("work/notes é 100%.txt")) << "notes";
        t.symlink("work/tree/to-folder", victim);
        t.symlink("work/tree/to-file", victim / "precious.txt");
        t.symlink("work/tree/a/b/up", "../../../../victim");
        t.symlink("work/tree/a/dangling", t / "nowhere");
        t.symlink("work/tree/self", ".");
        ::mkfifo((t / "work/tree/a/fifo").c_str(), 0644);
        t.file("work/tree/a/b/c/d/e/deep.txt", 10);
        const auto victimBefore = snapshot(victim), workBefore = snapshot(work);

        const std::vector<ScanEntry> entries{{work / "links/to-folder", 1, {}},
                                             {work / "links/to-file", 2, {}},
                                             {work / "links/relative", 3, {}},
                                             {fs::path((work / "links/trailing").string() + "/"), 4, {}},
                                             {work / "again/to-file", 5, {}},
                                             {work / "notes é 100%.txt", 6, {}},
                                             {work / "tree", 7, {}}};
        // A link frees its own blocks (a long target takes one), not the size measured at its target.
        std::int64_t linkBytes = 0;
        for (const char* link :
             {"links/to-folder", "links/to-file", "links/relative", "links/trailing", "again/to-file"})
            linkBytes += allocatedBytes(work / link);
        CleanResult result = Cleaner::clean(entries, method, false);
        const auto trashed = std::exchange(result.trashed, {});
        EXPECT_EQ(result, (CleanResult{urls(entries), {}, linkBytes + 6 + 7, {}}));
        EXPECT_EQ(snapshot(victim), victimBefore);
        EXPECT_EQ(snapshot(work), (std::map<std::string, std::string>{{"again", "dir"}, {"links", "dir"}}));
        if (method == CleanMethod::trash && !Platform::isMacOS()) {
            const auto records = trashRecords(t / "home/.local/share/Trash");
            ASSERT_EQ(trashed.size(), entries.size());
            for (std::size_t i = 0; i < trashed.size(); ++i) {
                SCOPED_TRACE(trashed[i].url);
                EXPECT_EQ(trashed[i].url, entries[i].url);
                EXPECT_EQ(records.at(trashed[i].item.original), trashed[i].item.location);
                EXPECT_EQ(Trash::restore(trashed[i].item), std::nullopt);
            }
            EXPECT_EQ(snapshot(work), workBefore);
            EXPECT_EQ(trashRecords(t / "home/.local/share/Trash").size(), 0u);
        }
    }
}

TEST(Cleaner, DeletingNeverFollowsAFolderSwappedForALinkMidway) {
    TempTree t;
    const fs::path victim = makeVictim(t);
    const auto before = snapshot(victim);
    constexpr int kFolders = 40, kPasses = 25;
    for (int round = 0; round < 4; ++round) {
        SCOPED_TRACE(round);
        const std::string name = "entry" + std::to_string(round);
        const fs::path entry = t / name;
        for (int k = 0; k < kFolders; ++k)
            for (const char* file : {"f0", "f1", "f2", "f3", "f4", "f5", "sub/s0", "sub/s1", "sub/s2"})
                t.file(name + "/" + std::to_string(k) + "/" + file, 10);

        // Turns folders into links to the victim and back while the removal runs, the entry itself
        // once on the way.
        std::atomic<bool> started{false};
        std::thread swapper([&] {
            while (!started) std::this_thread::yield();
            std::error_code ec;
            for (int pass = 0; pass < kPasses; ++pass) {
                if (pass == kPasses / 2) {
                    fs::rename(entry, t / (name + "-moved"), ec);
                    fs::create_directory_symlink(victim, entry, ec);
                }
                for (int k = 0; k < kFolders; ++k) {
                    const fs::path folder = entry / std::to_string(k);
                    const auto status = fs::symlink_status(folder, ec);
                    if (fs::is_directory(status)) {
                        fs::rename(folder / "sub", folder / "sub-moved", ec);
                        fs::create_directory_symlink(victim / "sub", folder / "sub", ec);
                        fs::rename(folder, entry / (std::to_string(k) + "-moved-" + std::to_string(pass)), ec);
                        fs::create_directory_symlink(victim, folder, ec);
                    } else if (fs::is_symlink(status)) {
                        fs::remove(folder, ec);
                        fs::create_directory(folder, ec);
                        fs::create_directory_symlink(victim, folder / "inner", ec);
                    }
                }
            }
        });
        started = true;
        Cleaner::clean(std::vector<ScanEntry>{{entry, 0, {}}}, CleanMethod::delete_, false);
        swapper.join();
        EXPECT_EQ(snapshot(victim), before);
    }
}

TEST(Cleaner, AnEntryWhosePathNowLeadsElsewhereIsRefused) {
    for (auto method : {CleanMethod::trash, CleanMethod::delete_}) {
        SCOPED_TRACE(rawValue(method));
        TrashHome h;
        const fs::path entry = h.t.file("cache/item/scanned.bin", 100);
        const std::vector<ScanEntry> entries{{entry.parent_path(), 4096, {}, identityOf(entry.parent_path().string())}};
        fs::rename(h.t / "cache", h.t / "cache-moved"); // kept, so that its number is not reused
        h.t.file("cache/item/other.bin", 100);
        const std::string path = entry.parent_path().string();
        EXPECT_EQ(Cleaner::clean(entries, method, false),
                  (CleanResult{{}, {{entry.parent_path(), path + ": " + Removal::kReplacedReason}}, 0, {}}));
        EXPECT_TRUE(fs::exists(h.t / "cache/item/other.bin"));
        EXPECT_TRUE(fs::exists(h.t / "cache-moved/item/scanned.bin"));
    }
}
