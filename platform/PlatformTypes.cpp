#include "platform/PlatformTypes.h"

#include <algorithm>
#include <iterator>

namespace platform {
namespace {

struct StatusName {
    OSStatus status;
    std::string_view text;
};
constexpr StatusName kStatusNames[] = {
    {kNoErr, "No error"},
    {kIOErr, "I/O error"},
    {kBadName, "Not a name that a file can have"},
    {kFileNotFound, "File not found"},
    {kDuplicateFile, "A file of this name exists already"},
    {kParamErr, "Bad parameter"},
    {kPermissionErr, "Permission denied"},
    {kNotAFolder, "Not a folder"},
};

}  // namespace

std::string_view statusText(OSStatus status) {
    auto found = std::ranges::find(kStatusNames, status, &StatusName::status);
    return found == std::end(kStatusNames) ? "Unknown error" : found->text;
}

}  // namespace platform
