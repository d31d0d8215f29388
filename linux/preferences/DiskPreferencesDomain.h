// One preference domain in memory: what the file held when it was last read, and this process's changes since.
#pragma once

#include "linux/preferences/DomainFile.h"
#include "platform/Log.h"
#include "platform/PlatformTypes.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace linux {

// Look-up of strings by a view, without a copy.
struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>()(text); }
};
template <typename Value>
using StringMap = std::unordered_map<std::string, Value, StringHash, std::equal_to<>>;

// Reads at the first use of a value, and logs each failure with the domain's name. The file access and the log outlive
// it. Not for use from several threads at once.
class DiskPreferencesDomain {
public:
    DiskPreferencesDomain(std::string name, std::string path, FileAccess& files, platform::Log& log)
        : name_(std::move(name)), path_(std::move(path)), files_(files), log_(log) {}

    // While the file cannot be read, only what was set since.
    platform::PropertyList value(std::string_view key);
    platform::PropertyList all();
    // In memory. The key is valid UTF-8; nothing as value removes it.
    void set(std::string_view key, platform::PropertyList value);
    // False when the changes are not on the disk, or the file cannot be read; the changes are kept.
    bool synchronize();
    // A file that could not be read is tried again.
    bool isReadable();
    // Whether something was set that no synchronize has stored, be it what is stored already.
    bool hasChanges() const { return !changes_.empty(); }

private:
    struct Change {
        platform::PropertyList value;  // nothing: the key is removed
        std::size_t order;             // in which the keys were first changed
    };

    void readAtFirstUse();
    Failure refresh();
    Failure refreshLocked(Transaction& transaction);
    Failure readAgain(bool& isDamaged);
    Failure becomeUnreadable(Failure failure);
    bool take(Snapshot&& snapshot, std::shared_ptr<const std::string> bytes);
    bool changesNothing() const;
    Failure writeChanges();
    platform::PropertyList withChanges() const;
    void report(const char* what, const Failure& failure);

    const std::string name_, path_;
    FileAccess& files_;
    platform::Log& log_;

    bool used_ = false;      // read, or tried to
    bool readable_ = false;  // `stored_` is what `snapshot_` holds, or has the changes laid over it
    Snapshot snapshot_;
    platform::PropertyList stored_;
    StringMap<Change> changes_;
    bool isWriteDue_ = false;  // the last one failed, perhaps after the new contents were in place
    Failure reported_;         // the read failure in the log, so that asking again does not fill it
};

}  // namespace linux
