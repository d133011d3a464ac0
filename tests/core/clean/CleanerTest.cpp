#include "clean/Cleaner.h"

#include "host/Platform.h"

#include "Script.h"
#include "support/Process.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <map>
#include <set>
#include <sys/stat.h>
#include <thread>

using namespace lumabroom;
using lumabroom::test::numbered;
using lumabroom::test::readFile;
using lumabroom::test::ScopedEnv;
using lumabroom::test::TempTree;
namespace fs = std::filesystem;

namespace {

// Everything below a folder, links not followed: relative path → type, mode and content or target.
std::map<std::string, std::string> snapshot(const fs::path& root) {
    std::map<std::string, std::string> items;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator(); ++it) {
        std::string relative = it->path().lexically_relative(root).string();
        struct stat st {};
        ::lstat(it->path().c_str(), &st);
        std::string mode = std::to_string(st.st_mode & 07777) + ":";
        if (S_ISLNK(st.st_mode)) items[relative] = "link:" + fs::read_symlink(it->path()).string();
        else if (S_ISDIR(st.st_mode)) items[relative] = "dir:" + mode;
        else items[relative] = "file:" + mode + readFile(it->path());
    }
    return items;
}

bool existsHere(const fs::path& path) {
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0;
}

fs::path makeVictim(TempTree& t) {
    std::ofstream(t.file("victim/precious.txt")) << "precious";
    std::ofstream(t.file("victim/sub/deep.txt")) << "deep";
    std::ofstream(t.file("victim/sub/more/.hidden")) << "hidden";
    t.file("victim/sub/more/block.bin", 100000, 'v');
    return t / "victim";
}

std::int64_t sizeSum(const std::vector<ScanEntry>& entries) {
    std::int64_t sum = 0;
    for (const auto& e : entries) sum += e.size;
    return sum;
}

std::vector<fs::path> urls(const std::vector<ScanEntry>& entries) {
    std::vector<fs::path> paths;
    for (const auto& e : entries) paths.push_back(e.url);
    return paths;
}

std::string percentDecoded(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            out.push_back(static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16)));
            i += 2;
        } else {
            out.push_back(text[i]);
        }
    }
    return out;
}

// Original path → the items in the Trash that came from it, as the Trash's own records tell.
std::multimap<std::string, fs::path> trashRecords(const fs::path& trash) {
    std::multimap<std::string, fs::path> records;
    std::error_code ec;
    for (const auto& info : fs::directory_iterator(trash / "info", ec)) {
        std::string text = readFile(info.path());
        EXPECT_EQ(text.rfind("[Trash Info]\n", 0), 0u) << text;
        EXPECT_NE(text.find("\nDeletionDate="), std::string::npos) << text;
        auto start = text.find("\nPath=");
        if (start == std::string::npos) continue;
        start += 6;
        std::string raw = text.substr(start, text.find('\n', start) - start);
        EXPECT_EQ(raw.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/%"),
                  std::string::npos)
            << "not escaped: " << raw;
        std::string path = percentDecoded(raw);
        records.emplace(path, trash / "files" / info.path().stem());
    }
    return records;
}

} // namespace

TEST(Cleaner, NothingToDoGivesTheEmptyResult) {
    for (auto method : {CleanMethod::trash, CleanMethod::delete_})
        for (bool dryRun : {false, true}) EXPECT_EQ(Cleaner::clean({}, method, dryRun), CleanResult{});
}

TEST(Cleaner, MethodRawValues) {
    for (auto method : {CleanMethod::trash, CleanMethod::delete_})
        EXPECT_EQ(cleanMethodFromRaw(rawValue(method)), method);
    EXPECT_EQ(rawValue(CleanMethod::delete_), "delete");
    EXPECT_EQ(rawValue(CleanMethod::trash), "trash");
    EXPECT_EQ(cleanMethodFromRaw("Trash"), std::nullopt);
}

TEST(Cleaner, DryRunReportsEverythingAndTouchesNothing) {
    TempTree t;
    ScopedEnv env{{"HOME", (t / "home").string()}, {"XDG_DATA_HOME", (t / "home/.local/share").string()}};
    t.file("area/cache/a.bin", 5000);
    t.file("area/file.txt", 12);
    t.symlink("area/link", t / "area/cache");
    std::vector<ScanEntry> entries{
        {t / "area/cache", 8192, std::nullopt},
        {t / "area/file.txt", 4096, std::nullopt},
        {t / "area/missing", 77, std::nullopt},
        {t / "area/link", 0, std::nullopt},
    };
    auto before = snapshot(t.root());
    for (auto method : {CleanMethod::trash, CleanMethod::delete_}) {
        SCOPED_TRACE(rawValue(method));
        EXPECT_EQ(Cleaner::clean(entries, method, true), (CleanResult{urls(entries), {}, 12365}));
        EXPECT_EQ(snapshot(t.root()), before);
    }
}

