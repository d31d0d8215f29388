#include "linux/applications/ApplicationIndex.h"

#include <unordered_set>
#include <utility>

namespace linux {

using namespace platform;

ApplicationIndex::ApplicationIndex(const ApplicationEnvironment& environment, Clock clock)
    : clock_(std::move(clock)), scan_(environment) {}

bool ApplicationIndex::refresh() {
    const auto now = clock_();
    if (isScanned_ && now - foldersSeen_ < kFolderInterval) return false;
    look(isScanned_ && now - filesSeen_ >= kFileInterval, now);
    return true;
}

void ApplicationIndex::refreshFully() { look(isScanned_, clock_()); }

void ApplicationIndex::look(bool everyFile, std::chrono::steady_clock::time_point now) {
    if (everyFile || !isScanned_) filesSeen_ = now;
    foldersSeen_ = now;
    isScanned_ = true;
    if (scan_.refresh(everyFile)) rebuild();
}

void ApplicationIndex::rebuild() {
    ++generation_;
    byIdentifier_.clear();
    bundlesByName_.clear();
    entriesByName_.clear();
    byCreator_.clear();
    byPath_.clear();
    all_.clear();
    std::unordered_set<std::string_view> claimed;  // identifiers of desktop entries: the first file has it
    for (const ScannedFolder& folder : scan_.folders())
        for (const ScannedFile& file : folder.files) {
            if (!file.record) continue;
            const ApplicationRecord& record = *file.record;
            byPath_.emplace(record.path, &record);
            if (!record.isBundle && !claimed.insert(record.identifier).second) continue;
            if (record.isApplication) add(record);
        }
}

void ApplicationIndex::add(const ApplicationRecord& record) {
    all_.push_back(&record);
    if (!record.identifier.empty()) byIdentifier_[record.identifier].push_back(&record);
    if (record.creator != kUnknownCreator) byCreator_[record.creator].push_back(&record);
    (record.isBundle ? bundlesByName_ : entriesByName_)[record.searchName].push_back(&record);
}

ApplicationIndex::Candidates ApplicationIndex::withFileName(std::string_view name) const {
    if (!name.ends_with(kBundleSuffix)) return {};
    if (const Candidates bundles = find(bundlesByName_, name); !bundles.empty()) return bundles;
    name.remove_suffix(kBundleSuffix.size());
    return find(entriesByName_, name);
}

const ApplicationRecord* ApplicationIndex::atPath(std::string_view path) const {
    const auto found = byPath_.find(path);
    return found == byPath_.end() ? nullptr : found->second;
}

}  // namespace linux
