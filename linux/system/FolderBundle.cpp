#include "linux/system/FolderBundle.h"

#include "linux/files/LinuxFiles.h"
#include "linux/texts/Locale.h"
#include "propertylist/Codec.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>

namespace linux {

using namespace platform;
using namespace propertylist;

namespace {

PropertyList readDictionary(const std::string& path) {
    std::shared_ptr<const std::string> bytes = LinuxFiles().readFile(path);
    PropertyList value = bytes ? decodePropertyList(std::move(bytes)) : PropertyList();
    return value.isDictionary() ? value : PropertyList();
}

std::string absolutePath(std::string_view path) {
    std::error_code error;
    std::string absolute = std::filesystem::absolute(path, error).lexically_normal().string();
    while (absolute.size() > 1 && absolute.ends_with('/')) absolute.pop_back();
    return absolute;
}

// One locale name, without its encoding, and its bare language: "de_AT.UTF-8" gives "de_AT" and "de".
void addLanguage(std::vector<std::string>& languages, std::string_view locale) {
    std::string_view name = locale.substr(0, locale.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX" || name.find('/') != std::string_view::npos) return;
    languages.emplace_back(name);
    std::string_view language = name.substr(0, name.find('_'));
    if (language != name) languages.emplace_back(language);
}

void* exportedFunction(void* code, const char* name) { return code ? dlsym(code, name) : nullptr; }

}  // namespace

std::vector<std::string> preferredLanguages() {
    std::vector<std::string> languages;
    std::string_view locale = localeOf("LC_MESSAGES");
    const char* wish = std::getenv("LANGUAGE");
    std::string_view list = wish ? wish : "";
    // LANGUAGE has no say in the C locale.
    if (list.empty() || locale == "C" || locale == "POSIX") list = locale;
    while (!list.empty()) {
        std::string_view name = list.substr(0, list.find(':'));
        addLanguage(languages, name);
        list.remove_prefix(std::min(name.size() + 1, list.size()));
    }
    languages.emplace_back("en");
    return languages;
}

std::unique_ptr<FolderBundle> FolderBundle::open(std::string_view path) {
    std::string folder = absolutePath(path);
    PropertyList info = readDictionary(folder + "/Contents/Info.plist");
    if (!info) return nullptr;
    return std::unique_ptr<FolderBundle>(new FolderBundle(std::move(folder), std::move(info)));
}

std::string FolderBundle::identifier() const { return std::string(info_["CFBundleIdentifier"].stringValue()); }

std::optional<std::string> FolderBundle::resourcePath(std::string_view name, std::string_view type) const {
    std::string file(name);
    if (!type.empty()) file.append(".").append(type);
    if (file.empty() || file.find('/') != std::string::npos || file == "." || file == "..") return std::nullopt;
    std::string resources = path_ + "/Contents/Resources/";
    LinuxFiles files;
    for (const std::string& language : preferredLanguages()) {
        std::string path = resources + language + ".lproj/" + file;
        if (files.fileExists(path)) return path;
    }
    if (files.fileExists(resources + file)) return resources + file;
    return std::nullopt;
}

std::string FolderBundle::localizedString(std::string_view key) const {
    if (!strings_) {
        auto path = resourcePath("Localizable", "strings");
        strings_ = path ? readDictionary(*path) : PropertyList();
        if (!strings_) strings_ = PropertyList::dictionary({});
    }
    const PropertyList& text = strings_[key];
    return std::string(text.isString() ? text.stringValue() : key);
}

void* FolderBundle::functionNamed(const char* name) {
    std::string_view executable = info_["CFBundleExecutable"].stringValue();
    if (executable.empty() || executable.find('/') != std::string_view::npos) return nullptr;
    std::string path = path_ + "/Contents/Linux/" + std::string(executable);
    if (!code_) code_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    return exportedFunction(code_, name);
}

std::unique_ptr<LibraryBundle> LibraryBundle::load(const std::string& library, std::string_view identifier) {
    void* code = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!code) return nullptr;
    return std::unique_ptr<LibraryBundle>(new LibraryBundle(library, identifier, code));
}

void* LibraryBundle::functionNamed(const char* name) { return exportedFunction(code_, name); }

Bundle* FolderBundles::loadedBundle(std::string_view identifier) {
    for (const std::unique_ptr<Bundle>& bundle : loaded_)
        if (bundle->identifier() == identifier) return bundle.get();
    return nullptr;
}

void FolderBundles::addLoaded(std::unique_ptr<Bundle> bundle) {
    if (bundle) loaded_.push_back(std::move(bundle));
}

}  // namespace linux
