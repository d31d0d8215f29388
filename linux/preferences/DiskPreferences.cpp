#include "linux/preferences/DiskPreferences.h"

#include "linux/files/Paths.h"
#include "propertylist/Codec.h"

#include <algorithm>
#include <filesystem>

namespace linux {

using namespace platform;
using namespace propertylist;

namespace {

constexpr std::string_view kExtension = ".plist";

bool isDomainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.size() <= DiskPreferences::kLongestDomainName &&
           name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

// True for the file that stays when the last key is removed. What cannot be read may hold something.
bool holdsNothing(FileAccess& files, const std::string& path) {
    constexpr off_t kLargestEmptyFile = 1024;
    struct stat status;
    if (files.stat(path.c_str(), status) < 0 || status.st_size > kLargestEmptyFile) return false;
    Snapshot snapshot;
    std::shared_ptr<const std::string> bytes;
    if (readFile(files, path.c_str(), snapshot, bytes) || !bytes) return false;
    PropertyList contents = decodePropertyList(std::move(bytes));
    return contents.isDictionary() && contents.size() == 0;
}

}  // namespace

std::string preferencesFolder() { return joined(configurationFolder(), "preferences"); }

DiskPreferencesDomain* DiskPreferences::find(std::string_view domain) {
    if (auto known = domains_.find(domain); known != domains_.end()) return known->second.get();
    if (!isDomainName(domain)) return nullptr;
    std::string name(domain), path = folder_ + "/" + name + std::string(kExtension);
    auto created = std::make_unique<DiskPreferencesDomain>(name, std::move(path), files_, log_);
    return domains_.emplace(std::move(name), std::move(created)).first->second.get();
}

PropertyList DiskPreferences::copyValue(std::string_view key, std::string_view domain) {
    DiskPreferencesDomain* found = find(domain);
    return found ? found->value(key) : PropertyList();
}

PropertyList DiskPreferences::copyDomain(std::string_view domain) {
    DiskPreferencesDomain* found = find(domain);
    return found ? found->all() : PropertyList::dictionary({});
}

void DiskPreferences::setValue(std::string_view key, PropertyList value, std::string_view domain) {
    DiskPreferencesDomain* found = find(domain);
    if (!found)
        refused_.emplace(domain);
    else if (PropertyList(key))
        found->set(key, std::move(value));
    else
        log_("Preference domain %@: a key that is not valid UTF-8 is not set", domain);
}

bool DiskPreferences::synchronize(std::string_view domain) {
    if (DiskPreferencesDomain* found = find(domain)) {
        if (!found->synchronize()) return false;
        if (auto observer = observers_.find(domain); observer != observers_.end()) observer->second();
        return true;
    }
    if (!refused_.contains(domain)) return true;
    log_("Preference domain %@: cannot synchronize: this is not a valid name", domain);
    return false;
}

void DiskPreferences::synchronizeChanges() {
    for (auto& [name, domain] : domains_)
        if (domain->hasChanges()) synchronize(name);
}

void DiskPreferences::setSynchronizeObserver(std::string_view domain, std::function<void()> observer) {
    observers_.insert_or_assign(std::string(domain), std::move(observer));
}

bool DiskPreferences::isReadable(std::string_view domain) {
    DiskPreferencesDomain* found = find(domain);
    return !found || found->isReadable();
}

std::optional<std::vector<std::string>> DiskPreferences::domains() {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder_, error), end; !error && entry != end;
         entry.increment(error)) {
        std::string name = entry->path().filename();
        if (!name.ends_with(kExtension)) continue;
        name.resize(name.size() - kExtension.size());
        if (isDomainName(name) && !holdsNothing(files_, entry->path())) names.push_back(std::move(name));
    }
    if (error && error != std::errc::no_such_file_or_directory) {
        log_("Preference domains: cannot list %@: %@", folder_, error.message());
        return std::nullopt;
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace linux
