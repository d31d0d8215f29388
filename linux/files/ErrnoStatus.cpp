#include "linux/files/ErrnoStatus.h"

#include <cerrno>

namespace linux {

using namespace platform;

OSStatus statusOfErrno(int error) {
    switch (error) {
        case 0:
            return kNoErr;
        case ENOENT:
        case ENOTDIR:
            return kFileNotFound;
        case EACCES:
        case EPERM:
            return kPermissionErr;
        default:
            return kIOErr;
    }
}

}  // namespace linux
