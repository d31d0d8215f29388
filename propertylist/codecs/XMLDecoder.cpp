#include "propertylist/ASCII.h"
#include "propertylist/Date.h"
#include "propertylist/Unicode.h"
#include "propertylist/codecs/Base64.h"
#include "propertylist/codecs/CodecParts.h"
#include "propertylist/codecs/XMLScanner.h"

#include <charconv>
#include <cmath>
#include <locale>
#include <sstream>

namespace propertylist {
namespace {

// Whether bytes of valid UTF-8 may be read as such where their declaration names this encoding. Of one that is not
// known here the bytes below 128 are taken for ASCII, which they are in all that text files come in.
bool fitsUTF8(std::string_view encoding, std::string_view bytes) {
    if (encoding.empty() || isOneOf(encoding, {"utf-8", "utf8"})) return true;
    bool isName = isASCIILetter(encoding.front()) && std::ranges::all_of(encoding, isXMLNameCharacter);
    return isName && !isOneOf(encoding, {"utf-16"}) && isASCII(bytes);
}

// Half a surrogate pair is what can be wrong, and half a unit at the end.
std::size_t validUTF16Prefix(std::string_view bytes, ByteOrder order) {
    std::size_t at = 0;
    while (at < bytes.size()) {
        std::size_t length = utf8FromUTF16(bytes.substr(at, 2), order) ? 2 : 4;
        if (length == 4 && !utf8FromUTF16(bytes.substr(at, 4), order)) break;
        at += length;
    }
    return at;
}

// The text of an XML file as UTF-8 without byte-order mark: UTF-8 and, with a byte-order mark, UTF-16 are read.
class XMLFile {
public:
    // False when the text is not valid, holds a character that XML does not allow, or declares another encoding than it
    // has.
    bool read(std::string_view bytes, DecodeProblem& problem);
    std::string_view text() const { return text_; }
    // In the file, of a byte of the text.
    std::size_t position(std::size_t at) const {
        return mark_ + (isUTF16_ ? 2 * utf16Units(text().substr(0, at)) : at);
    }

private:
    bool convert(std::string_view bytes, ByteOrder order, DecodeProblem& problem);

    std::string text_;
    bool isUTF16_ = false;
    std::size_t mark_ = 0;  // how many bytes it has
};

bool XMLFile::convert(std::string_view bytes, ByteOrder order, DecodeProblem& problem) {
    if (!isUTF16_) {
        text_ = bytes.substr(0, validUTF8Prefix(bytes));
        if (text_.size() < bytes.size()) problem = {mark_ + text_.size(), "invalid UTF-8"};
        return text_.size() == bytes.size();
    }
    auto text = utf8FromUTF16(bytes, order);
    if (!text) {
        problem = {mark_ + validUTF16Prefix(bytes, order), "invalid UTF-16"};
        return false;
    }
    text_ = std::move(*text);
    return true;
}

bool XMLFile::read(std::string_view bytes, DecodeProblem& problem) {
    const bool isBigEndian = bytes.starts_with("\xFE\xFF");
    isUTF16_ = isBigEndian || bytes.starts_with("\xFF\xFE");
    mark_ = isUTF16_ ? 2 : bytes.starts_with("\uFEFF") ? 3 : 0;
    if (!convert(bytes.substr(mark_), isBigEndian ? ByteOrder::BigEndian : ByteOrder::LittleEndian, problem))
        return false;
    if (std::size_t good = xmlTextPrefix(text_); good < text_.size()) {
        problem = {position(good), "character that XML does not allow"};
        return false;
    }
    std::string_view encoding;
    XMLScanner(text_).skipDeclaration(encoding);  // a malformed one the reader refuses
    if (isUTF16_ ? encoding.empty() || isOneOf(encoding, {"utf-16"}) : fitsUTF8(encoding, text_)) return true;
    problem = {position(static_cast<std::size_t>(encoding.data() - text_.data())),
               "encoding that the text does not have"};
    return false;
}

// "+" or "-" is taken off the front; true for "-".
bool takeSign(std::string_view& text) {
    bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    return negative;
}

PropertyList integerFromText(std::string_view text) {
    text = trimmedASCII(text);
    bool negative = takeSign(text);
    bool isHex = text.starts_with("0x") || text.starts_with("0X");
    if (isHex) text.remove_prefix(2);
    std::uint64_t value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, isHex ? 16 : 10);
    if (error != std::errc() || end != text.data() + text.size()) return {};
    if (!negative) return value;
    constexpr std::uint64_t kLowest = std::uint64_t{1} << 63;
    return value <= kLowest ? PropertyList(static_cast<std::int64_t>(0 - value)) : PropertyList();
}

// from_chars does not tell a number that is too small for a double from one that is too large; the stream fails for the
// latter alone.
bool parseNumber(std::string_view text, double& value) {
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (end != text.data() + text.size() || error != std::errc::result_out_of_range)
        return end == text.data() + text.size() && error == std::errc();
    std::istringstream number{std::string(text)};
    number.imbue(std::locale::classic());
    return static_cast<bool>(number >> value);
}

PropertyList realFromText(std::string_view text) {
    text = trimmedASCII(text);
    double sign = takeSign(text) ? -1.0 : 1.0, value = 0;
    bool isNumber = !text.starts_with('-') && text.find('(') == std::string_view::npos;
    return isNumber && parseNumber(text, value) ? PropertyList(std::copysign(value, sign)) : PropertyList();
}

PropertyList dateFromText(std::string_view text) {
    constexpr std::size_t kLength = sizeof "2026-01-31T12:00:00Z" - 1;
    text = trimmedASCII(text);
    auto date = text.size() == kLength && !text.starts_with("0000") ? dateFromISO8601(text) : std::nullopt;
    return date ? PropertyList(*date) : PropertyList();
}

PropertyList dataFromText(std::string_view text) {
    const auto bytes = base64Decoded(text);
    return bytes ? PropertyList::data(*bytes) : PropertyList();
}

PropertyList stringFromText(std::string_view text) { return text; }

template <bool kValue>
PropertyList booleanFromText(std::string_view text) {
    return trimmedASCII(text).empty() ? PropertyList(kValue) : PropertyList();
}

struct LeafElement {
    std::string_view name;
    PropertyList (*fromText)(std::string_view);
    const char* problem;
};
constexpr LeafElement kLeafElements[] = {
    {"string", stringFromText, "text that is too long"},
    {"true", booleanFromText<true>, "boolean that is not empty"},
    {"false", booleanFromText<false>, "boolean that is not empty"},
    {"integer", integerFromText, "malformed or too large integer"},
    {"real", realFromText, "malformed or too large real"},
    {"date", dateFromText, "malformed date"},
    {"data", dataFromText, "malformed base64"},
};

// Each reader gives nothing when the element is malformed, and problem() tells why.
class XMLReader {
public:
    explicit XMLReader(std::string_view text) : scanner_(text) {}

