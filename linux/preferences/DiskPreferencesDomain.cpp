#include "linux/preferences/DiskPreferencesDomain.h"

#include "propertylist/Codec.h"

#include <algorithm>
#include <cerrno>
#include <vector>

namespace linux {

using namespace platform;
using namespace propertylist;

PropertyList DiskPreferencesDomain::value(std::string_view key) {
    if (!used_) readAtFirstUse();
    if (!changes_.empty())
        if (auto change = changes_.find(key); change != changes_.end()) return change->second.value;
    return stored_[key];
}

PropertyList DiskPreferencesDomain::all() {
    if (!used_) readAtFirstUse();
    return changes_.empty() && stored_ ? stored_ : withChanges();
}

void DiskPreferencesDomain::set(std::string_view key, PropertyList value) {
    auto change = changes_.find(key);
    if (change != changes_.end())
        change->second.value = std::move(value);
    else
        changes_.emplace(key, Change{std::move(value), changes_.size()});
}

bool DiskPreferencesDomain::synchronize() {
    used_ = true;
    Failure failure = changes_.empty() ? refresh() : writeChanges();
    isWriteDue_ = static_cast<bool>(failure);
    if (failure) report("synchronize", failure);
    return !failure;
}

bool DiskPreferencesDomain::isReadable() {
    if (!readable_) readAtFirstUse();
    return readable_;
}

void DiskPreferencesDomain::readAtFirstUse() {
    used_ = true;
    Failure failure = refresh();
    if (failure && failure != reported_) report("read", failure);
    reported_ = failure;
}

Failure DiskPreferencesDomain::refresh() {
    bool isDamaged = false;
    if (Failure failure = readAgain(isDamaged); failure || !isDamaged) return failure;
    Transaction transaction(files_, path_);
    if (Failure failure = transaction.begin()) return becomeUnreadable(failure);
    return refreshLocked(transaction);
}

Failure DiskPreferencesDomain::refreshLocked(Transaction& transaction) {
    bool isDamaged = false;
    if (Failure failure = readAgain(isDamaged); failure || !isDamaged) return failure;
    std::string newName;
    if (Failure failure = transaction.moveAside(newName)) return becomeUnreadable(failure);
    log_("Preference domain %@: the file was damaged, is now called %@, and the domain starts empty", name_, newName);
    take({}, nullptr);
    return {};
}

Failure DiskPreferencesDomain::readAgain(bool& isDamaged) {
    if (readable_ && isCurrent(files_, path_.c_str(), snapshot_)) return {};
    Snapshot snapshot;
    std::shared_ptr<const std::string> bytes;
    if (Failure failure = readFile(files_, path_.c_str(), snapshot, bytes)) return becomeUnreadable(failure);
    isDamaged = !take(std::move(snapshot), std::move(bytes));
    return {};
}

Failure DiskPreferencesDomain::becomeUnreadable(Failure failure) {
    readable_ = false;
    snapshot_ = {};
    stored_ = {};
    return failure;
}

// False when the bytes are no domain.
bool DiskPreferencesDomain::take(Snapshot&& snapshot, std::shared_ptr<const std::string> bytes) {
    if (!readable_ || !snapshot.sameContents(snapshot_)) {
        PropertyList contents = bytes ? decodePropertyList(std::move(bytes)) : PropertyList();
        if (snapshot.file && !contents.isDictionary()) return false;
        stored_ = std::move(contents);
    }
    snapshot_ = std::move(snapshot);
    readable_ = true;
    return true;
}

bool DiskPreferencesDomain::changesNothing() const {
    return std::ranges::all_of(changes_,
                               [&](const auto& change) { return change.second.value == stored_[change.first]; });
}

Failure DiskPreferencesDomain::writeChanges() {
    // What cannot be read is not touched, not even by a lock file.
    if (!readable_)
        if (Failure failure = refresh()) return failure;
    if (!isWriteDue_ && changesNothing()) {
        if (Failure failure = refresh()) return failure;
        if (changesNothing()) {
            changes_.clear();
            return {};
        }
    }
    Snapshot written;  // outlives the lock: closing the replaced file frees its blocks, for which nobody need wait
    Transaction transaction(files_, path_);
    if (Failure failure = transaction.begin()) return failure;
    if (Failure failure = refreshLocked(transaction)) return failure;
    // The old values of changed keys may be large, and are needed no more, whatever comes of the writing. As `stored_`
    // equals the changes from here on, comparing the two no longer tells whether there is anything to write.
    isWriteDue_ = true;
    stored_ = withChanges();
    std::string bytes = encodePropertyList(stored_, PropertyListFormat::Binary);
    if (bytes.empty()) return {"encode", 0, "a value is nested too deeply"};
    if (bytes.size() > kMaximumFileSize) return {"encode", EFBIG};

    if (Failure failure = transaction.replace(bytes, written)) return failure;
    std::swap(snapshot_, written);
    changes_.clear();
    return {};
}

PropertyList DiskPreferencesDomain::withChanges() const {
    std::vector<const StringMap<Change>::value_type*> ordered;
    for (const auto& change : changes_) ordered.push_back(&change);
    std::ranges::sort(ordered, {}, [](auto* change) { return change->second.order; });
    MutableDictionary contents(stored_);
    for (auto* change : ordered)
        if (const PropertyList& value = change->second.value)
            contents.exchange(change->first,
                              value);  // with a key of our own: the old one may keep the old file's bytes
        else
            contents.remove(change->first);
    return std::move(contents).freeze();
}

void DiskPreferencesDomain::report(const char* what, const Failure& failure) {
    log_("Preference domain %@: cannot %@: %@", name_, what, failure.text());
}

}  // namespace linux
