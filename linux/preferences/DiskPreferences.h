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

    // What a command waits by default for another program that keeps a domain locked.
    static constexpr LockWait kPatience{10'000};

    // The folder, an absolute path, need not exist; a write makes it. The log and the file access outlive the service.
    DiskPreferences(std::string folder, platform::Log& log, FileAccess& files = FileAccess::system());
    ~DiskPreferences() override;
    // How long one synchronize waits for another program that keeps the domain locked. After it has waited in vain, it
    // looks only once each time, until it gets the lock.
    void setLongestWait(LockWait wait) { longestWait_ = wait; }
    LockWait longestWait() const { return longestWait_; }

    platform::PropertyList copyValue(std::string_view key, std::string_view domain) override;
    platform::PropertyList copyDomain(std::string_view domain) override;
    void setValue(std::string_view key, platform::PropertyList value, std::string_view domain) override;
    void changeValues(platform::PreferenceChange change, std::string_view domain) override;
    bool synchronize(std::string_view domain) override;
    std::unique_ptr<platform::Observation> observe(
        std::function<void(const platform::PreferenceReport&)> handler) override;
    bool isReadable(std::string_view domain) override;
    std::optional<std::vector<std::string>> domains() override;
    // Synchronises every domain that has changes in memory: for a program that is about to end. What fails is logged,
    // and lost with the program.
    void synchronizeChanges();
    const std::string& folder() const { return folder_; }
    // "PATH: REASON" of the domain's last failure; empty since it was last synchronized or read well.
    std::string problem(std::string_view domain);

private:
    DiskPreferencesDomain* find(std::string_view domain);  // null for what is no name of a domain

    const std::string folder_;
    FileAccess& files_;
    platform::Log& log_;
    LockWait longestWait_ = kPatience;
    const std::shared_ptr<PreferenceReports> reports_;
    StringMap<std::unique_ptr<DiskPreferencesDomain>> domains_;
    std::set<std::string, std::less<>> refused_;  // no names of domains, yet with values set in them
};

}  // namespace linux
