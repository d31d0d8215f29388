#include "linux/preferences/DiskPreferencesDomain.h"

#include "linux/files/LateClose.h"
#include "linux/files/Paths.h"
#include "propertylist/Codec.h"

#include <cerrno>
#include <utility>

namespace linux {

using namespace platform;
using namespace propertylist;

const PropertyList& DiskPreferencesDomain::all() {
    if (!used_) readAtFirstUse();
    if (applied_ == changes_.size()) return values_;
    MutableDictionary values(values_);
    while (applied_ < changes_.size()) changes_[applied_++](values);
    return values_ = std::move(values).freeze();
}

void DiskPreferencesDomain::change(PreferenceChange change) {
    changes_.push_back(std::move(change));
    changesNothing_.reset();
}

bool DiskPreferencesDomain::changesNothing() {
    if (!changesNothing_) changesNothing_ = all() == stored_ || (!stored_ && all().size() == 0);
    return *changesNothing_;
}

bool DiskPreferencesDomain::synchronize() {
    used_ = true;
    Failure failure = hasChanges() ? writeChanges() : refresh();
    auto kind = hasChanges() ? PreferenceReport::Kind::NotSaved : PreferenceReport::Kind::Unreadable;
    if (failure) {
        report("synchronize", failure, kind, unsynchronized_);
    } else {
        problem_.clear();
        reports_.tell({.domain = name_, .path = path_});
    }
    unsynchronized_ = failure;
    return !failure;
}

bool DiskPreferencesDomain::isReadable() {
    if (!readable_) readAtFirstUse();
    return readable_;
}

void DiskPreferencesDomain::readAtFirstUse() {
    used_ = true;
    Failure failure = refresh();
    if (failure && failure != unread_) report("read", failure, PreferenceReport::Kind::Unreadable, unread_);
    unread_ = failure;
}

Failure DiskPreferencesDomain::refresh() {
    bool isDamaged = false;
    if (Failure failure = readAgain(isDamaged); failure || !isDamaged) return failure;
    Transaction transaction(files_, path_, isHeld_ ? LockWait() : longestWait_);
    if (Failure failure = lock(transaction)) return becomeUnreadable(failure);
    return refreshLocked(transaction);
}

Failure DiskPreferencesDomain::lock(Transaction& transaction) {
    Failure failure = transaction.begin();
    isHeld_ = failure.error == EWOULDBLOCK;
    if (!failure && !transaction.hasLock() && !std::exchange(lacksLocks_, true))
        log_("Preference domain %@: no locks where %@ is: another program's change at the same moment may be lost",
             name_, path_);
    return failure;
}

Failure DiskPreferencesDomain::refreshLocked(Transaction& transaction) {
    bool isDamaged = false;
    if (Failure failure = readAgain(isDamaged); failure || !isDamaged) return failure;
    std::string newName;
    if (Failure failure = transaction.moveAside(newName)) return becomeUnreadable(failure);
    log_("Preference domain %@: the file %@ was damaged (byte %d: %s), is now called %@, and the domain starts empty",
         name_, path_, damage_.position, damage_.reason, newName);
    take({}, nullptr);
    reports_.tell({PreferenceReport::Kind::MovedAside, name_, joined(folderOf(path_), newName)});
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
    store({});
    return failure;
}

void DiskPreferencesDomain::store(PropertyList contents) {
    stored_ = std::move(contents);
    values_ = stored_;
    applied_ = 0;
    changesNothing_.reset();
}

// False when the bytes are no domain.
bool DiskPreferencesDomain::take(Snapshot&& snapshot, std::shared_ptr<const std::string> bytes) {
    if (!readable_ || !snapshot.sameContents(snapshot_)) {
        damage_ = {0, "no dictionary at the root"};
        PropertyList contents = bytes ? decodePropertyList(std::move(bytes), &damage_) : PropertyList();
        if (snapshot.file && !contents.isDictionary()) return false;
        store(std::move(contents));
    }
    snapshot_ = std::move(snapshot);
    readable_ = true;
    return true;
}

Failure DiskPreferencesDomain::writeChanges() {
    // What cannot be read is not touched, not even by a lock file.
    if (!readable_)
        if (Failure failure = refresh()) return failure;
    if (!isWriteDue_ && changesNothing()) {
        if (Failure failure = refresh()) return failure;
        if (changesNothing()) {
            forgetChanges();
            return {};
        }
    }
    Snapshot written;  // outlives the lock, as afterwards it is the replaced file
    Failure failure = writeLocked(written);
    closeLater(std::move(written.file), written.identity.size);
    return failure;
}

Failure DiskPreferencesDomain::writeLocked(Snapshot& written) {
    Transaction transaction(files_, path_, isHeld_ ? LockWait() : longestWait_);
    if (Failure failure = lock(transaction)) return failure;
    if (Failure failure = refreshLocked(transaction)) return failure;
    return save(transaction, written);
}

Failure DiskPreferencesDomain::save(Transaction& transaction, Snapshot& written) {
    if (!isWriteDue_ && changesNothing()) {
        forgetChanges();
        return {};
    }
    // The old values of changed keys may be large, and are needed no more, whatever comes of the writing. Comparing
    // with them no longer tells whether there is anything to write.
    const PropertyList& values = all();
    isWriteDue_ = true;
    stored_ = {};
    std::string bytes = encodePropertyList(values ? values : PropertyList::dictionary({}), PropertyListFormat::Binary);
    if (bytes.empty()) return {"encode", 0, "a value is nested too deeply"};
    if (bytes.size() > kMaximumFileSize) return {"encode", EFBIG};
    if (Failure failure = transaction.replace(bytes, written)) return failure;
    std::swap(snapshot_, written);
    forgetChanges();
    Failure failure = transaction.flushFolder();
    isWriteDue_ = static_cast<bool>(failure);
    return failure;
}

// They are in the file.
void DiskPreferencesDomain::forgetChanges() {
    stored_ = values_;
    changes_.clear();
    applied_ = 0;
}

void DiskPreferencesDomain::report(const char* what, const Failure& failure, PreferenceReport::Kind kind,
                                   const Failure& before) {
    std::string reason = failure.text();
    if (failure != before) log_("Preference domain %@: cannot %@ %@: %@", name_, what, path_, reason);
    problem_ = path_ + ": " + reason;
    reports_.tell({kind, name_, path_, causeOf(failure), reason, failure.holder, failure.holderProcess});
}

}  // namespace linux