    PropertyList document() {
        XMLScanner::Tag root;
        if (!scanner_.skipProlog() || !scanner_.startTag(root)) return {};
        if (root.name != "plist" || root.isEmpty) return refuse("no property list", root);
        PropertyList value = element(1);
        bool ended = value && scanner_.skipMisc() && scanner_.endTag("plist") && scanner_.skipMisc() &&
                     (scanner_.atEnd() || scanner_.fail("more behind the list"));
        return ended ? value : PropertyList();
    }
    const DecodeProblem& problem() const { return scanner_.problem(); }

private:
    PropertyList refuse(const char* reason, const XMLScanner::Tag& tag) {
        scanner_.fail(reason, tag.name.data() - 1);
        return {};
    }

    PropertyList element(unsigned depth) {
        XMLScanner::Tag tag;
        if (!scanner_.skipMisc() || !scanner_.startTag(tag)) return {};
        if (depth > PropertyList::kMaximumDepth) return refuse(kTooDeep, tag);
        if (tag.name == "dict") return dictionary(tag, depth);
        if (tag.name == "array") return array(tag, depth);
        for (const LeafElement& kind : kLeafElements)
            if (kind.name == tag.name) return leaf(kind, tag);
        return refuse("unknown element", tag);
    }

    PropertyList leaf(const LeafElement& kind, const XMLScanner::Tag& tag) {
        if (!text(tag)) return {};
        PropertyList value = kind.fromText(text_);
        if (!value) refuse(kind.problem, tag);
        return value;
    }

    bool text(const XMLScanner::Tag& tag) {
        text_.clear();
        return tag.isEmpty || (scanner_.characterData(text_) && scanner_.endTag(tag.name));
    }

    PropertyList array(const XMLScanner::Tag& tag, unsigned depth) {
        std::vector<PropertyList> elements;
        while (!tag.isEmpty && scanner_.skipMisc() && !scanner_.atEndTag()) {
            elements.push_back(element(depth + 1));
            if (!elements.back()) return {};
        }
        return tag.isEmpty || scanner_.endTag(tag.name) ? PropertyList::array(std::move(elements)) : PropertyList();
    }

    PropertyList dictionary(const XMLScanner::Tag& tag, unsigned depth) {
        MutableDictionary entries;
        while (!tag.isEmpty && scanner_.skipMisc() && !scanner_.atEndTag()) {
            XMLScanner::Tag keyTag;
            if (!scanner_.startTag(keyTag)) return {};
            if (keyTag.name != "key") return refuse("key expected", keyTag);
            if (!text(keyTag)) return {};
            std::string key = text_;
            PropertyList value = element(depth + 1);
            if (!value) return {};
            entries.set(key, std::move(value));
        }
        return tag.isEmpty || scanner_.endTag(tag.name) ? std::move(entries).freeze() : PropertyList();
    }

    XMLScanner scanner_;
    std::string text_;  // of the last element without children
};

}  // namespace

std::size_t xmlTextPrefix(std::string_view validUTF8) {
    for (std::size_t i = 0; i < validUTF8.size(); ++i) {
        auto c = static_cast<unsigned char>(validUTF8[i]);
        if (c < 0x20 && !isXMLCharacter(c)) return i;
        if (c == 0xEF && (validUTF8.substr(i, 3) == "\uFFFE" || validUTF8.substr(i, 3) == "\uFFFF")) return i;
    }
    return validUTF8.size();
}

PropertyList decodeXMLPropertyList(std::string_view bytes, DecodeProblem& problem) {
    XMLFile file;
    if (!file.read(bytes, problem)) return {};
    XMLReader reader(file.text());
    PropertyList value = reader.document();
    if (!value) problem = {file.position(reader.problem().position), reader.problem().reason};
    return value;
}

}  // namespace propertylist
