// Bundles as folders on the disk, and the bundles whose code this process has loaded.
#pragma once

#include "platform/Bundle.h"

#include <vector>

namespace linux {

class FolderBundle final : public platform::Bundle {
public:
    // Null unless <path>/Contents/Info.plist holds a dictionary. A relative path is taken from the working folder.
    static std::unique_ptr<FolderBundle> open(std::string_view path);

    std::string path() const override { return path_; }
    std::string identifier() const override;
    platform::PropertyList infoValue(std::string_view key) const override { return info_[key]; }
    std::optional<std::string> resourcePath(std::string_view name, std::string_view type) const override;
    std::string localizedString(std::string_view key) const override;
    std::string privateFrameworksPath() const override { return path_ + "/Contents/PrivateFrameworks"; }
    void* functionNamed(const char* name) override;

private:
    FolderBundle(std::string path, platform::PropertyList info) : path_(std::move(path)), info_(std::move(info)) {}

    std::string path_;
    platform::PropertyList info_;
    mutable platform::PropertyList strings_;  // Localizable.strings; nothing until first asked for
    void* code_ = nullptr;
};

// A bare shared library that stands for a bundle: it has an identifier and functions, and nothing else.
class LibraryBundle final : public platform::Bundle {
public:
    // Null when the library cannot be loaded.
    static std::unique_ptr<LibraryBundle> load(const std::string& library, std::string_view identifier);

    std::string path() const override { return library_; }
    std::string identifier() const override { return identifier_; }
    platform::PropertyList infoValue(std::string_view) const override { return {}; }
    std::optional<std::string> resourcePath(std::string_view, std::string_view) const override { return {}; }
    std::string localizedString(std::string_view key) const override { return std::string(key); }
    std::string privateFrameworksPath() const override { return {}; }
    void* functionNamed(const char* name) override;

private:
    LibraryBundle(std::string library, std::string_view identifier, void* code)
        : library_(std::move(library)), identifier_(identifier), code_(code) {}
    std::string library_, identifier_;
    void* code_;
};

class FolderBundles final : public platform::BundleServices {
public:
    std::unique_ptr<platform::Bundle> openBundle(std::string_view path) override { return FolderBundle::open(path); }
    platform::Bundle* loadedBundle(std::string_view identifier) override;
    // The bundle counts as loaded from now on. Null is ignored.
    void addLoaded(std::unique_ptr<platform::Bundle> bundle);

private:
    std::vector<std::unique_ptr<platform::Bundle>> loaded_;
};

// The user's languages, the most wanted first, as .lproj folders name them ("de_AT", "de"); English comes last. Read
// from LANGUAGE, else LC_ALL, LC_MESSAGES or LANG.
std::vector<std::string> preferredLanguages();

}  // namespace linux
