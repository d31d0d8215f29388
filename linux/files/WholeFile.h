// Reading a file whole or not at all.
#pragma once

#include "linux/files/Failure.h"
#include "linux/files/FileAccess.h"
#include "linux/files/FileIdentity.h"

#include <cstddef>
#include <string>

namespace linux {

// Opens a file to read it, links followed, without ever waiting for the other end of a FIFO or for a device. A relative
// path starts at the folder, a descriptor or AT_FDCWD.
Descriptor openForReading(FileAccess& files, int folder, const char* path);

// All of an open regular file, from where it stands, in place of what `bytes` held; and what the file was before it was
// read. EISDIR for a folder, EFBIG when there are more than `limit` bytes, ENOMEM when they find no room.
Failure readWhole(FileAccess& files, const Descriptor& file, std::size_t limit, std::string& bytes,
                  FileIdentity& identity);

// Both in one, for files that a person may have written: a description, a desktop entry.
inline constexpr std::size_t kLargestDescription = std::size_t{1} << 20;  // bytes
Failure readDescription(FileAccess& files, int folder, const char* path, std::string& bytes);

}  // namespace linux
