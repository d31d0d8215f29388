// Reading and writing a file whole or not at all.
#pragma once

#include "linux/files/Failure.h"
#include "linux/files/FileAccess.h"
#include "linux/files/FileIdentity.h"

#include <cstddef>
#include <string>
#include <string_view>

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

// The bytes in place of all that the file holds, links followed; a failure leaves a file what it was. They are on the
// disk afterwards. A file that is there must be writable, and keeps its mode and, as far as this process may, its
// owner, while its other names keep what it held; a new one has the given mode without the umask. Meanwhile a hidden
// file of this process's lies in the folder. What is no regular file, such as a FIFO or a device, is written into
// instead, and may have to be waited for.
Failure writeWhole(FileAccess& files, std::string path, std::string_view bytes, mode_t newFileMode = 0666);

}  // namespace linux
