#include "pane/fontcatalog/AdobeNames.h"

#include "pane/fontcatalog/FontListReader.h"
#include "pane/fontcatalog/FontListSearch.h"
#include "pane/fontcatalog/NameDatabaseReader.h"
#include "pane/fontcatalog/TextEncoding.h"

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

}  // namespace

std::optional<std::string> adobeDBPath(platform::FileServices& files) {
    for (const FolderDomain domain : {FolderDomain::Local, FolderDomain::Classic}) {
        const auto support = files.folder(domain, platform::FolderKind::ApplicationSupport);
        if (!support) continue;
        if (std::string path = *support + "/Adobe/TypeSpt/FntNames.db"; files.fileExists(path)) return path;
    }
    return std::nullopt;
}

float adobeDBVersion(platform::FileServices& files) {
    const auto path = adobeDBPath(files);
    return path ? nameDatabaseVersion(decodedText(files.readFile(*path)).characters) : 0;
}

void scanFontList_forNames(const Context& context, std::optional<std::string_view> path, NamesCollection* names,
                           FontFileLookup& lookup) {
    if (!path || !names) return;
    context.log("Scanning %@", *path);
    auto bytes = context.files.readFile(*path);
    if (!bytes) return;
    const FontFileFinder find = [&](std::string_view relative) { return lookup.getFontFileForSubpath(relative); };
    readFontList(listText(std::move(bytes)), *path, find, context.log, *names);
}

NamesCollection scanAdobeFontLists(const Context& context, std::optional<NamesCollection> names) {
    if (!names) names.emplace();
    FontFileLookup lookup(context.files);
    const PropertyList lists = getAdobeFilesArray(context.files, context.log);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        scanFontList_forNames(context, lists[i][kPathKey].stringValue(), &*names, lookup);
        if (context.progress) context.progress(i + 1, lists.size());
    }
    return std::move(*names);
}

void adobeNames(const Context& context, Catalogue& catalogue) {
    if (catalogue.state != Catalogue::State::NotBuilt) return;
    const auto path = adobeDBPath(context.files);
    if (!path) {
        catalogue.state = Catalogue::State::Unavailable;
        return;
    }
    std::optional<NamesCollection> names;
    if (auto bytes = context.files.readFile(*path)) {
        names.emplace();
        readNameDatabase(decodedText(std::move(bytes)), *names);
    }
    catalogue.names = scanAdobeFontLists(context, std::move(names)).freeze();
    catalogue.state = Catalogue::State::Built;
}

bool isFileSetUnchanged(const PropertyList& stored, const PropertyList& current, platform::Log& log) {
    if (!stored.isArray() || !current.isArray() || stored.size() != current.size() || stored == current) return false;
    for (std::size_t i = 0; i < stored.size(); ++i) {
        if (areEqualAsDictionaries(stored[i], current[i])) continue;
        log("%@ does not equal %@", stored[i], current[i]);
        return false;
    }
    return true;
}

CacheCheck checkFontNameCache(const Context& context, CFPreferencesWrapper_Typeslate* cache, Catalogue& catalogue) {
    CacheCheck check;
    PropertyList storedFiles = cache ? cache->objectForKey(kFilesKey) : PropertyList();
    if (storedFiles) check.files = getAdobeFilesArray(context.files, context.log);
    const float storedVersion = cache ? cache->floatForKey(kVersionKey) : 0;
    const float actualVersion = adobeDBVersion(context.files);
    const bool isNewerVersion = actualVersion > storedVersion;
    const bool filesMatch = isFileSetUnchanged(storedFiles, check.files, context.log);
    if (isCacheUpToDate(cache, storedFiles, filesMatch, isNewerVersion)) return check;

    check.isRebuilt = true;
    storedFiles = {};  // which holds the whole of the old cache
    if (!check.files) check.files = getAdobeFilesArray(context.files, context.log);
    context.log("Stored Version (%f) versus actual version (%f), %d", storedVersion, actualVersion, isNewerVersion);
    context.log("Rebuilding");
    adobeNames(context, catalogue);
    if (cache && catalogue.state == Catalogue::State::Built)
        check.isStored = store(*cache, catalogue.names, actualVersion, check.files);
    return check;
}

}  // namespace fontcatalog
