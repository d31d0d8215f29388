#include "linux/loginitems/AutostartMirror.h"

#include "linux/files/FileSteps.h"
#include "linux/files/LinuxFiles.h"
#include "linux/files/Paths.h"
#include "linux/files/WholeFile.h"
#include "platform/LoginItems.h"

#include <algorithm>
#include <cerrno>

namespace linux {

using namespace platform;

namespace {

constexpr const char* kTemporaryName = ".login-item.tmp";
constexpr int kMostOfOneName = 1000;
constexpr std::string_view kCountKey = "Count";

}  // namespace

std::string autostartFolder() { return joined(configurationFolder(), "autostart"); }

AutostartMirror::AutostartMirror(DiskPreferences& preferences, Log& log, FileAccess& files)
    : path_(autostartFolder()),
      preferences_(preferences),
      log_(log),
      files_(files),
      reader_(preferences.folder(), log, files) {
    observation_ = preferences.observe([this](const PreferenceReport& report) {
        if (report.domain == kLoginWindowDomain && report.kind == PreferenceReport::Kind::Synchronized) update();
    });
}

// Each path once, as a session has one program by a name; of several items the last decides.
std::vector<AutostartMirror::Item> AutostartMirror::storedItems() {
    std::vector<Item> items;
    PropertyList stored = reader_.copyValue(kLoginItemsKey, kLoginWindowDomain);
    for (const PropertyList& item : stored.elements()) {
        std::string path(item[kLoginItemPathKey].stringValue());
        auto earlier = std::ranges::find(items, path, &Item::path);
        std::int64_t count = earlier == items.end() ? 1 : earlier->count + 1;
        if (earlier != items.end()) items.erase(earlier);
        std::string value = escapedDesktopEntryValue(path);
        items.push_back({std::move(path), std::move(value), item[kLoginItemHideKey].boolValue(), count});
    }
    return items;
}

// Whether the user wants something else since the item was served last. Before there was a memory, every entry was.
bool AutostartMirror::isNewWish(const Item& item, const OwnEntry* entry) {
    PropertyList served = reader_.copyValue(kServedItemsKey, kServedDomain);
    for (const PropertyList& known : served.elements())
        if (known[kLoginItemPathKey].stringValue() == item.path)
            return known[kLoginItemHideKey].boolValue() != item.hide || known[kCountKey].integerValue() < item.count;
    return !entry;
}

void AutostartMirror::remember(const std::vector<PropertyList>& served) {
    PropertyList before = reader_.copyValue(kServedItemsKey, kServedDomain), now = PropertyList::array(served);
    if (before == now || (!before && served.empty())) return;
    reader_.setValue(kServedItemsKey, now, kServedDomain);
    (void)reader_.synchronize(kServedDomain);  // the store has logged what went wrong
}

// Once: an update comes with every synchronize.
void AutostartMirror::complain(std::string line) {
    if (auto [said, isNew] = said_.insert(std::move(line)); isNew) log_("%@", *said);
}

void AutostartMirror::report(std::string_view what, const Failure& failure) {
    hasFailed_ = true;
    complain(formatted("Login item %@: in %@: cannot %@", {what, path_, failure.text()}));
}

bool AutostartMirror::reportFolder(const Failure& failure) {
    hasFailed_ = true;
    complain(formatted("Login items: %@: cannot %@", {path_, failure.text()}));
    return false;
}

// A folder that is not there and not needed is no failure, and is not made.
bool AutostartMirror::takeFolder(bool make) {
    Failure failure = openFolder(files_, path_, make, folder_);
    if (failure.error == ENOENT && !make) return false;
    if (failure) return reportFolder(failure);
    failure = takeLock(files_, folder_.number(), preferences_.longestWait());
    if (!failure || meansNoLocks(failure.error)) return true;
    folder_.reset();
    return reportFolder(failure);
}

void AutostartMirror::update() {
    hasFailed_ = false;
    reader_.setLongestWait(preferences_.longestWait());
    (void)reader_.synchronize(kLoginWindowDomain);
    if (!takeFolder(false)) {
        if (hasFailed_) return;
        remember({});  // whoever removed the whole folder meant no single entry
        if (storedItems().empty() || !takeFolder(true)) return;
    }
    // Whoever held the lock may have stored something first.
    (void)reader_.synchronize(kServedDomain);
    if (reader_.synchronize(kLoginWindowDomain)) updateEntries();
    folder_.reset();
}

void AutostartMirror::updateEntries() {
    std::vector<OwnEntry> entries = ownEntries();
    std::vector<PropertyList> served;
    ApplicationEnvironment environment = ApplicationEnvironment::current();
    environment.isTranslated = false;  // the language of whoever comes by is no reason to write an entry anew
    for (const Item& item : storedItems()) {
        auto own = std::ranges::find(entries, item.value, [](auto& e) { return *autostartPathValue(e.contents); });
        if (updateEntry(item, own == entries.end() ? nullptr : &*own, environment))
            served.push_back(PropertyList::dictionary(
                {{kLoginItemPathKey, item.path}, {kLoginItemHideKey, item.hide}, {kCountKey, item.count}}));
        if (own != entries.end()) entries.erase(own);
    }
    for (const OwnEntry& entry : entries)
        if (int error = files_.remove(folder_.number(), entry.name.c_str()); error < 0)
            report(entry.name, {"remove the entry", -error});
    remember(served);
}

std::vector<AutostartMirror::OwnEntry> AutostartMirror::ownEntries() {
    std::vector<OwnEntry> own;
    OSStatus status = kNoErr;
    auto folder = LinuxFiles().openFolder(path_, FolderDetail::Names, status);
    std::vector<FolderEntry> batch;
    if (folder) folder->nextBatch(SIZE_MAX, batch);
    for (const FolderEntry& entry : batch) {
        if (!isAutostartFileName(entry.name)) continue;
        std::string contents;
        Failure failure = readDescription(files_, folder_.number(), entry.name.c_str(), contents);
        if (!failure && autostartPathValue(contents)) own.push_back({entry.name, std::move(contents)});
    }
    return own;
}

// What cannot be started now, perhaps because its disk is not there, keeps the entry that it has. True when the item is
// served: its entry is there, or the user has removed it.
bool AutostartMirror::updateEntry(const Item& item, const OwnEntry* entry, const ApplicationEnvironment& environment) {
    bool isNew = isNewWish(item, entry);
    if (!entry && !isNew) return true;
    std::optional<StartDescription> start = startDescription(item.path, environment);
    if (!start) {
        complain(formatted("Login item %@: there is nothing that can be started", {item.path}));
        return entry && !isNew;
    }
    std::string text = autostartEntry(item.path, item.hide, *start);
    if (entry && !isNew && hasLinesOf(entry->contents, text)) return true;
    if (entry && !isNew) text += linesOfTheDesktop(entry->contents);
    Failure failure = write(text, item, entry);
    if (!failure) return true;
    (void)files_.remove(folder_.number(), kTemporaryName);
    report(item.path, failure);
    return false;
}

Failure AutostartMirror::write(std::string_view text, const Item& item, const OwnEntry* replaced) {
    Descriptor file;
    if (Failure failure = makeTemporary(files_, folder_.number(), kTemporaryName, 0644, file)) return failure;
    giveToOwnerOf(files_, folder_.number(), file.number());
    if (Failure failure = writeAndFlush(files_, file.number(), text)) return failure;
    int error =
        replaced ? files_.rename(folder_.number(), kTemporaryName, replaced->name.c_str()) : moveToFreeName(item);
    if (error == 0) error = files_.flush(folder_.number());
    return error < 0 ? Failure{"put the entry in place", -error} : Failure{};
}

int AutostartMirror::moveToFreeName(const Item& item) {
    int error = -EEXIST;
    for (int number = 1; error == -EEXIST && number <= kMostOfOneName; ++number)
        error =
            renameUnlessTaken(files_, folder_.number(), kTemporaryName, autostartFileName(item.path, number).c_str());
    return error;
}

}  // namespace linux
