#include "host/TempFolders.h"
#include "host/Paths.h"
#include "scan/BuiltinRules.h"
#include "scan/CacheScanner.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

// A process of this user that runs `program` (a copy of sleep) in `folder`, holding `openFile` open
// if one is given; killed with the object.
class Holder {
public:
    Holder(const fs::path& folder, const fs::path& openFile = {}, const fs::path& program = "/bin/sleep") {
        // The pipe closes on exec, so the parent knows the program runs, not merely the fork.
        int ready[2];
        if (::pipe2(ready, O_CLOEXEC) != 0) return;
        pid_ = ::fork();
        if (pid_ == 0) {
            ::close(ready[0]);
            if (::chdir(folder.c_str()) == 0 && (openFile.empty() || ::open(openFile.c_str(), O_RDONLY) >= 0))
                ::execl(program.c_str(), "sleep", "30", static_cast<char*>(nullptr));
            [[maybe_unused]] auto written = ::write(ready[1], "x", 1);
            ::_exit(1);
        }
        ::close(ready[1]);
        char byte = 0;
        ready_ = pid_ > 0 && ::read(ready[0], &byte, 1) == 0;
        ::close(ready[0]);
    }
    ~Holder() {
        if (pid_ <= 0) return;
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;
    bool ready() const { return ready_; }

private:
    pid_t pid_ = -1;
    bool ready_ = false;
};

void makeSocket(const fs::path& path) {
    int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.string().size(), sizeof address.sun_path) << path;
    std::copy_n(path.c_str(), path.string().size(), address.sun_path);
    ASSERT_EQ(::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0) << path;
    ::close(fd);
}

std::vector<std::string> names(const std::vector<fs::path>& paths) {
    std::vector<std::string> found;
    for (const auto& path : paths) found.push_back(path.filename().string());
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<fs::path> everything(const fs::path& folder) {
    std::vector<fs::path> entries;
    for (const auto& entry : fs::directory_iterator(folder)) entries.push_back(entry.path());
    return entries;
}

} // namespace

// What a running program still uses, and what another user keeps, is never offered; the scan of
// the rule goes through the same filter.
TEST(TempFolders, SharedFolderOffersOnlyTheUsersIdleEntries) {
    if (!Paths::temporaryDirectoryIsShared()) GTEST_SKIP() << "the temporary folder is the user's own here";
    TempTree t;
    const fs::path tmp = t.dir("tmp");
    ScopedEnv env{{"TMPDIR", tmp.string()}, {"HOME", t.dir("home").string()}};
    t.file("tmp/plain/a/b/c/d/file", 10);
    t.file("tmp/loose.txt", 10);
    t.dir("tmp/tmux-1000");
    makeSocket(tmp / "tmux-1000/default");
    t.dir("tmp/nested/a/b");
    makeSocket(tmp / "nested/a/b/s");
    ASSERT_EQ(::mkfifo((tmp / "fifo").c_str(), 0600), 0);
    t.dir("tmp/pipes");
    ASSERT_EQ(::mkfifo((tmp / "pipes/p").c_str(), 0600), 0);
    Holder working(t.dir("tmp/working/sub"));
    Holder reading(t.root(), t.file("tmp/reading/log", 10));
    t.dir("tmp/tools");
    fs::copy_file("/bin/sleep", tmp / "tools/sleep");
    Holder running(t.root(), {}, tmp / "tools/sleep");
    ASSERT_TRUE(working.ready() && reading.ready() && running.ready());
    const std::vector<std::string> expected{"loose.txt", "plain"};
    if (::geteuid() == 0) {
        ASSERT_EQ(::lchown(t.dir("tmp/others").c_str(), 65534, 65534), 0);
    } else {
        std::cout << "not root: no entry of another user is made\n";
    }

    EXPECT_EQ(names(TempFolders::offered(everything(tmp))), expected);
    std::vector<fs::path> scanned;
    for (const auto& entry :
         CacheScanner::scanRule(*BuiltinRules::find("sys.tmp-folders", PathTable::linuxOS), {}).entries)
        scanned.push_back(entry.url);
    EXPECT_EQ(names(scanned), expected);
}

TEST(TempFolders, TemporaryFolderAtOrAboveHomeOffersNothing) {
    TempTree t;
    const fs::path home = t.dir("users/me");
    t.dir("users/me/project");
    t.symlink("link-to-home", home);
    for (const fs::path& temporary : {home, t.root() / "users", t.root() / "link-to-home", fs::path("/")}) {
        SCOPED_TRACE(temporary);
        ScopedEnv env{{"TMPDIR", temporary.string()}, {"HOME", home.string()}};
        EXPECT_EQ(TempFolders::offered({home / "project"}), std::vector<fs::path>{});
    }
    ScopedEnv env{{"TMPDIR", t.dir("users/me-tmp").string()}, {"HOME", home.string()}};
    t.dir("users/me-tmp/x");
    EXPECT_EQ(TempFolders::offered({t.root() / "users/me-tmp/x"}), std::vector<fs::path>{t.root() / "users/me-tmp/x"});
}
