// The catalogue of Adobe font names, and its cache in a preference domain, where the font-menu module reads it.
#pragma once

#include "pane/fontcatalog/Context.h"
#include "pane/fontcatalog/FontFileLookup.h"
#include "pane/fontcatalog/KeptText.h"
#include "pane/fontcatalog/NamesCollection.h"
#include "settings/CFPreferencesWrapper.h"

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

// Bytes. A larger list or database is passed over as if it could not be read, and so are lists that come when those
// before them had the second number together.
inline constexpr std::size_t kLargestText = std::size_t{64} << 20;
inline constexpr std::size_t kMostListText = std::size_t{128} << 20;

// Where the name database may be, the first place first: in the local and in the Classic domain.
std::vector<std::string> adobeDBPlaces(platform::FileServices& files);
// The first one that is there; nothing when there is none.
std::optional<std::string> adobeDBPath(platform::FileServices& files);
// 0 when there is no database, when it cannot be read, or when it states no version. Reads the whole file.
float adobeDBVersion(const Context& context);

// What goes on from one list to the next.
struct ListReading {
    FontFileLookup lookup;
    std::size_t textLeft = kMostListText;
    KeptText kept = {};
};
// Reads one list file into the collection. A file that cannot be read adds nothing. Nothing happens without a path or
// a collection.
void scanFontList_forNames(const Context& context, std::optional<std::string_view> path, NamesCollection* names,
                           ListReading& reading);
// Reads all list files, in search order, into the collection or a new one.
NamesCollection scanAdobeFontLists(const Context& context, std::optional<NamesCollection> names);
// Builds the catalogue unless something has come of that before; some 40 ms for 10,000 records. Without a name database
// the lists are not read. `lists` are those that a search has just found; it is made again without them, and where its
// diagnostic lines are wanted.
void adobeNames(const Context& context, Catalogue& catalogue, platform::PropertyList lists = {});

// The file set counts as unchanged when both lists are there, of one length, each pair of elements equal as
// dictionaries and yet the lists not equal as wholes. Equal lists count as changed: this is deliberate, and makes for a
// new catalogue at nearly every start. The first unequal pair is logged.
bool isFileSetUnchanged(const platform::PropertyList& stored, const platform::PropertyList& current,
                        platform::Log& diagnostics);

struct CacheCheck {
    bool isRebuilt = false;        // tried, at least
    bool isStored = false;         // written and synchronised
    platform::PropertyList files;  // the current list; nothing when nobody asked for it
};

// Rebuilds the catalogue and stores it, unless the cache is up to date. Null for a domain that cannot be opened: the
// catalogue is then built, and stored nowhere. Without a catalogue nothing is written.
CacheCheck checkFontNameCache(const Context& context, CFPreferencesWrapper_Typeslate* cache, Catalogue& catalogue);

}  // namespace fontcatalog
