// Starting programs, and the lock files under which they are started.
#pragma once

#include "platform/PlatformTypes.h"

#include <memory>
#include <string_view>

namespace platform {

// A file that this object created. It stays when the object goes.
class CreatedFile {
public:
    virtual ~CreatedFile() = default;
    // Deletes it. kFileNotFound when it is gone or another file has taken its place, which is left alone.
    virtual OSStatus remove() = 0;
};

class Launcher {
public:
    virtual ~Launcher() = default;
    // kNoErr when the folder is there or was created; those above it must exist.
    virtual OSStatus makeFolder(std::string_view path) = 0;
    // An empty file, readable by its owner only. Of any number of processes that try at once one succeeds. Null, and
    // the reason in `status`, when anything at all exists at the path, be it a link that leads nowhere
    // (kDuplicateFile), or when it cannot be created.
    virtual std::unique_ptr<CreatedFile> createFile(std::string_view path, OSStatus& status) = 0;
    // Starts the program of an application bundle with one argument, in the background and in a session of its own; it
    // is never a child of this process. No shell is involved. kFileNotFound when the bundle or its program is missing.
    virtual OSStatus launchApplication(std::string_view bundlePath, std::string_view argument) = 0;
};

}  // namespace platform
