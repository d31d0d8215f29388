#include "linux/applications/ApplicationScan.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace linux {

using namespace platform;

namespace {

constexpr std::string_view kInformationFile = "/Contents/Info.plist";
// How long ago a folder changed; negative when its time lies in the future.
std::chrono::nanoseconds age(const FileStamp& stamp) {
    const std::chrono::nanoseconds now = std::chrono::system_clock::now().time_since_epoch();
    return now - std::chrono::nanoseconds(std::max(stamp.modified, stamp.changed));
}

struct FolderItem {
    std::string name;
    unsigned char type;  // DT_REG, DT_DIR, DT_LNK or DT_UNKNOWN
};

class OpenFolder {
public:
    explicit OpenFolder(const std::string& path) : stream_(::opendir(path.c_str())) {}
    OpenFolder(const OpenFolder&) = delete;
    ~OpenFolder() {
        if (stream_) ::closedir(stream_);
    }
    explicit operator bool() const { return stream_ != nullptr; }
    int descriptor() const { return ::dirfd(stream_); }
    FileStamp stamp() const {
        struct stat status;
        return ::fstat(descriptor(), &status) == 0 ? FileStamp::from(status) : FileStamp();
    }
    std::vector<FolderItem> items() const {
        std::vector<FolderItem> all;
        while (const dirent* item = ::readdir(stream_)) {
            const std::string_view name = item->d_name;
            const bool isOfUse = item->d_type == DT_REG || item->d_type == DT_DIR || item->d_type == DT_LNK ||
                                 item->d_type == DT_UNKNOWN;
            if (isOfUse && name != "." && name != "..") all.push_back({std::string(name), item->d_type});
        }
        std::ranges::sort(all, {}, &FolderItem::name);
        return all;
    }

private:
    DIR* stream_;
};

// Links and unknown types by what they lead to; DT_UNKNOWN for what is neither a file nor a folder or not there.
unsigned char resolvedType(int folder, const FolderItem& item) {
    if (item.type == DT_REG || item.type == DT_DIR) return item.type;
    struct stat status;
    if (::fstatat(folder, item.name.c_str(), &status, 0) != 0) return DT_UNKNOWN;
    return S_ISREG(status.st_mode) ? DT_REG : S_ISDIR(status.st_mode) ? DT_DIR : DT_UNKNOWN;
}

// One pass over all folders.
class Pass {
public:
    Pass(const ApplicationEnvironment& environment, std::chrono::nanoseconds granularity, SmallFileReader& reader,
         bool everyFile, std::vector<ScannedFolder>& old)
        : environment_(environment), granularity_(granularity), reader_(reader), everyFile_(everyFile) {
        for (ScannedFolder& folder : old) {
            oldFiles_ += folder.files.size();
            old_.emplace(folder.path, &folder);
        }
    }

    void scanTree(const std::string& root, bool isOfBundles) {
        isOfBundles_ = isOfBundles;
        const std::size_t maximumDepth =
            isOfBundles ? ApplicationScan::kMaximumBundleDepth : ApplicationScan::kMaximumDesktopEntryDepth;
        seen_.clear();
        std::size_t next = folders_.size();
        addFolder(root, 0);
        for (; next < folders_.size(); ++next) {
            if (folders_[next].depth == maximumDepth) continue;
            const std::string path = folders_[next].path + "/";
            const std::vector<std::string> subfolders = folders_[next].subfolders;
            for (const std::string& name : subfolders) addFolder(path + name, folders_[next].depth + 1);
        }
    }

    bool differs() const { return read_ > 0 || reused_ != oldFiles_; }
    std::vector<ScannedFolder> takeFolders() { return std::move(folders_); }

private:
    void addFolder(const std::string& path, std::size_t depth) {
        if (folders_.size() >= ApplicationScan::kMaximumFolders) return;
        const FileStamp stamp = FileStamp::of(AT_FDCWD, path.c_str());
        if (seen_.emplace(stamp.device, stamp.inode).second) folders_.push_back(scanFolder(path, depth));
    }

    ScannedFolder* oldFolder(const std::string& path) {
        const auto found = old_.find(path);
        return found == old_.end() ? nullptr : std::exchange(found->second, nullptr);
    }

    ScannedFolder scanFolder(const std::string& path, std::size_t depth) {
        ScannedFolder* old = oldFolder(path);
        if (old && old->isSettled && FileStamp::of(AT_FDCWD, path.c_str()) == old->stamp) return keepFolder(*old);
        ScannedFolder folder;
        folder.path = path;
        folder.depth = depth;
        folder.isSettled = true;
        const OpenFolder open(path);
        if (!open) return folder;
        folder.stamp = open.stamp();
        folder.isSettled = std::chrono::abs(age(folder.stamp)) > granularity_;
        listFolder(open, old, folder);
        return folder;
    }

