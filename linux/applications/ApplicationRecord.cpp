#include "linux/applications/ApplicationRecord.h"

#include "linux/applications/DesktopEntryCommand.h"
#include "linux/system/DisplayText.h"
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

void takeCommand(const std::string& exec, ApplicationRecord& record) {
    const std::vector<std::string> words = expandCommand(splitCommand(exec), {});
    const std::size_t index = programIndex(words);
    if (index >= words.size()) return;
    record.program = words[index];
    record.argumentCount = words.size() - index - 1;
}

bool isFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos &&
           name.find('\0') == std::string_view::npos;
}

std::string bundleIcon(const std::string& bundle, std::string_view name) {
    if (!isFileName(name)) return {};
    for (const std::string_view extension : {"", ".png", ".svg", ".icns"}) {
        std::string path = (bundle + "/Contents/Resources/").append(name).append(extension);
        if (::access(path.c_str(), R_OK) == 0) return path;
    }
    return {};
}

FourCharCode creatorCode(std::string_view signature) {
    if (signature.size() != 4) return kUnknownCreator;
    FourCharCode code = 0;
    for (const char c : signature) code = code << 8 | static_cast<unsigned char>(c);
    return code;
}

std::string bundleName(const PropertyList& information, std::string_view path) {
    for (const char* key : {"CFBundleDisplayName", "CFBundleName"})
        if (std::string name = displayText(information[key].stringValue()); !name.empty()) return name;
    std::string_view name = lastComponent(path);
    if (name.size() > kBundleSuffix.size() && name.ends_with(kBundleSuffix)) name.remove_suffix(kBundleSuffix.size());
    return displayedLastComponent(name);
}

std::string fileNameWithout(std::string_view suffix, const std::string& path) {
    std::string name = path.substr(path.rfind('/') + 1);
    name.resize(name.size() - suffix.size());
    return name;
}

}  // namespace

std::string displayedLastComponent(std::string_view path) {
    std::string name = displayText(lastComponent(path));
    return name.empty() ? "?" : name;
}

std::optional<ApplicationRecord> desktopEntryRecord(std::string path, std::string identifier, std::string_view bytes,
                                                    const ApplicationEnvironment& environment) {
    std::optional<DesktopEntry> entry = readDesktopEntry(bytes, environment.locale);
    if (!entry) return {};
    ApplicationRecord record;
    record.name = displayText(entry->name);
    if (record.name.empty()) record.name = displayedLastComponent(path);
    record.path = std::move(path);
    record.identifier = std::move(identifier);
    record.isApplication = entry->isApplication && !entry->isHidden;
    record.isDisplayed = !entry->isNoDisplay && entry->isShownIn(environment.currentDesktops);
    record.isDBusActivatable = entry->isDBusActivatable;
    record.searchName = std::move(entry->unlocalizedName);
    record.iconName = std::move(entry->icon);
    record.tryProgram = std::move(entry->tryExec);
    takeCommand(entry->exec, record);
    return record;
}

std::optional<ApplicationRecord> bundleRecord(std::string path, std::string_view infoPropertyList) {
    const PropertyList information = decodePropertyList(infoPropertyList);
    if (!information.isDictionary()) return {};
    ApplicationRecord record;
    record.isBundle = record.isApplication = record.isDisplayed = true;
    record.identifier = information["CFBundleIdentifier"].stringValue();
    record.name = bundleName(information, path);
    record.searchName = lastComponent(path);
    record.iconName = bundleIcon(path, information["CFBundleIconFile"].stringValue());
    record.creator = creatorCode(information["CFBundleSignature"].stringValue());
    if (const std::string_view executable = information["CFBundleExecutable"].stringValue(); isFileName(executable))
        record.program = (path + "/Contents/Linux/").append(executable);
    record.path = std::move(path);
    return record;
}

std::optional<ApplicationRecord> readApplicationRecord(const std::string& path,
                                                       const ApplicationEnvironment& environment, int& error) {
    struct stat status;
    error = ::stat(path.c_str(), &status) == 0 ? 0 : errno;
    const bool isBundle = !error && S_ISDIR(status.st_mode) && path.ends_with(kBundleSuffix);
    const bool isDesktopEntry = !error && S_ISREG(status.st_mode) && path.ends_with(kDesktopEntrySuffix);
    if (!isBundle && !isDesktopEntry) return {};
    SmallFileReader reader;
    const std::string file = isBundle ? path + "/Contents/Info.plist" : path;
    const std::optional<std::string_view> bytes = reader.read(AT_FDCWD, file.c_str());
    const bool describesNothing =
        reader.error() == ENOENT || reader.error() == ENOTDIR || reader.error() == EFBIG || reader.error() == EINVAL;
    error = describesNothing ? 0 : reader.error();
    if (!bytes) return {};
    return isBundle ? bundleRecord(path, *bytes)
                    : desktopEntryRecord(path, fileNameWithout(kDesktopEntrySuffix, path), *bytes, environment);
}

}  // namespace linux
