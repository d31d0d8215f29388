// Adobe's font list files: text with one record for each font.
//
//     %!Adobe-FontList 1.07
//     %BeginFont
//     FontName:Times-Bold
//     FamilyName:Times
//     FullName:Times Bold
//     OutlineFileName:\Times\TimesBol
//     %EndFont
#pragma once

#include "pane/fontcatalog/NamesCollection.h"
#include "pane/fontcatalog/TextEncoding.h"
#include "platform/Log.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace fontcatalog {

// The full path of an outline font file named by a relative path with forward slashes; nothing when there is none.
using FontFileFinder = std::function<std::optional<std::string>(std::string_view relativePath)>;

// Reads the records of one list file, dictionaries from string to string. They share one storage, and refer to the
// list's text for what stands in it. A key is what stands before a line's first colon, as it is, and may be empty; the
// value is what follows.
//
// "FullName" is the record's family name when it has both, and "RealFullName" then its full name: the catalogue groups
// the faces of a family under "FullName". A record with "OutlineFileName" also gets "FontListFilePath", and
// "FontFilePath" when the file is found.
class FontListReader {
public:
    // The text is kept as long as any of its records; what else is referred to must outlive the reader. A path that is
    // not valid UTF-8 is not put into records.
    FontListReader(Text list, std::string_view path, const FontFileFinder& findFontFile, platform::Log& log);
    ~FontListReader();
    FontListReader(const FontListReader&) = delete;

    // Puts every record that has a "FontName" and a "FullName" into the collection, the later in place of the earlier.
    // Two records of one name whose "FullName" differ are logged.
    void readInto(NamesCollection& names);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace fontcatalog
