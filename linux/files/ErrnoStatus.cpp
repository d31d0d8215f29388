#include "linux/files/ErrnoStatus.h"

#include <cerrno>

namespace linux {

using namespace platform;

OSStatus statusOfErrno(int error) {
    switch (error) {
        case 0:
            return kNoErr;
        case ENOENT:
            return kFileNotFound;
        case ENOTDIR:
            return kNotAFolder;
        case EEXIST:
            return kDuplicateFile;
        case EFBIG:
            return kFileTooLarge;
        case ENAMETOOLONG:
            return kBadName;
        case EACCES:
        case EPERM:
        case EROFS:
            return kPermissionErr;
        default:
            return kIOErr;
    }
}

}  // namespace linux
