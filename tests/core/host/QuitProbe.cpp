// A program for QuitTest: it puts four seconds of work on the pool, waits until that work runs, and
// ends. "tool": the work is an outside tool that records its process ID in argv[3], and the program
// ends through the host's quit. "pool": the work is a plain wait, and main returns.

#include "clean/CommandRunner.h"
#include "concurrency/WorkerPool.h"
#include "host/Platform.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

using namespace lumabroom;

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    std::atomic<bool> started{false};
    if (mode == "tool" && argc == 4) {
        const std::string tool = argv[2], pidFile = argv[3];
        WorkerPool::submit([tool, pidFile] { CommandRunner::run(tool, {pidFile}, 30); });
        while (!std::filesystem::exists(pidFile)) std::this_thread::sleep_for(std::chrono::milliseconds(5));
        Platform::quitNow(0);
    }
    if (mode != "pool") return 2;
    WorkerPool::submit([&started] {
        started = true;
        std::this_thread::sleep_for(std::chrono::seconds(4));
    });
    while (!started) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return 0;
}