    ScannedFolder keepFolder(ScannedFolder& old) {
        ScannedFolder folder = std::move(old);
        if (!everyFile_) {
            reused_ += folder.files.size();
            return folder;
        }
        const int descriptor = ::open(folder.path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        for (ScannedFile& file : folder.files) file = scanFile(descriptor, folder.path, file.name, &file);
        if (descriptor >= 0) ::close(descriptor);
        return folder;
    }

    void listFolder(const OpenFolder& open, ScannedFolder* old, ScannedFolder& folder) {
        const std::string_view suffix = isOfBundles_ ? kBundleSuffix : kDesktopEntrySuffix;
        std::vector<std::string> links;
        for (const FolderItem& item : open.items()) {
            const bool isNamedSo = item.name.size() > suffix.size() && item.name.ends_with(suffix);
            if (item.type == DT_REG && !isNamedSo) continue;
            const unsigned char type = resolvedType(open.descriptor(), item);
            // A link that leads nowhere yet is kept in view: its folder's time does not change when its target comes.
            const bool isFile = isOfBundles_ ? type == DT_DIR : type == DT_REG || isDangling(open.descriptor(), item);
            if (isNamedSo && isFile)
                folder.files.push_back(
                    scanFile(open.descriptor(), folder.path, item.name, old ? find(*old, item.name) : nullptr));
            else if (type == DT_DIR)
                (item.type == DT_LNK ? links : folder.subfolders).push_back(item.name);
        }
        folder.subfolders.insert(folder.subfolders.end(), links.begin(), links.end());
    }

    static bool isDangling(int folder, const FolderItem& item) {
        return item.type == DT_LNK && FileStamp::of(folder, item.name.c_str()) == FileStamp();
    }

    static ScannedFile* find(ScannedFolder& folder, const std::string& name) {
        const auto found = std::ranges::lower_bound(folder.files, name, {}, &ScannedFile::name);
        return found != folder.files.end() && found->name == name ? &*found : nullptr;
    }

    ScannedFile scanFile(int folder, const std::string& folderPath, const std::string& name, ScannedFile* old) {
        const std::string readName = isOfBundles_ ? name + std::string(kInformationFile) : name;
        if (old && old->stamp == FileStamp::of(folder, readName.c_str())) {
            ++reused_;
            return std::move(*old);
        }
        ++read_;
        ScannedFile file{name, {}, nullptr};
        const std::optional<std::string_view> bytes = reader_.read(folder, readName.c_str());
        file.stamp = bytes ? reader_.stamp() : FileStamp::of(folder, readName.c_str());
        if (bytes) file.record = recordOf(folderPath + "/" + name, *bytes);
        return file;
    }

    std::shared_ptr<const ApplicationRecord> recordOf(std::string path, std::string_view bytes) const {
        std::optional<ApplicationRecord> record;
        if (isOfBundles_) {
            record = bundleRecord(std::move(path), bytes);
        } else {
            std::string identifier = environment_.desktopEntryIdentifier(path).value_or("");
            record = desktopEntryRecord(std::move(path), std::move(identifier), bytes, environment_);
        }
        if (!record) return nullptr;
        return std::make_shared<const ApplicationRecord>(std::move(*record));
    }

    const ApplicationEnvironment& environment_;
    const std::chrono::nanoseconds granularity_;
    SmallFileReader& reader_;
    const bool everyFile_;
    bool isOfBundles_ = false;
    std::unordered_map<std::string, ScannedFolder*> old_;
    std::size_t oldFiles_ = 0, reused_ = 0, read_ = 0;
    std::set<std::pair<std::uint64_t, std::uint64_t>> seen_;  // folders of the tree at hand
    std::vector<ScannedFolder> folders_;
};

}  // namespace

bool ApplicationScan::refresh(bool everyFile) {
    if (isScanned_ && !everyFile && !foldersChanged()) return false;
    Pass pass(environment_, granularity_, reader_, everyFile, folders_);
    for (const std::string& folder : environment_.desktopEntryFolders) pass.scanTree(folder, false);
    for (const std::string& folder : environment_.bundleFolders) pass.scanTree(folder, true);
    const bool differs = pass.differs() || !isScanned_;
    folders_ = pass.takeFolders();
    isScanned_ = true;
    return differs;
}

bool ApplicationScan::foldersChanged() const {
    return std::ranges::any_of(folders_, [](const ScannedFolder& folder) {
        return !folder.isSettled || FileStamp::of(AT_FDCWD, folder.path.c_str()) != folder.stamp;
    });
}

}  // namespace linux
