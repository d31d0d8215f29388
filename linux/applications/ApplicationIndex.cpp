#include "linux/applications/ApplicationIndex.h"

#include "linux/applications/DesktopEntry.h"
#include "linux/files/LinuxFiles.h"
#include "linux/files/WholeFile.h"

#include <fcntl.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

namespace linux {

using namespace platform;

namespace {

// Unresolved: a link that leads nowhere.
ItemKind kindBehind(const std::string& link) {
    std::error_code error;
    switch (std::filesystem::status(link, error).type()) {
        case std::filesystem::file_type::directory:
            return ItemKind::Folder;
        case std::filesystem::file_type::regular:
            return ItemKind::RegularFile;
        case std::filesystem::file_type::not_found:
            return ItemKind::Unresolved;
        default:
            return ItemKind::Other;
    }
}

// A time in the future is as far away as one in the past.
bool isLongAgo(const FileIdentity& stamp, std::chrono::nanoseconds granularity) {
    std::chrono::nanoseconds now = std::chrono::system_clock::now().time_since_epoch();
    std::chrono::nanoseconds changed(std::max(stamp.modified, stamp.changed));
    return std::chrono::abs(now - changed) > granularity;
}

std::string describingFile(const std::string& path, bool isBundle) {
    return isBundle ? path + "/Contents/Info.plist" : path;
}

FileIdentity stampOf(const std::string& path, bool isBundle) {
    return FileIdentity::of(AT_FDCWD, describingFile(path, isBundle).c_str());
}

// "kde-foo" for kde/foo.desktop in the folder.
std::string identifierOf(std::string_view path, std::string_view folder) {
    path.remove_prefix(folder.size() + 1);
    path.remove_suffix(kDesktopEntrySuffix.size());
    std::string identifier(path);
    std::ranges::replace(identifier, '/', '-');
    return identifier;
}

// Empty when only GLib can tell it.
std::string_view plainNameIn(std::string_view bytes) {
    constexpr std::string_view kKey = "\nName=";
    std::size_t key = bytes.find(kKey);
    if (key == bytes.npos) return {};
    if (bytes.find(kKey, key + 1) < bytes.find("\n[", key)) return {};  // the last counts
    std::string_view name = bytes.substr(key + kKey.size());
    name = name.substr(0, name.find('\n'));
    return name.starts_with(' ') || name.find_first_of("\\\t\r") != name.npos ? "" : name;
}

}  // namespace

bool ApplicationIndex::refresh() {
    auto now = clock_();
    bool isFirst = folders_.empty();
    if (!isFirst && now - foldersSeen_ < kFolderInterval) return false;
    foldersSeen_ = now;
    auto hasChanged = [](const Folder& folder) {
        return !folder.isSettled || FileIdentity::of(AT_FDCWD, folder.path.c_str()) != folder.stamp;
    };
    if (isFirst || now - filesSeen_ >= kFileInterval || std::ranges::any_of(folders_, hasChanged)) scan();
    return true;
}

void ApplicationIndex::refreshFully() {
    foldersSeen_ = clock_();
    scan();
}

void ApplicationIndex::scan() {
    filesSeen_ = foldersSeen_;
    oldFiles_ = std::exchange(files_, {});
    folders_.clear();
    inOrder_.clear();
    byIdentifier_.clear();
    byName_.clear();
    bundles_.clear();
    all_.clear();
    for (const std::string& root : environment_.desktopEntryFolders) scanTree({root, false, {{root}}, {}});
    for (const std::string& root : environment_.bundleFolders) scanTree({root, true, {{root}}, {}});
    oldFiles_.clear();
}

void ApplicationIndex::scanTree(Tree tree) {
    int maximum = tree.isOfBundles ? kMaximumBundleDepth : kMaximumDesktopEntryDepth;
    for (int depth = 0; depth <= maximum; ++depth)
        for (const std::string& folder : std::exchange(tree.folders, {})) scanFolder(folder, tree);
}

void ApplicationIndex::scanFolder(const std::string& path, Tree& tree) {
    FileIdentity stamp = FileIdentity::of(AT_FDCWD, path.c_str());
    if (folders_.size() >= kMaximumFolders || !tree.seen.insert(stamp.item()).second) return;
    folders_.push_back({path, stamp, isLongAgo(stamp, granularity_)});
    OSStatus status = kNoErr;
    auto folder = LinuxFiles().openFolder(path, FolderDetail::Names, status);
    std::vector<FolderEntry> items;
    if (folder) folder->nextBatch(SIZE_MAX, items);
    std::vector<std::string> links;  // come last, so that a folder is known by its own name
    for (const FolderEntry& item : items) {
        std::string_view suffix = tree.isOfBundles ? kBundleSuffix : kDesktopEntrySuffix;
        bool isNamedSo = item.name.size() > suffix.size() && item.name.ends_with(suffix);
        if (item.kind == ItemKind::RegularFile && !isNamedSo) continue;
        std::string itemPath = path + "/" + item.name;
        bool isLink = item.kind == ItemKind::Unresolved;
        ItemKind kind = isLink ? kindBehind(itemPath) : item.kind;
        // A link that leads nowhere yet is kept in view: its folder's time does not change when its target comes.
        bool isFile = kind == ItemKind::RegularFile || kind == ItemKind::Unresolved;
        if (isNamedSo && (tree.isOfBundles ? kind == ItemKind::Folder : isFile))
            addFile(itemPath, tree);
        else if (kind == ItemKind::Folder)
            (isLink ? links : tree.folders).push_back(itemPath);
    }
    tree.folders.insert(tree.folders.end(), links.begin(), links.end());
}

void ApplicationIndex::addFile(const std::string& path, const Tree& tree) {
    if (files_.contains(path)) return;  // a folder of one tree may be in another
    auto known = oldFiles_.extract(path);
    FileIdentity stamp = known ? known.mapped().stamp : FileIdentity();
    if (stamp != FileIdentity() && stamp == stampOf(path, tree.isOfBundles))
        files_.insert(std::move(known));
    else
        files_[path] = {path, tree.isOfBundles, tree.isOfBundles ? "" : identifierOf(path, tree.root), {}, {}, {}, {}};
    File* present = &files_.at(path);
    inOrder_.push_back(present);
    if (!tree.isOfBundles)
        byIdentifier_[present->identifier].push_back(present);
    else if (const ApplicationRecord* record = read(*present))
        bundles_.push_back(record);
}

const ApplicationRecord* ApplicationIndex::read(File& file) {
    if (!std::exchange(file.isRead, true)) {
        file.stamp = stampOf(file.path, file.isBundle);
        std::string bytes;
        if (!readDescription(FileAccess::system(), AT_FDCWD, describingFile(file.path, file.isBundle).c_str(), bytes))
            file.record = file.isBundle ? bundleRecord(file.path, bytes)
                                        : desktopEntryRecord(file.path, file.identifier, bytes, environment_);
    }
    return file.record ? &*file.record : nullptr;
}

// The first well-formed file has the identifier, whatever it describes.
const ApplicationRecord* ApplicationIndex::entry(const std::string& identifier) {
    auto files = byIdentifier_.find(identifier);
    if (files == byIdentifier_.end()) return nullptr;
    for (File* file : files->second)
        if (const ApplicationRecord* record = read(*file)) return record->isApplication ? record : nullptr;
    return nullptr;
}

void ApplicationIndex::readNames() {
    std::string bytes;
    for (File* file : inOrder_) {
        if (file->isBundle) continue;
        if (file->name.empty() && !file->isRead) {
            file->stamp = stampOf(file->path, false);
            if (!readDescription(FileAccess::system(), AT_FDCWD, file->path.c_str(), bytes))
                file->name = plainNameIn(bytes);
        }
        const ApplicationRecord* record = file->name.empty() ? read(*file) : nullptr;
        byName_[record ? record->searchName : file->name].push_back(file);
    }
}

const ApplicationIndex::Candidates& ApplicationIndex::all() {
    if (!all_.empty()) return all_;
    for (File* file : inOrder_)
        if (const ApplicationRecord* record = read(*file);
            record && (file->isBundle || entry(file->identifier) == record))
            all_.push_back(record);
    return all_;
}

ApplicationIndex::Candidates ApplicationIndex::withIdentifier(const std::string& identifier) {
    Candidates found;
    if (identifier.empty()) return found;
    if (const ApplicationRecord* record = entry(identifier)) found.push_back(record);
    std::ranges::copy_if(bundles_, std::back_inserter(found), [&](auto* r) { return r->identifier == identifier; });
    return found;
}

ApplicationIndex::Candidates ApplicationIndex::withCreator(FourCharCode creator) const {
    Candidates found;
    if (creator == kUnknownCreator) return found;
    std::ranges::copy_if(bundles_, std::back_inserter(found), [&](auto* r) { return r->creator == creator; });
    return found;
}

ApplicationIndex::Candidates ApplicationIndex::withFileName(std::string_view name) {
    Candidates found;
    if (!name.ends_with(kBundleSuffix)) return found;
    std::ranges::copy_if(bundles_, std::back_inserter(found), [&](auto* r) { return r->searchName == name; });
    if (!found.empty()) return found;
    if (byName_.empty()) readNames();
    std::string plain(name.substr(0, name.size() - kBundleSuffix.size()));
    if (auto files = byName_.find(plain); files != byName_.end())
        for (File* file : files->second)
            if (const ApplicationRecord* record = read(*file); record && entry(file->identifier) == record)
                found.push_back(record);
    return found;
}

const ApplicationRecord* ApplicationIndex::atPath(const std::string& path) {
    auto found = files_.find(path);
    return found == files_.end() ? nullptr : read(found->second);
}

}  // namespace linux
