// Reads the XML that property lists are written in: elements, character data, comments and processing instructions. No
// document type with an internal subset, hence no entities but the five that XML defines, and nothing to expand.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace propertylist {

// The text of an XML file as UTF-8 without byte-order mark: UTF-8 and, with a byte-order mark, UTF-16 are read. Nothing
// when it is not valid, holds a character that XML does not allow, or declares another encoding than it has.
std::optional<std::string> xmlText(std::string_view bytes);

class XMLScanner {
public:
    explicit XMLScanner(std::string_view text) : text_(text) {}

    struct Tag {
        std::string_view name;
        bool isEmpty = false;  // <name/>
    };

    // The XML declaration, comments, white space and the document type that may come first.
    bool skipProlog();
    // White space, comments and processing instructions.
    bool skipMisc();
    bool atEnd() const { return text_.empty(); }
    bool atEndTag() const { return text_.starts_with("</"); }
    bool startTag(Tag& tag);
    bool endTag(std::string_view name);
    // Everything up to the next start or end tag: character data, references, CDATA sections; line ends as "\n".
    bool characterData(std::string& data);

private:
    bool take(std::string_view expected);
    bool skipPast(std::string_view end);
    void skipSpace();
    bool skipComment();
    bool skipInstruction();
    bool skipDoctype();
    bool skipAttributes();
    bool takeQuoted();
    std::string_view takeName();
    bool reference(std::string& data);
    bool cdataSection(std::string& data);
    bool plainText(std::string& data);

    std::string_view text_;
};

// Whether XML 1.0 allows the character.
constexpr bool isXMLCharacter(char32_t c) {
    return c >= 0x20 ? c < 0xD800 || (c >= 0xE000 && c <= 0x10FFFF && c != 0xFFFE && c != 0xFFFF)
                     : c == '\t' || c == '\n' || c == '\r';
}
bool isXMLText(std::string_view validUTF8);
constexpr bool isXMLSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace propertylist
