#include "pane/fontcatalog/FontFileLookup.h"

#include "propertylist/ASCII.h"
#include "propertylist/Unicode.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace fontcatalog {
namespace {

using platform::FolderDomain;
using platform::ItemKind;

constexpr FolderDomain kSearchOrder[] = {FolderDomain::User, FolderDomain::Local, FolderDomain::Network};
// Folders may be vast, and lists may name the same one by ever new paths, or ever new ones that are not there. Beyond
// this each file is asked for by itself, which takes a microsecond instead of memory.
constexpr std::size_t kMostNames = 100'000;
constexpr std::size_t kNamesPerListing = 4;  // which take as much memory as a folder's place among the listings
constexpr std::size_t kBatch = 256;
// Beyond these the system refuses a path or a name, however the folder's listing looks.
constexpr std::size_t kLongestPath = 4095;
constexpr std::size_t kLongestName = 255;

void appendWithSingleSlashes(std::string_view text, std::string& path) {
    if (!text.starts_with('/') && text.find("//") == std::string_view::npos) {
        path += text;
        return;
    }
    for (const char c : text)
        if (c != '/' || path.empty() || path.back() != '/') path += c;
}

// "." and ".." are questions to the file system: what comes before them must exist and be a folder.
bool hasDots(std::string_view path) {
    for (std::size_t dot = path.find("/."); dot != std::string_view::npos; dot = path.find("/.", dot + 1)) {
        const std::string_view rest = path.substr(dot + 2);
        if (rest.empty() || rest.front() == '/' || rest == "." || rest.starts_with("./")) return true;
    }
    return false;
}

std::string withCaseOfFirstLetterChanged(std::string name) {
    const auto letter = std::ranges::find_if(name, propertylist::isASCIILetter);
    if (letter == name.end()) return {};
    *letter ^= 0x20;
    return name;
}

}  // namespace

struct FontFileLookup::Listing {
    enum class State { Listed, Missing, Unreadable } state = State::Unreadable;
    std::vector<platform::FolderEntry> names;  // in the order of their bytes
    std::size_t next = 0;                      // behind the last one found: lists mostly go by the same order
    std::optional<bool> ignoresCase;           // not asked yet

    const platform::FolderEntry* find(std::string_view name) {
        if (next == names.size() || names[next].name != name) {
            const auto less = [](const platform::FolderEntry& a, std::string_view b) { return a.name < b; };
            const auto found = std::lower_bound(names.begin(), names.end(), name, less);
            if (found == names.end() || found->name != name) return nullptr;
            next = static_cast<std::size_t>(found - names.begin());
        }
        return &names[next++];
    }
};

struct FontFileLookup::Domain {
    std::string folder;  // with a final slash; empty when there is no such folder
    std::unordered_map<std::string, Listing, StringHash, std::equal_to<>> listings;  // by full path
    std::string lastFolder;  // with its listing: the next file is mostly there too
    Listing* last = nullptr;
    Listing unlisted;  // of all folders beyond the limit
};

FontFileLookup::FontFileLookup(platform::FileServices& files) : files_(files), namesLeft_(kMostNames) {}
FontFileLookup::~FontFileLookup() = default;

std::optional<std::string> FontFileLookup::getFontFileForSubpath(std::optional<std::string_view> relativePath) {
    for (const FolderDomain domain : kSearchOrder)
        if (auto path = getFontFileForSubpath_inDomain(relativePath, domain)) return path;
    return std::nullopt;
}

std::optional<std::string> FontFileLookup::getFontFileForSubpath_inDomain(std::optional<std::string_view> relativePath,
                                                                          FolderDomain domain) {
    Domain& place = domainNamed(domain);
    if (!relativePath || place.folder.empty()) return std::nullopt;
    std::string path = place.folder;
    path.reserve(path.size() + relativePath->size());
    appendWithSingleSlashes(*relativePath, path);
    if (!exists(place, path)) return std::nullopt;
    return path;
}

