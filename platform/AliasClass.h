// What the private framework "CorvaneAdditions" provides: alias records, which know an application by its file.
//
// The framework's code exports the C function kAliasFactoryName, the class's name, of type AliasClassFactory. The class
// object that it returns asks that platform's applications, which must be there when it is used, and lives as long as
// the process.
#pragma once

#include "platform/PlatformTypes.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

struct Platform;

// Names a file: where it was found, and its device and inode number, by which it is the same file after a rename.
struct FSRef {
    std::string path;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
};

class CVAlias {
public:
    virtual ~CVAlias() = default;
    virtual std::string path() const = 0;
    virtual std::string displayName() const = 0;                      // the name that a person sees
    virtual std::optional<std::string> bundleIdentifier() const = 0;  // nothing when the file has none
    virtual std::optional<FSRef> getFSRef() const = 0;                // nothing when there is no such file
};

class AliasClass {
public:
    virtual ~AliasClass() = default;
    // Never null; the file need not exist.
    virtual std::unique_ptr<CVAlias> aliasWithPath(std::string_view path) = 0;
    virtual std::unique_ptr<CVAlias> aliasWithFSRef(const FSRef& reference) = 0;
    // The text of an alert for a status and the caller's message.
    virtual std::string _getErrorText_text(OSStatus status, std::string_view message) = 0;
};

inline constexpr const char* kAliasFactoryName = "CVAlias";
using AliasClassFactory = AliasClass* (*)(const Platform&);

}  // namespace platform
