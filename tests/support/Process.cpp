#include "support/Process.h"

#include "support/TempTree.h"

#include <chrono>
#include <csignal>
#include <thread>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lumabroom::test {

// Started with posix_spawn rather than QProcess: the latter's child shares memory with the caller
// and runs ThreadSanitizer's hooks there, which loses the caller's ordering with other threads and
// shows races that are none in whatever the test runs next.
ProcessResult runProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& env) {
    std::vector<std::string> entries;
    for (const auto& [name, value] : env) entries.push_back(name + "=" + value);
    auto pointers = [](std::vector<std::string>& strings) {
        std::vector<char*> list;
        for (auto& s : strings) list.push_back(s.data());
        list.push_back(nullptr);
        return list;
    };
    std::vector<std::string> args = argv;
    auto argp = pointers(args), envp = pointers(entries);

    ProcessResult result;
    int out[2], err[2];
    if (::pipe2(out, O_CLOEXEC) != 0) return result;
    if (::pipe2(err, O_CLOEXEC) != 0) {
        ::close(out[0]);
        ::close(out[1]);
        return result;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
    pid_t pid = -1;
    const int failed = ::posix_spawn(&pid, argp[0], &actions, nullptr, argp.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    ::close(out[1]);
    ::close(err[1]);

    pollfd watched[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    std::string* sinks[2] = {&result.out, &result.err};
    for (int open = failed ? 0 : 2; open > 0;) {
        if (::poll(watched, 2, -1) < 0) {
            if (errno == EINTR) continue;
            break;
        }
        for (int k = 0; k < 2; ++k) {
            if (watched[k].fd < 0 || watched[k].revents == 0) continue;
            char buffer[4096];
            const ssize_t n = ::read(watched[k].fd, buffer, sizeof buffer);
            if (n > 0) sinks[k]->append(buffer, static_cast<std::size_t>(n));
            else if (n == 0 || errno != EINTR) {
                watched[k].fd = -1;
                --open;
            }
        }
    }
    ::close(out[0]);
    ::close(err[0]);
    if (failed) return result;
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {}
    if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
    return result;
}

long long asUnprivileged(const std::function<long long()>& body) {
    if (::geteuid() != 0) return body();
    int fds[2];
    if (::pipe(fds) != 0) return -1;
    pid_t pid = ::fork();
    if (pid == 0) {
        ::close(fds[0]);
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(1);
        long long value = body();
        [[maybe_unused]] auto n = ::write(fds[1], &value, sizeof value);
        ::_exit(0);
    }
    ::close(fds[1]);
    long long value = -1;
    if (::read(fds[0], &value, sizeof value) != sizeof value) value = -1;
    ::close(fds[0]);
    int status = 0;
    ::waitpid(pid, &status, 0);
    return value;
}

bool goneSoon(pid_t pid) {
    for (int i = 0; i < 200; ++i, std::this_thread::sleep_for(std::chrono::milliseconds(10)))
        if (::kill(pid, 0) != 0 || readFile("/proc/" + std::to_string(pid) + "/stat").find(") Z ") != std::string::npos)
            return true;
    return false;
}

} // namespace lumabroom::test
