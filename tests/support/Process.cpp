#include "support/Process.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lumabroom::test {

ProcessResult runProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& env) {
    ProcessResult result;
    int outPipe[2], errPipe[2];
    if (::pipe(outPipe) != 0 || ::pipe(errPipe) != 0) return result;

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], 1);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], 2);
    posix_spawn_file_actions_addclose(&actions, outPipe[0]);
    posix_spawn_file_actions_addclose(&actions, errPipe[0]);

    std::vector<char*> args;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    std::vector<std::string> envStrings;
    for (const auto& [k, v] : env) envStrings.push_back(k + "=" + v);
    std::vector<char*> envp;
    for (auto& e : envStrings) envp.push_back(e.data());
    envp.push_back(nullptr);

    pid_t pid = -1;
    int rc = ::posix_spawn(&pid, args[0], &actions, nullptr, args.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    ::close(outPipe[1]);
    ::close(errPipe[1]);
    if (rc != 0) {
        ::close(outPipe[0]);
        ::close(errPipe[0]);
        return result;
    }

    pollfd fds[2] = {{outPipe[0], POLLIN, 0}, {errPipe[0], POLLIN, 0}};
    std::string* sinks[2] = {&result.out, &result.err};
    int open = 2;
    char buffer[65536];
    while (open > 0) {
        if (::poll(fds, 2, -1) < 0) {
            if (errno == EINTR) continue;
            break;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
            ssize_t n = ::read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0) {
                sinks[i]->append(buffer, static_cast<std::size_t>(n));
            } else {
                ::close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {}
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
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

} // namespace lumabroom::test
