#include "host/ChildProcess.h"

#include "host/Platform.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <set>
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
constexpr int kDefaultedSignals[] = {SIGPIPE, SIGINT,  SIGQUIT, SIGTERM, SIGHUP,  SIGCHLD,
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
    if (in < 0 || err < 0 || ::dup2(in, STDIN_FILENO) < 0 || ::dup2(outputFd, STDOUT_FILENO) < 0
        || ::dup2(err, STDERR_FILENO) < 0)
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
        if (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0) return info.si_pid == pid;
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

// The children run() has started and not ended; their groups are what stopAll() kills. Never
// destroyed: a pool thread may still be in run() while the process exits.
struct Registry {
    std::mutex mutex;
    std::set<pid_t> running;
    bool stopped = false;
};

Registry& registry() {
    static Platform::Lasting<Registry> instance;
    return *instance;
}

bool stopped() {
    Registry& r = registry();
    std::lock_guard guard(r.mutex);
    return r.stopped;
}

// Called with the leader not yet reaped, so its group ID is still ours. A child started while
// stopAll() ran is killed here.
void enrol(pid_t pid) {
    Registry& r = registry();
    std::lock_guard guard(r.mutex);
    r.running.insert(pid);
    if (r.stopped) ::kill(-pid, SIGKILL);
}

void release(pid_t pid) {
    Registry& r = registry();
    std::lock_guard guard(r.mutex);
    r.running.erase(pid);
}

// Whether any process is left in the group. Asked after the leader was reaped: a group ID is not
// handed out again while the group has a member, so a yes means our own.
bool groupHasMembers(pid_t pgid) { return ::kill(-pgid, 0) == 0 || errno == EPERM; }

// Waits until the group is empty or `until` passes; true if it emptied.
bool groupEmptiesBy(pid_t pgid, Clock::time_point until) {
    while (groupHasMembers(pgid)) {
        if (Clock::now() >= until) return false;
        ::poll(nullptr, 0, 5);
    }
    return true;
}

// What the leader left in its group may finish until `graceEnd`, is asked to terminate, and is
// killed one more grace later. Usually the group is empty and this costs one system call.
void endGroup(pid_t pgid, Clock::time_point graceEnd, Clock::duration grace) {
    if (groupEmptiesBy(pgid, graceEnd)) return;
    ::kill(-pgid, SIGTERM);
    if (groupEmptiesBy(pgid, Clock::now() + grace)) return;
    ::kill(-pgid, SIGKILL);
}
// One child while run() waits for its output, its exit and its limits.
struct Watch {
    pid_t pid;
    int readFd;
    FileDescriptor& exitEnd;
    std::size_t maxOutputBytes;
    Clock::time_point deadline;
    Clock::time_point killTime;
    Clock::duration groupGrace;
    Outcome outcome{};
    bool closed = false, exited = false, killed = false;
    Clock::time_point lingerEnd = Clock::time_point::max();
    int exitPollMs = 1;

    // Signals the group as the limits say; true when there is nothing more to wait for.
    bool done() {
        if (killed) return true;
        if (!exited && exitEnd.get() < 0) exited = hasExited(pid);
        const auto now = Clock::now();
        if (exited && lingerEnd == Clock::time_point::max()) lingerEnd = now + groupGrace;
        if (closed && exited) return true;
        // What the leader wrote is in the pipe already; a descendant holding it open does not
        // make the leader's result wait.
        if (exited) return now >= lingerEnd;
        if (!outcome.reachedTimeLimit && now >= deadline) {
            ::kill(-pid, SIGTERM);
            outcome.reachedTimeLimit = true;
        }
        if (outcome.reachedTimeLimit && now >= killTime) {
            ::kill(-pid, SIGKILL);
            killed = true;
        }
        return killed;
    }

    // Waits for output, the exit or the next limit, and takes what came.
    void waitOnce() {
        int waitMs = millisecondsUntil(exited ? lingerEnd : outcome.reachedTimeLimit ? killTime : deadline);
        pollfd watched[2];
        nfds_t count = 0;
        if (!closed) watched[count++] = {readFd, POLLIN, 0};
        if (!exited && exitEnd.get() >= 0) watched[count++] = {exitEnd.get(), POLLIN, 0};
        if (!exited && exitEnd.get() < 0) {
            // No exit descriptor: look again soon, then less often.
            waitMs = std::min(waitMs, exitPollMs);
            exitPollMs = std::min(exitPollMs * 2, 50);
        }
        int events = ::poll(count ? watched : nullptr, count, waitMs);
        if (events < 0) {
            if (errno != EINTR) {
                closed = true;
                exitEnd.reset(); // look for the exit the slow way
            }
            return;
        }
        for (nfds_t i = 0; i < count; ++i) {
            if (watched[i].revents == 0) continue;
            if (watched[i].fd == exitEnd.get()) exited = true;
            else read();
        }
        if (outcome.outputOverflowed) {
            ::kill(-pid, SIGKILL);
            killed = true;
        }
    }

    void read() {
        char buffer[64 * 1024];
        ssize_t n = ::read(readFd, buffer, sizeof buffer);
        if (n > 0) {
            const std::size_t room = maxOutputBytes - outcome.standardOutput.size();
            outcome.standardOutput.append(buffer, std::min(room, static_cast<std::size_t>(n)));
            if (static_cast<std::size_t>(n) > room) outcome.outputOverflowed = true;
        } else if (n == 0 || (errno != EINTR && errno != EAGAIN)) {
            closed = true;
        }
    }
};
} // namespace

std::optional<Outcome> run(const std::string& executable, const std::vector<std::string>& arguments,
                           const Limits& limits) {
    if (stopped()) return std::nullopt;
    FileDescriptor readEnd, writeEnd;
    if (!makePipe(readEnd, writeEnd)) return std::nullopt;
    const Clock::time_point deadline = Clock::now() + durationOf(limits.timeoutSeconds);
    const Clock::time_point killTime = deadline + durationOf(limits.killGraceSeconds);
    const Clock::duration groupGrace = durationOf(limits.groupGraceSeconds);

    pid_t pid = spawn(executable, arguments, writeEnd.get());
    writeEnd.reset();
    if (pid < 0) return std::nullopt;
    enrol(pid);

    FileDescriptor exitEnd(exitDescriptor(pid));
    Watch watch{pid, readEnd.get(), exitEnd, limits.maxOutputBytes, deadline, killTime, groupGrace};
    while (!watch.done()) watch.waitOnce();
    readEnd.reset();

    int status = 0;
    pid_t reaped = -1;
    while ((reaped = ::waitpid(pid, &status, 0)) < 0 && errno == EINTR) {}
    if (reaped == pid && WIFEXITED(status)) watch.outcome.exitStatus = WEXITSTATUS(status);
    if (!watch.killed) endGroup(pid, watch.lingerEnd, groupGrace);
    release(pid);
    return std::move(watch.outcome);
}

void stopAll() {
    Registry& r = registry();
    std::lock_guard guard(r.mutex);
    r.stopped = true;
    for (pid_t pid : r.running) ::kill(-pid, SIGKILL);
}

} // namespace lumabroom::ChildProcess