TEST(Cleaner, EachEntryIsReportedInOrderAndAFailureStopsNothing) {
    TempTree t;
    ScopedEnv env{{"HOME", (t / "home").string()}, {"XDG_DATA_HOME", (t / "home/.local/share").string()}};
    for (auto method : {CleanMethod::trash, CleanMethod::delete_}) {
        SCOPED_TRACE(rawValue(method));
        fs::path area = t.dir(std::string("area-") + std::string(rawValue(method)));
        t.file((area / "build/objects/one.o").lexically_relative(t.root()).string(), 3000);
        t.file((area / "build/two.o").lexically_relative(t.root()).string(), 10);
        t.file((area / "empty.log").lexically_relative(t.root()).string());
        std::vector<ScanEntry> entries{
            {area / "missing", 500, std::nullopt},
            {area / "build", 8192, std::nullopt},
            {area / "build", 8192, std::nullopt},
            {area / "empty.log", 0, std::nullopt},
        };
        auto result = Cleaner::clean(entries, method, false);
        const std::string gone = "No such file or directory";
        EXPECT_EQ(result, (CleanResult{{area / "build", area / "empty.log"},
                                       {{area / "missing", (area / "missing").string() + ": " + gone},
                                        {area / "build", (area / "build").string() + ": " + gone}},
                                       8192}));
        EXPECT_FALSE(existsHere(area / "build"));
        EXPECT_FALSE(existsHere(area / "empty.log"));
        if (method == CleanMethod::trash && !Platform::isMacOS()) {
            EXPECT_TRUE(existsHere(t / "home/.local/share/Trash/files/build/objects/one.o"));
            EXPECT_TRUE(existsHere(t / "home/.local/share/Trash/files/empty.log"));
        }
    }
}

TEST(Cleaner, ADeleteThatFailsHalfWayKeepsWhatItDeletedAndCountsNothing) {
    TempTree t;
    fs::path entry = t.dir("open/entry");
    t.file("open/entry/a.txt", 100);
    t.file("open/entry/b/inner.txt", 100);
    t.file("open/entry/locked/kept.txt", 100);
    t.file("open/entry/z.txt", 100);
    for (const char* folder : {"open", "open/entry", "open/entry/b"}) ::chmod((t / folder).c_str(), 0777);
    ::chmod((t / "open/entry/locked/kept.txt").c_str(), 0644);
    ::chmod((t / "open/entry/locked").c_str(), 0555);

    // As root nothing is refused, so the removal runs as an ordinary user.
    long long agreed = lumabroom::test::asUnprivileged([&] {
        auto result = Cleaner::clean(std::vector<ScanEntry>{{entry, 4096, std::nullopt}}, CleanMethod::delete_, false);
        CleanResult expected{{}, {{entry, (entry / "locked/kept.txt").string() + ": Permission denied"}}, 0};
        return static_cast<long long>(result == expected);
    });
    EXPECT_EQ(agreed, 1);
    EXPECT_EQ(snapshot(entry), (std::map<std::string, std::string>{
                                   {"locked", "dir:365:"}, {"locked/kept.txt", "file:420:" + std::string(100, 'x')}}));
}

TEST(Cleaner, NothingOutsideTheEntriesIsTouched) {
    for (auto method : {CleanMethod::delete_, CleanMethod::trash}) {
        SCOPED_TRACE(rawValue(method));
        TempTree t;
        ScopedEnv env{{"HOME", (t / "home").string()}, {"XDG_DATA_HOME", (t / "home/.local/share").string()}};
        fs::path victim = makeVictim(t);
        auto before = snapshot(victim);

        t.symlink("links/to-folder", victim);
        t.symlink("links/to-file", victim / "precious.txt");
        t.symlink("links/relative", "../victim");
        t.symlink("links/trailing", victim / "sub");

        t.file("tree/plain.txt", 10);
        t.file("tree/name with blanks é", 10);
        t.file("tree/-dash", 10);
        t.symlink("tree/to-folder", victim);
        t.symlink("tree/to-file", victim / "precious.txt");
        t.symlink("tree/a/b/up", "../../../victim");
        t.symlink("tree/a/to-sub", victim / "sub");
        t.symlink("tree/a/dangling", t / "nowhere");
        t.symlink("tree/self", ".");
        t.hardlink("tree/hard", "victim/precious.txt");
        ::mkfifo((t / "tree/a/fifo").c_str(), 0644);
        t.file("tree/a/b/c/d/e/deep.txt", 10);

        std::vector<ScanEntry> entries{
            {t / "links/to-folder", 1, std::nullopt},
            {t / "links/to-file", 2, std::nullopt},
            {t / "links/relative", 3, std::nullopt},
            {fs::path((t / "links/trailing").string() + "/"), 4, std::nullopt},
            {t / "tree", 5, std::nullopt},
        };
        auto result = Cleaner::clean(entries, method, false);
        EXPECT_EQ(result, (CleanResult{urls(entries), {}, sizeSum(entries)}));
        EXPECT_EQ(snapshot(victim), before);
        EXPECT_TRUE(fs::is_empty(t / "links"));
        EXPECT_FALSE(existsHere(t / "tree"));
        if (method == CleanMethod::trash && !Platform::isMacOS()) {
            auto records = trashRecords(t / "home/.local/share/Trash");
            EXPECT_EQ(records.size(), entries.size());
            EXPECT_EQ(fs::read_symlink(records.find((t / "links/trailing").string())->second), victim / "sub");
        }
    }
}

