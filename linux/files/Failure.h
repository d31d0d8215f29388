// Why something did not happen to a file.
#pragma once

#include <string>

namespace linux {

// Converts to true when there is a failure; a default-constructed one is success. Below this layer's edge it travels as
// it is; an interface that promises an OSStatus translates it there (ErrnoStatus.h), a program into a sentence.
struct [[nodiscard]] Failure {
    const char* step = nullptr;  // what was tried, as a verb and its object: "open lock file"; never freed
    int error = 0;               // errno value, or 0 when only `reason` tells
    std::string reason = {};     // English; more than the error number says, or all where none fits
    std::string path = {};       // of the file that it is about; empty where whoever called knows it
    std::string holder = {};     // of a lock that another program has: that program; empty when it cannot be seen
    int holderProcess = 0;       // and its number; 0 when it cannot be seen

    explicit operator bool() const { return step != nullptr; }
    bool operator==(const Failure&) const = default;
    // "open lock file: Permission denied", for logs; empty for success.
    std::string text() const;
};

}  // namespace linux
