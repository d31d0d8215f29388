// A hold on one process, which stays the same process's when its id has been given to another.
#pragma once

#include "linux/files/FileAccess.h"
#include "platform/Processes.h"

namespace linux {

// Becomes readable when the process ends. Its error() is ESRCH when there is no such process, ENOSYS on a kernel before
// 5.3, and often EPERM in a sandbox.
Descriptor openProcess(platform::ProcessID process);
// False when the process has ended or may not be signalled.
bool signalProcess(const Descriptor& process, int signal);

}  // namespace linux
