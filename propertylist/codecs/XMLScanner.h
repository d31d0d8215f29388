// Reads the XML that property lists are written in: elements, character data, comments and processing instructions. No
// document type with an internal subset, hence no entities but the five that XML defines, and nothing to expand.
#pragma once

#include "propertylist/ASCII.h"
#include "propertylist/Codec.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>

namespace propertylist {

inline bool isXMLNameCharacter(char c) {
    return isASCIILetter(c) || isASCIIDigit(c) || static_cast<unsigned char>(c) >= 0x80 ||
           std::string_view("_-.:").find(c) != std::string_view::npos;
}

// Whether the name is one of them, letters in any case.
inline bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::ranges::any_of(names, [&](auto other) { return equalIgnoringASCIICase(name, other); });
}

// The text must be valid UTF-8 and hold only characters that XML allows, so that all blanks of ASCII are blanks of XML.
// Each function takes what it reads off the front; false for what is malformed, and then problem() tells what was, and
// nothing else is to be read.
class XMLScanner {
public:
    explicit XMLScanner(std::string_view text) : text_(text), begin_(text.data()) {}

    struct Tag {
        std::string_view name;
        bool isEmpty = false;  // <name/>
    };

    // The XML declaration, if there is one; empty when it names no encoding.
    bool skipDeclaration(std::string_view& encoding);
    // The declaration, comments, white space and the document type that may come first.
    bool skipProlog();
    // White space, comments and processing instructions.
    bool skipMisc();
    bool atEnd() const { return text_.empty(); }
    bool atEndTag() const { return text_.starts_with("</"); }
    bool startTag(Tag& tag);
    bool endTag(std::string_view name);
    // Everything up to the next start or end tag: character data, references, CDATA sections; line ends as "\n".
    bool characterData(std::string& data);

    // False, and problem() tells this reason: here, or at a place of the text.
    bool fail(const char* reason) { return fail(reason, text_.data()); }
    bool fail(const char* reason, const char* where);
    // Its position is one in the text.
    const DecodeProblem& problem() const { return problem_; }

private:
    bool take(std::string_view expected);
    bool skipPast(std::string_view end);
    bool endsTooEarly();
    void skipSpace();
    bool skipComment();
    bool skipInstruction();
    bool skipDoctype();
    bool skipAttributes();
    bool takeQuoted();
    bool takeDeclared(std::string_view name, std::string_view& value);
    std::string_view takeName();
    bool reference(std::string& data);
    bool cdataSection(std::string& data);
    bool plainText(std::string& data);

    std::string_view text_;
    const char* begin_;
    DecodeProblem problem_;
};

}  // namespace propertylist
