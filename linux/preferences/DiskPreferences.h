// The preference service on disk: one property-list file for each domain. docs/preferences.md tells other programs how
// to share the files, and what becomes of them under every fault.
#pragma once

#include "linux/preferences/DiskPreferencesDomain.h"
#include "platform/Log.h"
#include "platform/Preferences.h"

#include <memory>
#include <string>

namespace linux {

// "preferences" in $XDG_CONFIG_HOME, or in ~/.config when that variable is not an absolute path.
std::string preferencesFolder();

class DiskPreferences final : public platform::PreferenceService {
public:
    // A longer name, in bytes, is not a domain: the files beside the domain's own must find room for theirs.
    static constexpr std::size_t kLongestDomainName = 200;

    // The folder need not exist; a write makes it. The log and the file access outlive the service.
    DiskPreferences(std::string folder, platform::Log& log, FileAccess& files = FileAccess::system())
        : folder_(std::move(folder)), files_(files), log_(log) {}

    platform::PropertyList copyValue(std::string_view key, std::string_view domain) override;
    platform::PropertyList copyDomain(std::string_view domain) override;
    void setValue(std::string_view key, platform::PropertyList value, std::string_view domain) override;
    bool synchronize(std::string_view domain) override;
    bool isReadable(std::string_view domain) override;
    std::vector<std::string> domains() override;
    // Synchronises every domain that has changes in memory: for a program that is about to end.
    void synchronizeChanges();
    // Called within each successful synchronize of the domain, when its file holds what was set. One for each domain.
    void setSynchronizeObserver(std::string_view domain, std::function<void()> observer);
    const std::string& folder() const { return folder_; }

private:
    DiskPreferencesDomain* find(std::string_view domain);  // null for what is no name of a domain

    const std::string folder_;
    FileAccess& files_;
    platform::Log& log_;
    StringMap<std::unique_ptr<DiskPreferencesDomain>> domains_;
    StringMap<std::function<void()>> observers_;
    StringMap<bool> refused_;  // no names of domains, yet with values set in them
};

}  // namespace linux
