// Linked into every test program: a test must not leave a process behind. Orphans of the test's
// children are adopted (the program is their subreaper), and when the tests end whatever is left
// gets a short while to finish, then is killed and fails the run, named by its command line.

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <dirent.h>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>
#if defined(__linux__)
#include <sys/prctl.h>
#endif

namespace {

struct Child {
    pid_t pid;
    bool zombie;
};

std::vector<Child> children() {
    std::vector<Child> found;
#if defined(__linux__)
    DIR* proc = ::opendir("/proc");
    if (!proc) return found;
    while (const dirent* entry = ::readdir(proc)) {
        const pid_t pid = static_cast<pid_t>(std::atoi(entry->d_name));
        if (pid <= 0) continue;
        std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
        std::string text((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
        const auto close = text.rfind(')');
        if (close == std::string::npos) continue;
        std::istringstream rest(text.substr(close + 1));
        char state = 0;
        pid_t parent = 0;
        rest >> state >> parent;
        if (parent == ::getpid()) found.push_back({pid, state == 'Z'});
    }
    ::closedir(proc);
#endif
    return found;
}

std::string commandLine(pid_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/cmdline");
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    for (char& c : text)
        if (c == '\0') c = ' ';
    return text;
}

class Leftovers : public testing::Environment {
public:
    void SetUp() override {
#if defined(__linux__)
        ::prctl(PR_SET_CHILD_SUBREAPER, 1);
#endif
    }

    void TearDown() override {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
        std::vector<std::string> killed;
        for (;;) {
            std::vector<Child> alive;
            for (const Child& child : children()) {
                if (child.zombie) ::waitpid(child.pid, nullptr, WNOHANG);
                else alive.push_back(child);
            }
            if (alive.empty()) break;
            if (std::chrono::steady_clock::now() < deadline) {
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
                continue;
            }
            for (const Child& child : alive) {
                killed.push_back(commandLine(child.pid));
                ::kill(child.pid, SIGKILL);
                ::waitpid(child.pid, nullptr, 0);
            }
        }
        for (const auto& line : killed) ADD_FAILURE() << "left behind and killed: " << line;
    }
};

[[maybe_unused]] testing::Environment* const registered = testing::AddGlobalTestEnvironment(new Leftovers);

} // namespace
