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
#include <optional>
#include <string>
#include <string_view>

namespace fontcatalog {

// The full path of an outline font file named by a relative path with forward slashes; nothing when there is none.
// May be empty, as if there were no files.
using FontFileFinder = std::function<std::optional<std::string>(std::string_view relativePath)>;

// Puts the records of one list file into the collection, the later in place of the earlier: dictionaries from string to
// string, which share one storage and keep the list's text. A key is what stands before a line's first colon, as it is,
// and may be empty; the value is what follows. Only records with a "FontName" and a "FullName" count; two of one name
// whose "FullName" differ are logged. Takes time and memory in proportion to the text, whatever it holds.
//
// "FullName" is the record's family name when it has both, and "RealFullName" then its full name: the catalogue groups
// the faces of a family under "FullName". A record with "OutlineFileName" also gets "FontListFilePath", the list's
// path, and "FontFilePath" when the file is found. Paths that are not valid UTF-8 are not put into records.
void readFontList(const FileText& list, std::string_view listPath, const FontFileFinder& find, platform::Log& log,
                  NamesCollection& names);

}  // namespace fontcatalog
