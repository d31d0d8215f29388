// A hold on one process, which stays the same process's when its id has been given to another.
#pragma once

#include "platform/Processes.h"
#include "platform/linux/FileAccess.h"

namespace platform::posix {

// Becomes readable when the process ends. Its error() is ESRCH when there is no such process, ENOSYS on a kernel before
// 5.3, and often EPERM in a sandbox.
Descriptor openProcess(ProcessID process);
// False when the process has ended or may not be signalled.
bool signalProcess(const Descriptor& process, int signal);

}  // namespace platform::posix
