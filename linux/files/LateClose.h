// Closing a file that nobody needs any more without waiting for the kernel to free what it held.
#pragma once

#include "linux/files/FileAccess.h"

#include <cstdint>

namespace linux {

// To be called with the last descriptor of a file that has no name any more and holds that many bytes: the kernel frees
// its pages and blocks within close(2), which takes as long as a flush for some hundred kilobytes. A thread of its own
// does so for a large file, one at a time in a process; a small file, or one that comes meanwhile, is closed here.
//
// Not before a flush: the kernel's journal would have to wait for it. The thread is waited for by nobody: it has the
// descriptor's number and nothing else, which a process that ends closes itself. A child forked meanwhile keeps a copy
// until it runs a program or ends, and closes all its own files itself.
void closeLater(Descriptor file, std::int64_t size) noexcept;

}  // namespace linux
