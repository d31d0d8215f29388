#include "linux/applications/ApplicationRecord.h"

#include "linux/applications/DesktopEntry.h"
#include "linux/applications/Programs.h"
#include "linux/files/Paths.h"
#include "linux/files/WholeFile.h"
#include "linux/texts/DisplayText.h"
#include "propertylist/Codec.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace linux {

using namespace platform;
using namespace propertylist;

namespace {

std::string_view lastComponent(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return path.size() > 1 ? path.substr(path.rfind('/') + 1) : path;
}

std::string_view without(std::string_view suffix, std::string_view name) {
    if (name.size() > suffix.size() && name.ends_with(suffix)) name.remove_suffix(suffix.size());
    return name;
}

bool isFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find_first_of(std::string_view("/\0", 2)) == name.npos;
}

std::string bundleIcon(const std::string& bundle, std::string_view name) {
    if (!isFileName(name)) return {};
    for (std::string_view extension : {"", ".png", ".svg", ".icns"}) {
        std::string path = (bundle + "/Contents/Resources/").append(name).append(extension);
        if (::access(path.c_str(), R_OK) == 0) return path;
    }
    return {};
}

FourCharCode creatorCode(std::string_view signature) {
    if (signature.size() != 4) return kUnknownCreator;
    FourCharCode code = 0;
    for (char c : signature) code = code << 8 | static_cast<unsigned char>(c);
    return code;
}

std::string bundleName(const PropertyList& information, std::string_view path) {
    for (const char* key : {"CFBundleDisplayName", "CFBundleName"})
        if (std::string name = displayText(information[key].stringValue()); !name.empty()) return name;
    return displayedLastComponent(without(kBundleSuffix, lastComponent(path)));
}

}  // namespace

std::string displayedLastComponent(std::string_view path) {
    std::string name = displayText(lastComponent(path));
    return name.empty() ? "?" : name;
}

std::optional<ApplicationRecord> bundleRecord(const std::string& path, std::string_view infoPropertyList) {
    PropertyList information = decodePropertyList(infoPropertyList);
    if (!information.isDictionary()) return {};
    ApplicationRecord record;
    record.isBundle = record.isApplication = record.isDisplayed = true;
    record.path = path;
    record.identifier = information["CFBundleIdentifier"].stringValue();
    record.name = bundleName(information, path);
    record.searchName = lastComponent(path);
    record.iconName = bundleIcon(path, information["CFBundleIconFile"].stringValue());
    record.creator = creatorCode(information["CFBundleSignature"].stringValue());
    if (std::string_view executable = information["CFBundleExecutable"].stringValue(); isFileName(executable)) {
        record.program = (path + "/Contents/Linux/").append(executable);
        record.words = {record.program};
    }
    return record;
}

std::optional<ApplicationRecord> readApplicationRecord(const std::string& path,
                                                       const ApplicationEnvironment& environment, int& error) {
    struct stat status;
    error = ::stat(path.c_str(), &status) == 0 ? 0 : errno;
    bool isBundle = !error && S_ISDIR(status.st_mode) && path.ends_with(kBundleSuffix);
    bool isDesktopEntry = !error && S_ISREG(status.st_mode) && path.ends_with(kDesktopEntrySuffix);
    if (!isBundle && !isDesktopEntry) return {};
    std::string file = isBundle ? path + "/Contents/Info.plist" : path, bytes;
    if (Failure failure = readDescription(FileAccess::system(), AT_FDCWD, file.c_str(), bytes)) {
        auto describesNothing = {0, ENOENT, ENOTDIR, EISDIR, EFBIG};
        error = std::ranges::find(describesNothing, failure.error) == describesNothing.end() ? failure.error : 0;
        return {};
    }
    if (isBundle) return bundleRecord(path, bytes);
    return desktopEntryRecord(path, std::string(without(kDesktopEntrySuffix, lastComponent(path))), bytes, environment);
}

std::optional<StartDescription> startDescription(std::string_view path, const ApplicationEnvironment& environment) {
    if (!path.starts_with('/') || path.find('\0') != path.npos) return {};
    std::string plain = withoutFinalSlashes(std::string(path));
    int error = 0;
    if (std::optional<ApplicationRecord> record = readApplicationRecord(plain, environment, error)) {
        bool canStart = record->isApplication && !record->words.empty();
        if (!canStart || (record->isBundle && !isExecutableFile(record->program))) return {};
        return *record;
    }
    if (!isExecutableFile(plain)) return {};
    return StartDescription{{plain}, displayedLastComponent(plain), {}, {}, false};
}

}  // namespace linux
