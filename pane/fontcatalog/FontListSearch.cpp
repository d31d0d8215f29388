#include "pane/fontcatalog/FontListSearch.h"

#include "propertylist/ASCII.h"

#include <algorithm>
#include <set>
#include <string>

namespace fontcatalog {
namespace {

using platform::FolderDomain;
using platform::FolderEntry;
using platform::OSStatus;
using platform::PropertyList;

constexpr std::size_t kBatch = 40;
constexpr std::string_view kListFolder = "/Adobe/TypeSpt/";

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

class Search {
public:
    Search(platform::FileServices& files, platform::Log& log, std::vector<PropertyList>& array)
        : files_(files), log_(log), array_(array) {}

    // `folder` ends in a slash.
    OSStatus enter(const std::string& folder) {
        std::vector<std::string> folders;
        OSStatus status = readFolder(folder, folders);
        for (const std::string& name : folders) status = enter(folder + name + "/");
        return status;
    }

private:
    // The iterator is closed at the end: a deep tree shall not use up the descriptors.
    OSStatus readFolder(const std::string& folder, std::vector<std::string>& folders) {
        OSStatus status = platform::kNoErr;
        const auto iterator = files_.openFolder(folder, platform::FolderDetail::Everything, status);
        if (!iterator || !entered_.insert(iterator->identity()).second) return status;
        std::vector<FolderEntry> entries;
        for (iterator->nextBatch(kBatch, entries); !entries.empty(); iterator->nextBatch(kBatch, entries))
            for (const FolderEntry& entry : entries) {
                if (entry.kind == platform::ItemKind::Folder)
                    folders.push_back(entry.name);
                else if (entry.kind == platform::ItemKind::RegularFile && !entry.isInvisible)
                    addFile(folder, entry);
            }
        return status;
    }

    void addFile(const std::string& folder, const FolderEntry& entry) {
        if (!isFontListName(entry.name)) return;
        const std::string path = folder + entry.name;
        log_("[TS] Found Adobe Font List document: %@\n", fileUrl(path));
        const PropertyList text = path;
        if (!text || !entry.modified) return;
        array_.push_back(PropertyList::dictionary({{kPathKey, text}, {kModificationDateKey, *entry.modified}}));
    }

    platform::FileServices& files_;
    platform::Log& log_;
    std::vector<PropertyList>& array_;
    std::set<platform::ItemIdentity> entered_;
};

}  // namespace

PropertyList getAdobeFilesArray(platform::FileServices& files, platform::Log& log) {
    std::optional<std::vector<PropertyList>> array;
    for (const FolderDomain domain : {FolderDomain::User, FolderDomain::Local, FolderDomain::Network})
        array = scanDomain_addingToArray(files, log, domain, std::move(array));
    return PropertyList::array(std::move(*array));
}

std::optional<std::vector<PropertyList>> scanDomain_addingToArray(platform::FileServices& files, platform::Log& log,
                                                                  std::optional<FolderDomain> domain,
                                                                  std::optional<std::vector<PropertyList>> array) {
    if (!domain) return array;
    if (!array) array.emplace();
    const auto support = files.folder(*domain, platform::FolderKind::ApplicationSupport);
    if (!support) return array;
    const std::string folder = *support + std::string(kListFolder);
    if (const OSStatus status = SearchFolderForAdobeFontLists(files, log, folder, *array))
        log("Could Not scan %@ due to error %d\n", folder, status);
    return array;
}

OSStatus SearchFolderForAdobeFontLists(platform::FileServices& files, platform::Log& log, std::string_view folder,
                                       std::vector<PropertyList>& array) {
    std::string withSlash(folder);
    if (!withSlash.ends_with('/')) withSlash += '/';
    return Search(files, log, array).enter(withSlash);
}

}  // namespace fontcatalog
