#include "pane/fontcatalog/AdobeNames.h"

#include "pane/fontcatalog/FontListReader.h"
#include "pane/fontcatalog/FontListSearch.h"
#include "pane/fontcatalog/NameDatabaseReader.h"
#include "pane/fontcatalog/TextEncoding.h"

#include <algorithm>

namespace fontcatalog {

namespace {

using platform::FolderDomain;
using platform::PropertyList;

// A value that is no dictionary has no entries to compare.
bool areEqualAsDictionaries(const PropertyList& a, const PropertyList& b) {
    return a.isDictionary() && b.isDictionary() && a == b;
}

bool isCacheUpToDate(CFPreferencesWrapper_Typeslate* cache, const PropertyList& storedFiles, bool filesMatch,
                     bool isNewerVersion) {
    return cache && cache->dictionaryForKey(kAllNamesKey) && !isNewerVersion && storedFiles && filesMatch;
}

bool store(CFPreferencesWrapper_Typeslate& cache, const PropertyList& names, float version, const PropertyList& files) {
    cache.setObject_forKey(names, kAllNamesKey);
    cache.setFloat_forKey(version, kVersionKey);
    cache.setObject_forKey(files, kFilesKey);
    return cache.synchronize();
}

std::shared_ptr<const std::string> readText(const Context& context, std::string_view path, std::size_t most) {
    platform::OSStatus status;
    auto bytes = context.files.readFile(path, most, status);
    if (!bytes) context.passOver(path, status);
    return bytes;
}

NamesCollection scanLists(const Context& context, const PropertyList& lists, NamesCollection names,
                          ListReading& reading) {
    for (std::size_t i = 0; i < lists.size(); ++i) {
        scanFontList_forNames(context, lists[i][kPathKey].stringValue(), &names, reading);
        if (context.progress) context.progress(i + 1, lists.size());
    }
    return names;
}

}  // namespace

std::vector<std::string> adobeDBPlaces(platform::FileServices& files) {
    std::vector<std::string> places;
    for (const FolderDomain domain : {FolderDomain::Local, FolderDomain::Classic})
        if (const auto support = files.folder(domain, platform::FolderKind::ApplicationSupport))
            places.push_back(*support + "/Adobe/TypeSpt/FntNames.db");
    return places;
}

std::optional<std::string> adobeDBPath(platform::FileServices& files) {
    for (std::string& place : adobeDBPlaces(files))
        if (files.fileExists(place)) return std::move(place);
    return std::nullopt;
}

float adobeDBVersion(const Context& context) {
    const auto path = adobeDBPath(context.files);
    return path ? nameDatabaseVersion(decodedText(readText(context, *path, kLargestText)).characters) : 0;
}

void scanFontList_forNames(const Context& context, std::optional<std::string_view> path, NamesCollection* names,
                           ListReading& reading) {
    if (!path || !names) return;
    context.diagnostics("Scanning %@", *path);
    auto bytes = readText(context, *path, std::min(kLargestText, reading.textLeft));
    if (!bytes) return;
    const std::size_t size = bytes->size();
    const FontFileFinder find = [&](std::string_view relative) {
        return reading.lookup.getFontFileForSubpath(relative);
    };
    readFontList(listText(std::move(bytes)), *path, find, context.diagnostics, *names);
    reading.textLeft -= size;
    reading.kept.add(size, *names);
}

NamesCollection scanAdobeFontLists(const Context& context, std::optional<NamesCollection> names) {
    ListReading reading{FontFileLookup(context.files)};
    return scanLists(context, getAdobeFilesArray(context), names ? std::move(*names) : NamesCollection(), reading);
}

void adobeNames(const Context& context, Catalogue& catalogue, PropertyList lists) {
    if (catalogue.state != Catalogue::State::NotBuilt) return;
    const auto path = adobeDBPath(context.files);
    if (!path) {
        catalogue.state = Catalogue::State::Unavailable;
        return;
    }
    NamesCollection names;
    ListReading reading{FontFileLookup(context.files)};
    if (auto bytes = readText(context, *path, kLargestText)) {
        const std::size_t size = bytes->size();
        readNameDatabase(decodedText(std::move(bytes)), names);
        reading.kept.add(size, names);
    }
    if (!lists || context.diagnostics.isOn()) lists = getAdobeFilesArray(context);
    catalogue.names = scanLists(context, lists, std::move(names), reading).freeze();
    catalogue.state = Catalogue::State::Built;
}

bool isFileSetUnchanged(const PropertyList& stored, const PropertyList& current, platform::Log& diagnostics) {
    if (!stored.isArray() || !current.isArray() || stored.size() != current.size() || stored == current) return false;
    for (std::size_t i = 0; i < stored.size(); ++i) {
        if (areEqualAsDictionaries(stored[i], current[i])) continue;
        diagnostics("%@ does not equal %@", stored[i], current[i]);
        return false;
    }
    return true;
}

CacheCheck checkFontNameCache(const Context& context, CFPreferencesWrapper_Typeslate* cache, Catalogue& catalogue) {
    CacheCheck check;
    PropertyList storedFiles = cache ? cache->objectForKey(kFilesKey) : PropertyList();
    if (storedFiles) check.files = getAdobeFilesArray(context);
    const float storedVersion = cache ? cache->floatForKey(kVersionKey) : 0;
    const float actualVersion = adobeDBVersion(context);
    const bool isNewerVersion = actualVersion > storedVersion;
    const bool filesMatch = isFileSetUnchanged(storedFiles, check.files, context.diagnostics);
    if (isCacheUpToDate(cache, storedFiles, filesMatch, isNewerVersion)) return check;

    check.isRebuilt = true;
    storedFiles = {};  // which holds the whole of the old cache
    if (!check.files) check.files = getAdobeFilesArray(context);
    context.diagnostics("Stored Version (%f) versus actual version (%f), %d", storedVersion, actualVersion,
                        isNewerVersion);
    context.log("Rebuilding");
    adobeNames(context, catalogue, check.files);
    if (cache && catalogue.state == Catalogue::State::Built)
        check.isStored = store(*cache, catalogue.names, actualVersion, check.files);
    return check;
}

}  // namespace fontcatalog
