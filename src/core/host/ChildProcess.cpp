#include "host/ChildProcess.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#if defined(__linux__)
#include <sys/syscall.h>
#endif

extern char** environ;

namespace lumabroom::ChildProcess {

namespace {
using Clock = std::chrono::steady_clock;

// Long enough to mean "no limit", short enough not to overflow the clock.
constexpr double kLongestWaitSeconds = 1e8;

Clock::duration durationOf(double seconds) {
    if (!(seconds > 0)) return Clock::duration::zero(); // also NaN
    seconds = std::min(seconds, kLongestWaitSeconds);
    return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

int millisecondsUntil(Clock::time_point when) {
    auto left = when - Clock::now();
    if (left <= Clock::duration::zero()) return 0;
    auto ms = std::chrono::ceil<std::chrono::milliseconds>(left).count();
    return static_cast<int>(std::min<long long>(ms, 1'000'000));
}

class FileDescriptor {
public:
    explicit FileDescriptor(int fd = -1) : fd_(fd) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { reset(); }
    int get() const { return fd_; }
    void reset(int fd = -1) {
        if (fd_ >= 0) ::close(fd_);
        fd_ = fd;
    }

private:
    int fd_;
};

// A pipe whose ends are closed on exec and never take the numbers 0 to 2, which the child's file
// actions overwrite.
bool makePipe(FileDescriptor& readEnd, FileDescriptor& writeEnd) {
    int fds[2];
#if defined(__linux__)
    if (::pipe2(fds, O_CLOEXEC) != 0) return false;
#else
    if (::pipe(fds) != 0) return false;
    ::fcntl(fds[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(fds[1], F_SETFD, FD_CLOEXEC);
#endif
    for (int& fd : fds) {
        if (fd <= STDERR_FILENO) {
            int moved = ::fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
            ::close(fd);
            fd = moved;
        }
    }
    readEnd.reset(fds[0]);
    writeEnd.reset(fds[1]);
    return readEnd.get() >= 0 && writeEnd.get() >= 0;
}

// Signals that a parent may ignore, and an ignored signal stays ignored across exec.
constexpr int kDefaultedSignals[] = {SIGPIPE, SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGCHLD,
                                     SIGTSTP, SIGTTIN, SIGTTOU, SIGUSR1, SIGUSR2, SIGALRM};

pid_t spawn(const std::string& executable, const std::vector<std::string>& arguments, int outputFd) {
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 2);
    argv.push_back(const_cast<char*>(executable.c_str()));
    for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);

    sigset_t defaulted, empty;
    sigemptyset(&defaulted);
    for (int signal : kDefaultedSignals) sigaddset(&defaulted, signal);
    sigemptyset(&empty);

#if defined(POSIX_SPAWN_SETSID)
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, outputFd, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    short flags = POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
#if defined(__APPLE__)
    flags |= POSIX_SPAWN_CLOEXEC_DEFAULT; // also closes what other code opened without close-on-exec
#elif defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 34))
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
#endif
    posix_spawnattr_setflags(&attributes, flags);
    posix_spawnattr_setsigmask(&attributes, &empty);
    posix_spawnattr_setsigdefault(&attributes, &defaulted);
    pid_t pid = -1;
    int failed = ::posix_spawn(&pid, executable.c_str(), &actions, &attributes, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    return failed ? -1 : pid;
#else
    // Only async-signal-safe calls between fork and exec.
    pid_t pid = ::fork();
    if (pid != 0) return pid;
    ::setsid();
    struct sigaction standard {};
    standard.sa_handler = SIG_DFL;
    for (int signal : kDefaultedSignals) ::sigaction(signal, &standard, nullptr);
    ::sigprocmask(SIG_SETMASK, &empty, nullptr);
    int in = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    int err = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (in < 0 || err < 0 || ::dup2(in, STDIN_FILENO) < 0 || ::dup2(outputFd, STDOUT_FILENO) < 0 ||
        ::dup2(err, STDERR_FILENO) < 0)
        ::_exit(127);
    ::execve(executable.c_str(), argv.data(), environ);
    ::_exit(127);
#endif
}

// Whether the child has exited, without reaping it: while it is not reaped its process ID, and so
// its group ID, cannot be given to another process, so signals to the group reach only our own.
bool hasExited(pid_t pid) {
    siginfo_t info{};
    for (;;) {
        if (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0)
            return info.si_pid == pid;
        if (errno != EINTR) return true; // no such child: nothing to wait for
    }
}

// A descriptor that becomes readable when the child exits, so one poll waits for output and exit
// alike; -1 where the kernel has none (then exit is looked for in growing steps).
int exitDescriptor(pid_t pid) {
#if defined(__linux__) && defined(SYS_pidfd_open)
    return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
#else
    (void)pid;
    return -1;
#endif
}
} // namespace

std::optional<Outcome> run(const std::string& executable, const std::vector<std::string>& arguments,
                           double timeoutSeconds, double killGraceSeconds) {
    FileDescriptor readEnd, writeEnd;
    if (!makePipe(readEnd, writeEnd)) return std::nullopt;
    const Clock::time_point deadline = Clock::now() + durationOf(timeoutSeconds);
    const Clock::time_point killTime = deadline + durationOf(killGraceSeconds);

    pid_t pid = spawn(executable, arguments, writeEnd.get());
    writeEnd.reset();
    if (pid < 0) return std::nullopt;

    FileDescriptor exitEnd(exitDescriptor(pid));
    Outcome outcome;
    bool closed = false, exited = false;
    int exitPollMs = 1;
    char buffer[64 * 1024];
    for (;;) {
        if (!exited && exitEnd.get() < 0) exited = hasExited(pid);
        if (closed && exited) break;
        const auto now = Clock::now();
        if (!outcome.reachedTimeLimit && now >= deadline) {
            ::kill(-pid, SIGTERM);
            outcome.reachedTimeLimit = true;
        }
        if (outcome.reachedTimeLimit && now >= killTime) {
            ::kill(-pid, SIGKILL);
            break;
        }

        int waitMs = millisecondsUntil(outcome.reachedTimeLimit ? killTime : deadline);
        pollfd watched[2];
        nfds_t count = 0;
        if (!closed) watched[count++] = {readEnd.get(), POLLIN, 0};
        if (!exited && exitEnd.get() >= 0) watched[count++] = {exitEnd.get(), POLLIN, 0};
        if (closed && exitEnd.get() < 0) {
            // The output has ended but the child has not: look again soon, then less often.
            ::poll(nullptr, 0, std::min(waitMs, exitPollMs));
            exitPollMs = std::min(exitPollMs * 2, 50);
            continue;
        }
        int events = ::poll(watched, count, waitMs);
        if (events < 0) {
            if (errno != EINTR) {
                closed = true;
                exitEnd.reset(); // look for the exit the slow way
            }
            continue;
        }
        for (nfds_t i = 0; i < count; ++i) {
            if (watched[i].revents == 0) continue;
            if (watched[i].fd == exitEnd.get()) {
                exited = true;
                continue;
            }
            ssize_t n = ::read(readEnd.get(), buffer, sizeof buffer);
            if (n > 0) outcome.standardOutput.append(buffer, static_cast<std::size_t>(n));
            else if (n == 0 || (errno != EINTR && errno != EAGAIN)) closed = true;
        }
    }
    readEnd.reset();

    int status = 0;
    pid_t reaped = -1;
    while ((reaped = ::waitpid(pid, &status, 0)) < 0 && errno == EINTR) {}
    if (reaped == pid && WIFEXITED(status)) outcome.exitStatus = WEXITSTATUS(status);
    return outcome;
}

} // namespace lumabroom::ChildProcess
