// One preference domain in memory: what the file held when it was last read, and this process's changes since, which
// are kept as functions and laid over whatever the file holds when they are saved.
#pragma once

#include "linux/preferences/DomainFile.h"
#include "linux/preferences/PreferenceReports.h"
#include "platform/Log.h"
#include "platform/Preferences.h"
#include "propertylist/Codec.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace linux {

// Look-up of strings by a view, without a copy.
struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>()(text); }
};
template <typename Value>
using StringMap = std::unordered_map<std::string, Value, StringHash, std::equal_to<>>;

// Reads at the first use of a value, and logs each failure with the domain's name and the file's path, once until it
// changes. What is referred to outlives it. Waits for another program that keeps the lock as long as `longestWait` says
// at the time, but after a wait in vain not at all until the lock was free once. Not for use from several threads at
// once.
class DiskPreferencesDomain {
public:
    DiskPreferencesDomain(std::string name, std::string path, FileAccess& files, platform::Log& log,
                          PreferenceReports& reports, const LockWait& longestWait)
        : name_(std::move(name)),
          path_(std::move(path)),
          files_(files),
          log_(log),
          reports_(reports),
          longestWait_(longestWait) {}

    // While the file cannot be read, only what was changed since.
    platform::PropertyList value(std::string_view key) { return all()[key]; }
    const platform::PropertyList& all();  // a dictionary, or nothing; good until the next call
    void change(platform::PreferenceChange change);
    // False when the changes are not on the disk, or the file cannot be read; the changes are kept.
    bool synchronize();
    // A file that could not be read is tried again.
    bool isReadable();
    // Whether something was changed that no synchronize has stored, be it to what is stored already.
    bool hasChanges() const { return !changes_.empty() || isWriteDue_; }
    const std::string& problem() const { return problem_; }  // of the last look or synchronize; empty: none

private:
    void readAtFirstUse();
    Failure refresh();
    Failure refreshLocked(Transaction& transaction);
    Failure readAgain(bool& isDamaged);
    Failure becomeUnreadable(Failure failure);
    bool take(Snapshot&& snapshot, std::shared_ptr<const std::string> bytes);
    void store(platform::PropertyList contents);
    void forgetChanges();
    bool changesNothing();
    Failure lock(Transaction& transaction);
    Failure writeChanges();
    Failure writeLocked(Snapshot& written);
    Failure save(Transaction& transaction, Snapshot& written);
    void report(const char* what, const Failure& failure, platform::PreferenceReport::Kind kind, const Failure& before);

    const std::string name_, path_;
    FileAccess& files_;
    platform::Log& log_;
    PreferenceReports& reports_;
    const LockWait& longestWait_;

    bool used_ = false;      // read, or tried to
    bool readable_ = false;  // `stored_` is what `snapshot_` holds
    Snapshot snapshot_;
    platform::PropertyList stored_;
    std::vector<platform::PreferenceChange> changes_;  // that are not on the disk, in their order
    platform::PropertyList values_;                    // `stored_` with the first `applied_` of the changes over it
    std::size_t applied_ = 0;
    std::optional<bool> changesNothing_;  // of what is stored, once compared: values may be large
    bool isWriteDue_ = false;             // the last one failed, perhaps after the new contents were in place
    bool isHeld_ = false;                 // the last wait for the lock was in vain
    bool lacksLocks_ = false;             // the file system has none, and the log says so
    propertylist::DecodeProblem damage_;  // of the file that was last found to be no domain
    std::string problem_;
    // How the last reading and the last synchronize failed: trying again and again does not fill the log.
    Failure unread_, unsynchronized_;
};

}  // namespace linux
