#pragma once

#include <functional>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace lumabroom::test {

struct ProcessResult {
    int status = -1; // exit status, or -1 if it did not exit normally
    std::string out;
    std::string err;
};

// Runs a program with exactly the given environment (nothing inherited), standard input from the
// null device, and collects both outputs. `argv[0]` is the program's path; it is not looked up.
ProcessResult runProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& env);

// Runs `body` with the rights of an ordinary user and gives back its result. As root, folders of
// mode 000 can still be read, so there the body runs in a child process as "nobody"; the tree it
// reads must be open to others. Gives -1 if that child fails.
long long asUnprivileged(const std::function<long long()>& body);

// Whether the process ends within two seconds (signals travel asynchronously). A zombie counts
// as gone: whoever inherited it may not reap it at once.
bool goneSoon(pid_t pid);

} // namespace lumabroom::test
