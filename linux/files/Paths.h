// Paths as text, and the folders that the environment names.
//
// The environment is read at every call, so that a test can move the folders. Folders have no final slash and need not
// exist.
#pragma once

#include <string>
#include <string_view>

namespace linux {

// False for what names nothing: an empty path, or one with U+0000 in it.
bool isUsablePath(std::string_view path);
std::string withoutFinalSlashes(std::string path);  // "/" stays
// The two parts of a path: "." and "/" where there is no folder before the name.
std::string_view folderOf(std::string_view path);
std::string_view nameOf(std::string_view path);
std::string joined(std::string_view folder, std::string_view rest);

// The value of a variable when it is an absolute path; else empty, as the base-directory rules of freedesktop.org have
// it for their own.
std::string absolutePathIn(const char* variable);

std::string homeFolder();           // HOME, else the user database's, else "/"
std::string configurationFolder();  // XDG_CONFIG_HOME, else ~/.config
std::string userDataFolder();       // XDG_DATA_HOME, else ~/.local/share
// XDG_RUNTIME_DIR when it is a folder; else empty.
std::string runtimeFolder();

// TYPESLATE_ROOT in front of an absolute path, unless that lies below the home folder or the root already.
std::string belowTestRoot(const std::string& path);
std::string testRoot();  // TYPESLATE_ROOT itself; empty without one

}  // namespace linux