FontFileLookup::Domain& FontFileLookup::domainNamed(FolderDomain domain) {
    auto& place = domains_[domain];
    if (place) return *place;
    place = std::make_unique<Domain>();
    if (const auto support = files_.folder(domain, platform::FolderKind::ApplicationSupport)) {
        std::string folder;
        appendWithSingleSlashes(*support + "/Adobe/Fonts/", folder);
        if (files_.fileExists(folder)) place->folder = std::move(folder);
    }
    return *place;
}

bool FontFileLookup::exists(Domain& domain, std::string_view path) {
    const std::size_t nameStart = path.rfind('/') + 1;
    const std::string_view name = path.substr(nameStart);
    const std::string_view folder = path.substr(0, nameStart);
    const bool isSameFolder = domain.last && folder == domain.lastFolder;
    const bool isPlain = !name.empty() && name.size() <= kLongestName && path.size() <= kLongestPath &&
                         !hasDots(path.substr(isSameFolder ? nameStart - 1 : domain.folder.size() - 1)) &&
                         path.find('\0') == std::string_view::npos;
    if (!isPlain) return files_.fileExists(path);

    if (!isSameFolder) {
        domain.last = &listingOf(domain, folder);
        domain.lastFolder = folder;
    }
    Listing& listing = *domain.last;
    if (listing.state == Listing::State::Missing) return false;
    if (listing.state == Listing::State::Unreadable) return files_.fileExists(path);
    if (const platform::FolderEntry* found = listing.find(name))
        return found->kind != ItemKind::Unresolved || files_.fileExists(path);
    // A file system may know one file by several forms of its name.
    return (!propertylist::isASCII(name) || ignoresCase(listing, folder)) && files_.fileExists(path);
}

FontFileLookup::Listing& FontFileLookup::listingOf(Domain& domain, std::string_view folder) {
    if (const auto known = domain.listings.find(folder); known != domain.listings.end()) return known->second;
    if (namesLeft_ < kNamesPerListing) return domain.unlisted;
    namesLeft_ -= kNamesPerListing;
    Listing& listing = domain.listings[std::string(folder)];
    std::size_t count = 0;
    const auto isWithinLimit = [&](const platform::FolderEntry&) { return ++count <= namesLeft_; };
    platform::OSStatus status;
    const auto iterator = files_.openFolder(folder, platform::FolderDetail::Names, status, isWithinLimit);
    if (status == platform::kFileNotFound || status == platform::kNotAFolder) listing.state = Listing::State::Missing;
    // A folder may be readable and yet closed to those who want one of its files.
    if (!iterator || !files_.fileExists(std::string(folder) + ".")) return listing;
    if (count > namesLeft_) {
        namesLeft_ = 0;
        return listing;
    }
    namesLeft_ -= count;
    listing.names.reserve(count);
    std::vector<platform::FolderEntry> entries;
    for (iterator->nextBatch(kBatch, entries); !entries.empty(); iterator->nextBatch(kBatch, entries))
        listing.names.insert(listing.names.end(), std::move_iterator(entries.begin()),
                             std::move_iterator(entries.end()));
    // Other platforms may list in another order.
    const auto less = [](const platform::FolderEntry& a, const platform::FolderEntry& b) { return a.name < b.name; };
    if (!std::is_sorted(listing.names.begin(), listing.names.end(), less))
        std::sort(listing.names.begin(), listing.names.end(), less);
    listing.state = Listing::State::Listed;
    return listing;
}

bool FontFileLookup::ignoresCase(Listing& listing, std::string_view folder) {
    if (listing.ignoresCase) return *listing.ignoresCase;
    listing.ignoresCase = false;
    for (const auto& entry : listing.names) {
        const std::string other = withCaseOfFirstLetterChanged(entry.name);
        if (other.empty() || entry.kind == ItemKind::Unresolved || listing.find(other)) continue;
        listing.ignoresCase = files_.fileExists(std::string(folder) + other);
        break;
    }
    return *listing.ignoresCase;
}

}  // namespace fontcatalog
