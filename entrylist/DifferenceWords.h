// What differs between two states of an entry, in words for people.
#pragma once

#include "platform/PlatformTypes.h"
#include "settings/SettingsSchema.h"

#include <functional>
#include <string>
#include <string_view>

namespace entrylist {

// How the words are found; each in the user's language.
struct EntryWords {
    std::function<std::string(const settings::Option&)> option;
    std::function<std::string(const settings::Option&, std::int64_t)> value;
    std::function<std::string(std::string_view)> localized;
};

// "Show icons: on → off; Name: Wine → Wine 9". Options count by what they show. Empty for equal entries; what people
// would not know by a word, alone, is told as other details.
std::string differenceInWords(const platform::PropertyList& mine, const platform::PropertyList& theirs,
                              const EntryWords& words);

}  // namespace entrylist
