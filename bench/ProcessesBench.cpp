// The search for the helper among 2,000 more processes, in vain, beside one bare reading of /proc: its list, and of
// each process the link to the program. Rounds of the two alternate, so that noise hits both, and the best round of
// each counts.
#include "linux/processes/LinuxProcesses.h"
#include "linux/system/FolderBundle.h"
#include "pane/RunningProcess.h"

#include <dirent.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>

using namespace platform;
using namespace linux;

namespace {

constexpr int kProcesses = 2000, kRounds = 30;

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void readBare() {
    char link[64], program[PATH_MAX];
    DIR* folder = ::opendir("/proc");
    while (const dirent* entry = ::readdir(folder)) {
        if (entry->d_name[0] < '0' || entry->d_name[0] > '9') continue;
        std::snprintf(link, sizeof link, "/proc/%.20s/exe", entry->d_name);
        if (::readlink(link, program, sizeof program) < 0) continue;
    }
    ::closedir(folder);
}

std::vector<pid_t> sleepers() {
    std::vector<pid_t> children;
    for (int i = 0; i < kProcesses; ++i) {
        pid_t child = ::fork();
        if (child == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            for (;;) ::pause();
        }
        if (child > 0) children.push_back(child);
    }
    return children;
}

}  // namespace

int main() {
    LinuxApplications applications;
    LinuxProcesses processes(applications);
    FolderBundles bundles;
    std::vector<pid_t> children = sleepers();
    double bare = 1e9, search = 1e9;
    for (int round = 0; round < kRounds; ++round) {
        bare = std::min(bare, secondsOf(readBare));
        search = std::min(search, secondsOf([&] { findRunningProcess(processes, bundles, "org.example.none"); }));
    }
    std::printf("%zu processes: reading /proc once %.2f ms, one search %.2f ms, %.2f times that\n",
                processes.runningProcesses().size(), bare * 1e3, search * 1e3, search / bare);
    for (pid_t child : children) ::kill(child, SIGKILL);
    while (::wait(nullptr) > 0) {
    }
    return EXIT_SUCCESS;
}
