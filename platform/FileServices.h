// Files and well-known folders, as far as the pane asks for them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

enum class FolderDomain { User, Local, Network, Classic, System };
enum class FolderKind { Library, ApplicationSupport, Temporary };

class FileServices {
public:
    virtual ~FileServices() = default;
    // True when anything exists at the path, links followed. A path that starts with "~" is taken as it stands.
    virtual bool fileExists(std::string_view path) = 0;
    // "~" or "~/..." with the user's home folder in place of the tilde; any other path as it is.
    virtual std::string expandTilde(std::string_view path) = 0;
    // Absolute path without a final slash, whether or not the folder exists; nothing when the domain has no such
    // folder.
    virtual std::optional<std::string> folder(FolderDomain domain, FolderKind kind) = 0;
    // The name that a person sees for the last component of the path.
    virtual std::string displayName(std::string_view path) = 0;
};

}  // namespace platform
