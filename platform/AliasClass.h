// What the private framework "CorvaneAdditions" provides: alias records, which know an application by its file.
//
// The framework's code exports the C function kAliasFactoryName of type AliasClassFactory. The class object that it
// returns lives as long as the process.
#pragma once

#include "platform/PlatformTypes.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

struct Platform;

// Identifies a file across renames: device and inode number.
struct FileReference {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool operator==(const FileReference&) const = default;
};

class Alias {
public:
    virtual ~Alias() = default;
    virtual std::string path() const = 0;
    virtual std::string displayName() const = 0;
    virtual std::optional<std::string> bundleIdentifier() const = 0;  // nothing when the file has none
    virtual std::optional<FileReference> fileReference() const = 0;   // nothing when there is no such file
};

class AliasClass {
public:
    virtual ~AliasClass() = default;
    // Never null; the file need not exist.
    virtual std::unique_ptr<Alias> aliasWithPath(std::string_view path) = 0;
    // The text of an alert for a status and the caller's message.
    virtual std::string errorText(OSStatus status, std::string_view message) = 0;
};

inline constexpr const char* kAliasFactoryName = "CVAlias";
using AliasClassFactory = AliasClass* (*)(const Platform&);

}  // namespace platform
