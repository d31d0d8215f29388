#include "reader/StoredFile.h"

#include "linux/files/WholeFile.h"
#include "platform/Localizable.h"
#include "propertylist/Codec.h"
#include "reader/typeslate.h"

#include <array>
#include <cerrno>
#include <iterator>

namespace reader {

using namespace linux;
using platform::PropertyList;

namespace {

constexpr std::array kStatusTexts{
    "all is well",
    "nothing is stored yet",
    platform::localizable("the file cannot be read"),
    platform::localizable("the file is damaged"),
    platform::localizable("the file is too large"),
    platform::localizable("there is no memory"),
    "an argument makes no sense",
};

constexpr std::int64_t kTick = 20'000'000;  // nanoseconds, of a file system's clock
constexpr int kTries = 3;                   // of reading a file while somebody writes into it

int statusOf(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return TYPESLATE_ABSENT;
        case EFBIG:
            return TYPESLATE_TOO_LARGE;
        case ENOMEM:
            return TYPESLATE_NO_MEMORY;
        default:
            return TYPESLATE_UNREADABLE;
    }
}

}  // namespace

const char* statusText(int status) {
    bool isKnown = status >= 0 && status < std::ssize(kStatusTexts);
    return kStatusTexts[static_cast<std::size_t>(isKnown ? status : TYPESLATE_BAD_ARGUMENT)];
}

int StoredFile::refresh() {
    if (isSettled_ && FileIdentity::of(AT_FDCWD, path_.c_str()) == identity_) return status_;
    status_ = read();
    if (status_ == TYPESLATE_ABSENT) values_ = {};
    return status_;
}

// A file that is replaced is read whole whenever that happens; one that is written in place can be met half-way.
int StoredFile::read() {
    auto bytes = std::make_shared<std::string>();
    for (int tries = 0; tries < kTries; ++tries) {
        FileAccess& files = FileAccess::system();
        Descriptor file = openForReading(files, AT_FDCWD, path_.c_str());
        identity_ = {};
        isSettled_ = !file && file.error() == ENOENT;
        if (!file) return statusOf(file.error());
        if (Failure failure = readWhole(files, file, largest_, *bytes, identity_)) return statusOf(failure.error);
        struct stat status;
        if (files.statDescriptor(file.number(), status) == 0 && FileIdentity(status) == identity_) break;
    }
    isSettled_ = identity_.changed + kTick < fileClock();
    PropertyList values = propertylist::decodePropertyList(bytes);
    if (!values.isDictionary()) return TYPESLATE_DAMAGED;
    values_ = std::move(values);
    return TYPESLATE_OK;
}

}  // namespace reader
