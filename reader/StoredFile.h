// A preference domain's file as programs read it: without its lock, without waiting, and never written.
#pragma once

#include "linux/files/FileIdentity.h"
#include "platform/PlatformTypes.h"

#include <cstddef>
#include <string>

namespace reader {

inline constexpr std::size_t kLargestSettings = std::size_t{16} << 20, kLargestCatalogue = std::size_t{128} << 20;

// Of a status of the C interface: in English, within a sentence.
const char* statusText(int status);

class StoredFile {
public:
    // A larger file is not read.
    StoredFile(std::string path, std::size_t largest) : path_(std::move(path)), largest_(largest) {}

    // Reads the file if it may be another one than last time. A status of the C interface. The values stay what they
    // were where the file is there and cannot be read; they are an empty domain where there is none.
    int refresh();
    const platform::PropertyList& values() const { return values_; }  // a dictionary, or nothing
    const std::string& path() const { return path_; }

private:
    int read();

    std::string path_;
    std::size_t largest_;
    platform::PropertyList values_;
    linux::FileIdentity identity_;
    bool isSettled_ = false;  // false: a later change may bear the same time
    int status_ = 0;
};

}  // namespace reader
