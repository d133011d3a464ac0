#include "support/Process.h"

#include "support/TempTree.h"

#include <QProcess>

#include <chrono>
#include <csignal>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace lumabroom::test {

ProcessResult runProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& env) {
    QProcessEnvironment environment;
    for (const auto& [name, value] : env)
        environment.insert(QString::fromStdString(name), QString::fromStdString(value));
    QStringList arguments;
    for (auto it = argv.begin() + 1; it != argv.end(); ++it) arguments << QString::fromStdString(*it);
    QProcess child;
    child.setProcessEnvironment(environment);
    child.setStandardInputFile(QProcess::nullDevice());
    child.start(QString::fromStdString(argv.front()), arguments);
    ProcessResult result;
    if (!child.waitForFinished(-1)) return result;
    result.out = child.readAllStandardOutput().toStdString();
    result.err = child.readAllStandardError().toStdString();
    if (child.exitStatus() == QProcess::NormalExit) result.status = child.exitCode();
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
