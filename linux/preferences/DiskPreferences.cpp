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

DiskPreferences::DiskPreferences(std::string folder, Log& log, FileAccess& files)
    : folder_(std::move(folder)), files_(files), log_(log), reports_(std::make_shared<PreferenceReports>()) {}

DiskPreferences::~DiskPreferences() = default;

std::string preferencesFolder() { return joined(configurationFolder(), "preferences"); }

DiskPreferencesDomain* DiskPreferences::find(std::string_view domain) {
    if (auto known = domains_.find(domain); known != domains_.end()) return known->second.get();
    if (!isDomainName(domain)) return nullptr;
    std::string name(domain), path = folder_ + "/" + name + std::string(kExtension);
    auto created =
        std::make_unique<DiskPreferencesDomain>(name, std::move(path), files_, log_, *reports_, longestWait_);
    return domains_.emplace(std::move(name), std::move(created)).first->second.get();
}

PropertyList DiskPreferences::copyValue(std::string_view key, std::string_view domain) {
    DiskPreferencesDomain* found = find(domain);
    return found ? found->value(key) : PropertyList();
}

PropertyList DiskPreferences::copyDomain(std::string_view domain) {
    DiskPreferencesDomain* found = find(domain);
    PropertyList all = found ? found->all() : PropertyList();
    return all ? all : PropertyList::dictionary({});
}

void DiskPreferences::setValue(std::string_view key, PropertyList value, std::string_view domain) {
    PropertyList ownKey(key);
    if (!ownKey) return log_("Preference domain %@: a key that is not valid UTF-8 is not set", domain);
    auto set = [ownKey, value = std::move(value)](MutableDictionary& values) {
        // With a key of our own, as the old one may keep all the bytes of the old file.
        value ? (void)values.exchange(ownKey, value) : values.remove(ownKey.stringValue());
    };
    changeValues(std::move(set), domain);
}

void DiskPreferences::changeValues(PreferenceChange change, std::string_view domain) {
    if (DiskPreferencesDomain* found = find(domain))
        found->change(std::move(change));
    else
        refused_.emplace(domain);
}

bool DiskPreferences::synchronize(std::string_view domain) {
    if (DiskPreferencesDomain* found = find(domain)) return found->synchronize();
    if (!refused_.contains(domain)) return true;
    log_("Preference domain %@: cannot synchronize: this is not a valid name", domain);
    return false;
}

void DiskPreferences::synchronizeChanges() {
    for (auto& [name, domain] : domains_)
        if (domain->hasChanges()) synchronize(name);
}

std::unique_ptr<Observation> DiskPreferences::observe(std::function<void(const PreferenceReport&)> handler) {
    return PreferenceReports::observe(reports_, std::move(handler));
}

bool DiskPreferences::isReadable(std::string_view domain) {
    DiskPreferencesDomain* found = find(domain);
    return !found || found->isReadable();
}

std::string DiskPreferences::problem(std::string_view domain) {
    DiskPreferencesDomain* found = find(domain);
    return found ? found->problem() : "not a valid name";
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
