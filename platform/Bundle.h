// A bundle: a folder Contents/ with Info.plist, code in Linux/, resources in Resources/ and private frameworks in
// PrivateFrameworks/. The pane itself, frameworks, modules, helper and updater applications have this form.
#pragma once

#include "platform/PlatformTypes.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

class Bundle {
public:
    virtual ~Bundle() = default;
    virtual std::string path() const = 0;        // absolute, without a final slash
    virtual std::string identifier() const = 0;  // "CFBundleIdentifier", or empty
    // A value of Info.plist; nothing when it is missing. Strings are those of the file, not localised.
    virtual PropertyList infoValue(std::string_view key) const = 0;
    // Full path of a file or folder "name.type" in the resources, a localised one of the user's languages first;
    // nothing when there is none. An empty type asks for the name as it stands. Names with a slash are never found.
    virtual std::optional<std::string> resourcePath(std::string_view name, std::string_view type) const = 0;
    // The text under the key in Localizable.strings in the user's language, else the key itself.
    virtual std::string localizedString(std::string_view key) const = 0;
    virtual std::string privateFrameworksPath() const = 0;
    // The address of an exported C function of the bundle's code, which is loaded at the first call; null when the code
    // or the function is missing. Loaded code is never unloaded.
    virtual void* functionNamed(const char* name) = 0;
};

class BundleServices {
public:
    virtual ~BundleServices() = default;
    // Null unless the folder holds a readable Info.plist.
    virtual std::unique_ptr<Bundle> openBundle(std::string_view path) = 0;
    // A bundle whose code this process has loaded; null when there is none. Lives as long as the process.
    virtual Bundle* loadedBundle(std::string_view identifier) = 0;
};

}  // namespace platform
