// The preference service on disk: one property-list file for each domain. docs/preferences.md tells other programs how
// to share the files, and what becomes of them under every fault.
#pragma once

#include "linux/preferences/DiskPreferencesDomain.h"
#include "platform/Log.h"
#include "platform/Preferences.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace linux {

// "preferences" in $XDG_CONFIG_HOME, or in ~/.config when that variable is not an absolute path.
std::string preferencesFolder();

class DiskPreferences final : public platform::PreferenceService {
public:
    // Bytes. A longer name is no domain: the names of lock, temporary and damaged file must fit into the 255 bytes of a
    // file name. Nor is one that is empty, "." or "..", or that holds a slash or U+0000.
    static constexpr std::size_t kLongestDomainName = 200;

    // The folder, an absolute path, need not exist; a write makes it. The log and the file access outlive the service.
    DiskPreferences(std::string folder, platform::Log& log, FileAccess& files = FileAccess::system())
        : folder_(std::move(folder)), files_(files), log_(log) {}

    platform::PropertyList copyValue(std::string_view key, std::string_view domain) override;
    platform::PropertyList copyDomain(std::string_view domain) override;
    void setValue(std::string_view key, platform::PropertyList value, std::string_view domain) override;
    bool synchronize(std::string_view domain) override;
    bool isReadable(std::string_view domain) override;
    std::optional<std::vector<std::string>> domains() override;
    // Synchronises every domain that has changes in memory: for a program that is about to end. What fails is logged,
    // and lost with the program.
    void synchronizeChanges();
    // Called within each successful synchronize of the domain, when its file holds what was set. One for each domain: a
    // later one takes the place of the first. Lives as long as the service.
    void setSynchronizeObserver(std::string_view domain, std::function<void()> observer);
    const std::string& folder() const { return folder_; }

private:
    DiskPreferencesDomain* find(std::string_view domain);  // null for what is no name of a domain

    const std::string folder_;
    FileAccess& files_;
    platform::Log& log_;
    StringMap<std::unique_ptr<DiskPreferencesDomain>> domains_;
    StringMap<std::function<void()>> observers_;
    std::set<std::string, std::less<>> refused_;  // no names of domains, yet with values set in them
};

}  // namespace linux
