// Reads rich text (RTF) into a document: paragraphs with their alignment, bold, italic, underlined text, sizes, and
// characters in every form in which RTF writes them. Fonts, colours, pictures, tables and links are left out; unknown
// controls are skipped, as the format asks of its readers.
#pragma once

#include <QTextDocument>

#include <string_view>

namespace platform::qt {

// False, and the document is what it was, when the bytes do not begin as rich text does. Text that ends early or has
// groups that do not match is read as far as it goes. Sizes are relative: 12 points become the document's own size.
bool readRichText(std::string_view rtf, QTextDocument& document);

}  // namespace platform::qt
