#include "linux/processes/ProcessHandle.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace linux {

using namespace platform;

Descriptor openProcess(ProcessID process) {
    long number = ::syscall(SYS_pidfd_open, static_cast<pid_t>(process), 0);
    return {FileAccess::system(), number < 0 ? -errno : static_cast<int>(number)};
}

bool signalProcess(const Descriptor& process, int signal) {
    return ::syscall(SYS_pidfd_send_signal, process.number(), signal, nullptr, 0) == 0;
}

}  // namespace linux
