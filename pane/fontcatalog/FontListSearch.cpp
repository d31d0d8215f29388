#include "pane/fontcatalog/FontListSearch.h"

#include "propertylist/ASCII.h"

#include <algorithm>
#include <limits>
#include <map>
#include <string>
#include <utility>

namespace fontcatalog {
namespace {

using platform::FolderDomain;
using platform::FolderEntry;
using platform::ItemKind;
using platform::OSStatus;
using platform::PropertyList;

constexpr std::size_t kBatch = 40;
constexpr std::string_view kListFolder = "/Adobe/TypeSpt/";
constexpr unsigned kAllLevels = std::numeric_limits<unsigned>::max();

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    const auto same = [](char a, char b) { return propertylist::lowerASCII(a) == propertylist::lowerASCII(b); };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

bool isFontListName(std::string_view name) {
    return containsIgnoringCase(name, "AdobeFnt") && containsIgnoringCase(name, ".lst");
}

std::string fileUrl(std::string_view path) {
    constexpr std::string_view kPlain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/!$&'()*+,;=:@";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string url = "file://";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (kPlain.find(c) != std::string_view::npos)
            url += c;
        else
            url.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
    }
    return url;
}

// What a folder's listing need hold. Links, and what the file system gives no type for, may be anything.
bool mayMatter(const FolderEntry& entry) {
    if (entry.kind == ItemKind::RegularFile) return !entry.isInvisible && isFontListName(entry.name);
    return entry.kind != ItemKind::Other;
}

class Search {
public:
    Search(const Context& context, std::vector<PropertyList>& array) : context_(context), array_(array) {}

    // `folder` ends in a slash; so many levels of folders below it are entered too.
    OSStatus enter(const std::string& folder, unsigned levels) {
        std::vector<Below> below;
        OSStatus status = readFolder(folder, levels, below);
        for (const Below& each : below)
            if (!isEntered(each.identity, each.levels)) status = enter(folder + each.name + "/", each.levels);
        return status;
    }

private:
    struct Below {
        std::string name;
        platform::ItemIdentity identity;
        unsigned levels;
    };

    // Where links let the search go less deep before, it goes on from there.
    bool isEntered(const platform::ItemIdentity& folder, unsigned levels) const {
        const auto known = entered_.find(folder);
        return known != entered_.end() && known->second >= levels;
    }

    // The iterator is closed at the end: a deep tree shall not use up the descriptors.
    OSStatus readFolder(const std::string& folder, unsigned levels, std::vector<Below>& below) {
        if (isEnough(folder, levels)) return platform::kNoErr;
        OSStatus status = platform::kNoErr;
        const auto iterator = context_.files.openFolder(folder, platform::FolderDetail::Everything, status, mayMatter);
        if (!iterator || isEntered(iterator->identity(), levels)) return status;
        const bool isNew = entered_.insert_or_assign(iterator->identity(), levels).second;
        if (levels != kAllLevels) ++enteredByLinks_;
        std::vector<FolderEntry> entries;
        for (iterator->nextBatch(kBatch, entries); !entries.empty(); iterator->nextBatch(kBatch, entries))
            for (const FolderEntry& entry : entries) {
                if (entry.kind == ItemKind::Folder)
                    addFolder(folder, entry, iterator->identity().device, levels, below);
                else if (isNew && entry.kind == ItemKind::RegularFile && !entry.isInvisible)
                    addFile(folder, entry);
            }
        return status;
    }

    bool isEnough(const std::string& folder, unsigned levels) {
        if (entered_.size() < kMostFolders && (levels == kAllLevels || enteredByLinks_ < kMostFoldersByLinks))
            return false;
        if (!std::exchange(saidEnough_, true)) context_.passOver(folder, platform::kTooMany);
        return true;
    }

    void addFolder(const std::string& folder, const FolderEntry& entry, std::uint64_t device, unsigned levels,
                   std::vector<Below>& below) {
        if (levels == 0) return;
        // What is mounted behind a link is not its file system either.
        const bool isByLink = entry.isLink || levels != kAllLevels;
        if (!isByLink || entry.identity.device == device)
            below.push_back(
                {entry.name, entry.identity, isByLink ? std::min(levels - 1, kLevelsBelowLink) : kAllLevels});
        else if (levels == kAllLevels)
            context_.passOver(folder + entry.name, platform::kOtherVolume);
    }

    void addFile(const std::string& folder, const FolderEntry& entry) {
        if (!isFontListName(entry.name)) return;
        const std::string path = folder + entry.name;
        context_.diagnostics("[TS] Found Adobe Font List document: %@\n", fileUrl(path));
        const PropertyList text = path;
        if (!text) return context_.passOver(path, platform::kBadName);
        if (!entry.modified) return;
        array_.push_back(PropertyList::dictionary({{kPathKey, text}, {kModificationDateKey, *entry.modified}}));
    }

    const Context& context_;
    std::vector<PropertyList>& array_;
    std::map<platform::ItemIdentity, unsigned> entered_;  // with the levels that were allowed below
    std::size_t enteredByLinks_ = 0;
    bool saidEnough_ = false;
};

}  // namespace

PropertyList getAdobeFilesArray(const Context& context) {
    std::optional<std::vector<PropertyList>> array;
    for (const FolderDomain domain : kListDomains) array = scanDomain_addingToArray(context, domain, std::move(array));
    return PropertyList::array(std::move(*array));
}

std::optional<std::string> listFolder(platform::FileServices& files, FolderDomain domain) {
    auto support = files.folder(domain, platform::FolderKind::ApplicationSupport);
    if (support) support->append(kListFolder);
    return support;
}

std::optional<std::vector<PropertyList>> scanDomain_addingToArray(const Context& context,
                                                                  std::optional<FolderDomain> domain,
                                                                  std::optional<std::vector<PropertyList>> array) {
    if (!domain) return array;
    if (!array) array.emplace();
    const auto folder = listFolder(context.files, *domain);
    if (!folder) return array;
    if (const OSStatus status = SearchFolderForAdobeFontLists(context, *folder, *array))
        context.diagnostics("Could Not scan %@ due to error %d\n", *folder, status);
    return array;
}

OSStatus SearchFolderForAdobeFontLists(const Context& context, std::string_view folder,
                                       std::vector<PropertyList>& array) {
    std::string withSlash(folder);
    if (!withSlash.ends_with('/')) withSlash += '/';
    return Search(context, array).enter(withSlash, kAllLevels);
}

}  // namespace fontcatalog
