#include "linux/processes/DetachedProcess.h"

#include "linux/files/ErrnoStatus.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace linux {

using namespace platform;

namespace {

// What this process ignores or blocks is none of the program's business.
void resetSignals() {
    for (int number = 1; number < NSIG; ++number) std::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// In the process that becomes the program. Tells the pipe why when that fails; success closes it. Only calls that are
// safe in a signal handler: this process may have other threads, and the locks that they held stay locked in the copy.
[[noreturn]] void becomeProgram(char* const* arguments, int reply) {
    resetSignals();
    if (int nothing = open("/dev/null", O_RDWR); nothing >= 0)
        for (int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, stream);
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    // The search on PATH would hand a file that is no program to a shell.
    if (std::strchr(arguments[0], '/'))
        execv(arguments[0], arguments);
    else
        execvp(arguments[0], arguments);
    int error = errno;
    [[maybe_unused]] ssize_t written = write(reply, &error, sizeof error);
    _exit(127);
}

// The program is the child of a child that ends at once, so that init collects it and nobody here has to.
[[noreturn]] void startAndLeave(char* const* arguments, int reply) {
    setsid();
    pid_t program = fork();
    if (program == 0) becomeProgram(arguments, reply);
    if (program < 0) {
        int error = errno;
        [[maybe_unused]] ssize_t written = write(reply, &error, sizeof error);
    }
    _exit(0);
}

int readError(int reply) {
    int error = 0;
    ssize_t count = 0;
    do count = read(reply, &error, sizeof error);
    while (count < 0 && errno == EINTR);
    return count == sizeof error ? error : 0;
}

void collect(pid_t child) {
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace

OSStatus startDetached(const std::vector<std::string>& words) {
    if (words.empty() || words[0].empty()) return kParamErr;
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);

    int reply[2];
    if (pipe2(reply, O_CLOEXEC) != 0) return kIOErr;
    pid_t child = fork();
    if (child == 0) startAndLeave(arguments.data(), reply[1]);
    close(reply[1]);
    int error = child < 0 ? errno : readError(reply[0]);
    close(reply[0]);
    if (child > 0) collect(child);
    return statusOfErrno(error);
}

}  // namespace linux