TEST(Cleaner, DeletingNeverFollowsAFolderSwappedForALinkMidway) {
    TempTree t;
    fs::path victim = makeVictim(t);
    auto before = snapshot(victim);
    constexpr int kFolders = 40;
    constexpr int kPasses = 25;

    for (int round = 0; round < 4; ++round) {
        SCOPED_TRACE(round);
        const std::string name = numbered("entry", round);
        fs::path entry = t / name;
        for (int k = 0; k < kFolders; ++k) {
            std::string folder = name + numbered("/d", k);
            for (int f = 0; f < 6; ++f) t.file(folder + numbered("/f", f), 10);
            for (int f = 0; f < 3; ++f) t.file(folder + numbered("/sub/s", f), 10);
        }

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
                    fs::path folder = entry / numbered("d", k);
                    auto status = fs::symlink_status(folder, ec);
                    if (fs::is_directory(status)) {
                        fs::rename(folder / "sub", folder / "sub-moved", ec);
                        fs::create_directory_symlink(victim / "sub", folder / "sub", ec);
                        fs::rename(folder, entry / (numbered("m", k) + numbered("-", pass)), ec);
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
        Cleaner::clean(std::vector<ScanEntry>{{entry, 0, std::nullopt}}, CleanMethod::delete_, false);
        swapper.join();
        EXPECT_EQ(snapshot(victim), before);

        // What the race put back goes on a second run, which still leaves the victim alone.
        Cleaner::clean(std::vector<ScanEntry>{{entry, 0, std::nullopt}, {t / (name + "-moved"), 0, std::nullopt}},
                       CleanMethod::delete_, false);
        EXPECT_EQ(snapshot(victim), before);
        EXPECT_FALSE(existsHere(entry));
        EXPECT_FALSE(existsHere(t / (name + "-moved")));
    }
}

TEST(Cleaner, TrashedItemsCanBeRestoredFromTheTrashRecords) {
    if (Platform::isMacOS()) GTEST_SKIP() << "the system Trash";
    TempTree t;
    ScopedEnv env{{"HOME", (t / "home").string()}, {"XDG_DATA_HOME", (t / "home/.local/share").string()}};
    t.dir("home");
    std::ofstream(t.file("work/notes é 100%.txt")) << "first notes";
    t.file("work/build dir/obj/a.o", 3000, 'a');
    t.symlink("work/build dir/obj/link", "../../notes é 100%.txt");
    std::ofstream(t.file("work/build dir/readme")) << "read me";
    auto original = snapshot(t / "work");
    std::vector<ScanEntry> entries{{t / "work/notes é 100%.txt", 4096, std::nullopt},
                                   {t / "work/build dir", 8192, std::nullopt}};

    EXPECT_EQ(Cleaner::clean(entries, CleanMethod::trash, false), (CleanResult{urls(entries), {}, 12288}));
    EXPECT_TRUE(fs::is_empty(t / "work"));

    // A second item of the same name does not replace the first in the Trash.
    std::ofstream(t.file("work/notes é 100%.txt")) << "second notes";
    EXPECT_EQ(Cleaner::clean(std::vector<ScanEntry>{entries[0]}, CleanMethod::trash, false),
              (CleanResult{{entries[0].url}, {}, 4096}));

    auto records = trashRecords(t / "home/.local/share/Trash");
    ASSERT_EQ(records.size(), 3u);
    ASSERT_EQ(records.count((t / "work/notes é 100%.txt").string()), 2u);
    ASSERT_EQ(records.count((t / "work/build dir").string()), 1u);
    std::multiset<std::string> notes;
    for (auto [it, end] = records.equal_range((t / "work/notes é 100%.txt").string()); it != end; ++it)
        notes.insert(readFile(it->second));
    EXPECT_EQ(notes, (std::multiset<std::string>{"first notes", "second notes"}));

    // Put back as a file manager would: each item to the path its record names.
    fs::remove(t / "work/notes é 100%.txt");
    for (const auto& [path, item] : records)
        if (fs::is_directory(item) || readFile(item) != "second notes") fs::rename(item, path);
    EXPECT_EQ(snapshot(t / "work"), original);
}
