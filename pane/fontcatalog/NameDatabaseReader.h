// The font name database, "FntNames.db": a text file with one section for each PostScript name.
//
//     ; a comment
//     version=2.5
//     [Times-Bold]
//     f=1,Times Bold       full name, single-byte codes: replaces what the section has
//     f=Times\0020Bold     full name, Unicode codes: only where the section has none
//     s=,Bold              style name, Unicode codes: replaces what the section has
//     s=Bold               style name, Unicode codes: only where the section has none
//
// EscapedName.h tells what the codes are.
#pragma once

#include "pane/fontcatalog/NamesCollection.h"
#include "pane/fontcatalog/TextEncoding.h"

#include <string_view>

namespace fontcatalog {

// Sets each section, a dictionary with "FullName" and "StyleName" as far as it has them, in the collection in place of
// any earlier value. A section is stored when the next header closes it; the last one of the file therefore never is.
// Sections without a name or without a value are not stored either. The records keep the text in memory.
void readNameDatabase(const FileText& text, NamesCollection& names);

// The decimal number behind the first "version=", white space before it skipped; 0 when there is none. Infinite where a
// float is too small for it.
float nameDatabaseVersion(std::string_view validUtf8);

}  // namespace fontcatalog
