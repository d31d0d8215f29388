// The steps by which a file of the user's is put on the disk whole: folder, temporary file, flush, name. What a folder
// or file belongs to, and what it is called meanwhile, is the caller's business.
//
// All of them work through a FileAccess, never throw for what the system refuses.
#pragma once

#include "linux/files/Failure.h"
#include "linux/files/FileAccess.h"

#include <string>
#include <string_view>

namespace linux {

// Puts the file itself, which need not exist, in the place of a link to it. Fails with ELOOP behind 40 links.
Failure resolveLinks(FileAccess& files, std::string& path);

// Opens the folder for reading. With `make` a missing one is made first, with all folders above it: mode 0700, each
// given to the owner of the one around it when root makes it, its name flushed. A folder made half-way is removed
// again. On failure `folder` holds no descriptor; a missing folder that is not to be made fails with ENOENT.
Failure openFolder(FileAccess& files, const std::string& path, bool make, Descriptor& folder);

// What root makes in a user's folder is to be the user's: takes owner and group from the folder. Does nothing for other
// users, for a file that has the folder's owner, and for one that has further names, perhaps in places of others.
void giveToOwnerOf(FileAccess& files, int folder, int file);

// A new file that is to take the place of the one at the path gets its mode and, as far as this process may, its owner;
// where there is none yet, the owner that giveToOwnerOf() gives.
Failure takeOverOwnerAndMode(FileAccess& files, int folder, const std::string& path, int file);

// An empty file for reading and writing, in place of whatever lies there under the name. Two writers of one name must
// keep each other out, as what lies there counts as left behind by a writer that was killed.
Failure makeTemporary(FileAccess& files, int folder, const std::string& name, mode_t mode, Descriptor& file);

// Every byte is handed to the system, or a failure tells why not. A file that takes no more bytes fails with ENOSPC.
Failure writeAll(FileAccess& files, int file, std::string_view bytes);
// The same, and every byte is on the disk afterwards.
Failure writeAndFlush(FileAccess& files, int file, std::string_view bytes);

// 0, or the negative error number: -EEXIST when anything is called `to`. Where the file system cannot do it in one step
// the file has both names for a moment.
int renameUnlessTaken(FileAccess& files, int folder, const char* from, const char* to);

}  // namespace linux
