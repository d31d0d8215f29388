#include "propertylist/codecs/XMLScanner.h"

#include "propertylist/Unicode.h"
#include "propertylist/codecs/CodecParts.h"

#include <charconv>

namespace propertylist {
namespace {

constexpr const char* kBadDeclaration = "malformed declaration";

bool isNameStart(char c) { return isXMLNameCharacter(c) && !isASCIIDigit(c) && c != '-' && c != '.'; }

void appendWithLineEnds(std::string& data, std::string_view raw) {
    while (!raw.empty()) {
        std::size_t length = raw.find('\r');
        data += raw.substr(0, length);
        if (length == std::string_view::npos) return;
        data += '\n';
        raw.remove_prefix(length + 1);
        if (raw.starts_with('\n')) raw.remove_prefix(1);
    }
}

}  // namespace

bool XMLScanner::fail(const char* reason, const char* where) {
    bool isAtEnd = where == text_.data() + text_.size();
    problem_ = {static_cast<std::size_t>(where - begin_), isAtEnd ? "unexpected end" : reason};
    return false;
}

bool XMLScanner::endsTooEarly() {
    text_.remove_prefix(text_.size());
    return fail("unexpected end");
}

bool XMLScanner::take(std::string_view expected) {
    if (!text_.starts_with(expected)) return false;
    text_.remove_prefix(expected.size());
    return true;
}

bool XMLScanner::skipPast(std::string_view end) {
    std::size_t at = text_.find(end);
    if (at == std::string_view::npos) return endsTooEarly();
    text_.remove_prefix(at + end.size());
    return true;
}

void XMLScanner::skipSpace() {
    while (!text_.empty() && isASCIISpace(text_.front())) text_.remove_prefix(1);
}

bool XMLScanner::skipComment() { return skipPast("--") && (take(">") || fail("\"--\" in a comment")); }

bool XMLScanner::skipInstruction() {
    std::string_view target = takeName();
    if (target.empty() || isOneOf(target, {"xml"})) return fail("malformed instruction");
    return skipPast("?>");
}

bool XMLScanner::skipMisc() {
    for (;;) {
        skipSpace();
        if (take("<!--")) {
            if (!skipComment()) return false;
        } else if (take("<?")) {
            if (!skipInstruction()) return false;
        } else {
            return true;
        }
    }
}

// Nothing is taken, and the value stays, when the declaration does not go on with this name.
bool XMLScanner::takeDeclared(std::string_view name, std::string_view& value) {
    const std::string_view before = text_;
    skipSpace();
    if (text_.size() == before.size() || !take(name)) {
        text_ = before;
        return true;
    }
    skipSpace();
    if (!take("=")) return fail(kBadDeclaration);
    skipSpace();
    const std::string_view quoted = text_;
    if (!takeQuoted()) return false;
    value = quoted.substr(1, quoted.size() - text_.size() - 2);
    return !value.empty() || fail(kBadDeclaration, value.data());
}

bool XMLScanner::skipDeclaration(std::string_view& encoding) {
    if (!text_.starts_with("<?xml") || text_.size() < 6 || !isASCIISpace(text_[5])) return true;
    take("<?xml");
    std::string_view version, standalone = "no";
    if (!takeDeclared("version", version) || !takeDeclared("encoding", encoding) ||
        !takeDeclared("standalone", standalone))
        return false;
    bool isKnown = version.size() > 2 && version.starts_with("1.") &&
                   std::ranges::all_of(version.substr(2), isASCIIDigit) && (standalone == "yes" || standalone == "no");
    skipSpace();
    return (isKnown && take("?>")) || fail(kBadDeclaration);
}

bool XMLScanner::skipProlog() {
    std::string_view encoding;
    if (!skipDeclaration(encoding) || !skipMisc()) return false;
    return !take("<!DOCTYPE") || (skipDoctype() && skipMisc());
}

bool XMLScanner::skipDoctype() {
    for (;;) {
        std::size_t at = text_.find_first_of("\"'[<>");
        if (at == std::string_view::npos) return endsTooEarly();
        text_.remove_prefix(at);
        if (text_.front() == '[' || text_.front() == '<') return fail("document type with declarations");
        if (take(">")) return true;
        if (!takeQuoted()) return false;
    }
}

bool XMLScanner::takeQuoted() {
    if (text_.empty() || (text_.front() != '"' && text_.front() != '\'')) return fail("quotation mark expected");
    std::size_t close = text_.find(text_.front(), 1);
    if (close == std::string_view::npos) return endsTooEarly();
    if (text_.substr(0, close).find('<') != std::string_view::npos) return fail("\"<\" in an attribute");
    text_.remove_prefix(close + 1);
    return true;
}

std::string_view XMLScanner::takeName() {
    if (text_.empty() || !isNameStart(text_.front())) return {};
    auto length = static_cast<std::size_t>(std::ranges::find_if_not(text_, isXMLNameCharacter) - text_.begin());
    std::string_view name = text_.substr(0, length);
    text_.remove_prefix(length);
    return name;
}

// Attributes say nothing that matters here, but they must be well-formed.
bool XMLScanner::skipAttributes() {
    for (;;) {
        bool spaced = !text_.empty() && isASCIISpace(text_.front());
        skipSpace();
        if (text_.empty() || text_.front() == '>' || text_.front() == '/') return !text_.empty() || endsTooEarly();
        if (!spaced || takeName().empty()) return fail("malformed tag");
        skipSpace();
        if (!take("=")) return fail("malformed tag");
        skipSpace();
        if (!takeQuoted()) return false;
    }
}

bool XMLScanner::startTag(Tag& tag) {
    const char* where = text_.data();
    tag.name = take("<") ? takeName() : std::string_view();
    if (tag.name.empty()) return fail("element expected", where);
    if (!skipAttributes()) return false;
    tag.isEmpty = take("/");
    return take(">") || fail("malformed tag");
}

bool XMLScanner::endTag(std::string_view name) {
    const char* where = text_.data();
    if (!take("</") || takeName() != name) return fail("end tag of the element expected", where);
    skipSpace();
    return take(">") || fail("malformed tag");
}

bool XMLScanner::characterData(std::string& data) {
    while (!text_.empty()) {
        bool good = true;
        if (text_.front() == '&') {
            good = reference(data);
        } else if (text_.front() != '<') {
            good = plainText(data);
        } else if (take("<![CDATA[")) {
            good = cdataSection(data);
        } else if (take("<!--")) {
            good = skipComment();
        } else if (take("<?")) {
            good = skipInstruction();
        } else {
            return true;
        }
        if (!good) return false;
    }
    return endsTooEarly();
}

bool XMLScanner::plainText(std::string& data) {
    std::size_t length = text_.find_first_of("<&");
    std::string_view raw = text_.substr(0, length);
    if (std::size_t at = raw.find("]]>"); at != std::string_view::npos)
        return fail("\"]]>\" in a text", raw.data() + at);
    appendWithLineEnds(data, raw);
    text_.remove_prefix(raw.size());
    return true;
}

bool XMLScanner::cdataSection(std::string& data) {
    const std::string_view text = text_;
    if (!skipPast("]]>")) return false;
    appendWithLineEnds(data, text.substr(0, text.size() - text_.size() - 3));
    return true;
}

bool XMLScanner::reference(std::string& data) {
    constexpr std::pair<std::string_view, char> kEntities[] = {
        {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
    for (const auto& [entity, character] : kEntities)
        if (take(entity)) {
            data += character;
            return true;
        }
    if (!take("&#")) return fail("unknown entity");
    int base = take("x") ? 16 : 10;
    std::uint32_t c = 0;
    auto [end, error] = std::from_chars(text_.data(), text_.data() + text_.size(), c, base);
    if (error != std::errc() || !isXMLCharacter(c)) return fail("malformed reference to a character");
    text_.remove_prefix(static_cast<std::size_t>(end - text_.data()));
    appendUTF8(data, c);
    return take(";") || fail("malformed reference to a character");
}

}  // namespace propertylist
