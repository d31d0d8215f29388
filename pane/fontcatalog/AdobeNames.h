// The catalogue of Adobe font names, and its cache in a preference domain, where the font-menu module reads it.
#pragma once

#include "pane/fontcatalog/FontFileLookup.h"
#include "pane/fontcatalog/NamesCollection.h"
#include "platform/FileServices.h"
#include "platform/Log.h"
#include "settings/CFPreferencesWrapper.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace fontcatalog {

inline constexpr std::string_view kCacheDomain = "com.tarnwick.typeslate.AdobeNames";

// Keys of the cache domain.
inline constexpr std::string_view kAllNamesKey = "AllNames";          // record by PostScript name
inline constexpr std::string_view kVersionKey = "Version";            // of the name database, a float
inline constexpr std::string_view kFilesKey = "AdobeFontNamesFiles";  // the list files in search order

// The catalogue of this process. It is built once; whatever came of that stays.
struct Catalogue {
    enum class State {
        NotBuilt,
        Unavailable,  // there is no name database
        Built
    } state = State::NotBuilt;
    platform::PropertyList names;  // record by PostScript name; nothing unless built
};

struct Context {
    platform::FileServices& files;  // both owned by the caller
    platform::Log& log;
    // Called after each list file with the number of files read and of all.
    std::function<void(std::size_t, std::size_t)> progress = {};
};

// The name database of the local, else of the Classic domain; nothing when there is none.
std::optional<std::string> adobeDBPath(platform::FileServices& files);
// 0 when there is no database, when it cannot be read, or when it states no version. Reads the whole file.
float adobeDBVersion(platform::FileServices& files);

// Reads one list file into the collection. A file that cannot be read adds nothing. Nothing happens without a path or
// a collection.
void scanFontList_forNames(const Context& context, std::optional<std::string_view> path, NamesCollection* names,
                           FontFileLookup& lookup);
// Reads all list files, in search order, into the collection or a new one.
NamesCollection scanAdobeFontLists(const Context& context, std::optional<NamesCollection> names);
// Builds the catalogue unless something has come of that before; some 40 ms for 10,000 records. Without a name database
// the lists are not read.
void adobeNames(const Context& context, Catalogue& catalogue);

// The file set counts as unchanged when both lists are there, of one length, each pair of elements equal as
// dictionaries and yet the lists not equal as wholes. Equal lists count as changed: this is deliberate, and makes for a
// new catalogue at nearly every start. The first unequal pair is logged.
bool isFileSetUnchanged(const platform::PropertyList& stored, const platform::PropertyList& current,
                        platform::Log& log);

struct CacheCheck {
    bool isRebuilt = false;        // tried, at least
    bool isStored = false;         // written and synchronised
    platform::PropertyList files;  // the current list; nothing when nobody asked for it
};

// Rebuilds the catalogue and stores it, unless the cache is up to date. Null for a domain that cannot be opened: the
// catalogue is then built, and stored nowhere. Without a catalogue nothing is written.
CacheCheck checkFontNameCache(const Context& context, CFPreferencesWrapper_Typeslate* cache, Catalogue& catalogue);

}  // namespace fontcatalog
