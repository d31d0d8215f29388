// Reads rich text (RTF) into a document: paragraphs with their alignment, indents and spacing; bold, italic, underlined
// and struck-out text, sizes, colours and links; the pictures of an rtfd folder; and characters in every form in which
// RTF writes them. Fonts, tables, lists, headers and pictures inside the text itself are left out.
#pragma once

#include <QTextDocument>

#include <string_view>

namespace qt {

// False, and the document is what it was, when the bytes do not begin as rich text does. Text that ends early or has
// groups that do not match is read as far as it goes. Sizes are relative: 12 points become the document's own size.
// Text has the colour of the document's surroundings unless it sets one. Pictures come from the folder; without one
// they are left out.
bool readRichText(std::string_view rtf, const QString& folder, QTextDocument& document);

}  // namespace qt
