#include "propertylist/ASCII.h"
#include "propertylist/Base64.h"
#include "propertylist/CodecParts.h"
#include "propertylist/Date.h"
#include "propertylist/Unicode.h"
#include "propertylist/XMLScanner.h"

#include <charconv>
#include <cmath>
#include <locale>
#include <sstream>

namespace propertylist {
namespace {

// The encoding that the XML declaration names; empty when it names none.
std::string_view declaredEncoding(std::string_view text) {
    if (!text.starts_with("<?xml")) return {};
    std::string_view declaration = text.substr(0, text.find("?>"));
    std::size_t at = declaration.find("encoding");
    std::size_t open = at == std::string_view::npos ? at : declaration.find_first_of("'\"", at);
    if (open == std::string_view::npos) return {};
    std::size_t close = declaration.find(declaration[open], open + 1);
    return close == std::string_view::npos ? "?" : declaration.substr(open + 1, close - open - 1);
}

std::optional<std::string> fromUTF16(std::string_view bytes, ByteOrder order) {
    auto text = utf8FromUTF16(bytes, order);
    if (!text || !isXMLText(*text)) return std::nullopt;
    std::string_view encoding = declaredEncoding(*text);
    return encoding.empty() || isOneOf(encoding, {"utf-16"}) ? text : std::nullopt;
}

// Whether bytes of valid UTF-8 may be read as such where their declaration names this encoding. Of one that is not
// known here the bytes below 128 are taken for ASCII, which they are in all that text files come in.
bool fitsUTF8(std::string_view encoding, std::string_view bytes) {
    if (encoding.empty() || isOneOf(encoding, {"utf-8", "utf8"})) return true;
    bool isName = isASCIILetter(encoding.front()) && std::ranges::all_of(encoding, isXMLNameCharacter);
    return isName && !isOneOf(encoding, {"utf-16"}) && isASCII(bytes);
}

// The text of an XML file as UTF-8 without byte-order mark: UTF-8 and, with a byte-order mark, UTF-16 are read. Nothing
// when it is not valid, holds a character that XML does not allow, or declares another encoding than it has.
std::optional<std::string> xmlText(std::string_view bytes) {
    if (bytes.starts_with("\xFE\xFF")) return fromUTF16(bytes.substr(2), ByteOrder::BigEndian);
    if (bytes.starts_with("\xFF\xFE")) return fromUTF16(bytes.substr(2), ByteOrder::LittleEndian);
    if (bytes.starts_with("\uFEFF")) bytes.remove_prefix(3);
    if (!isValidUTF8(bytes) || !isXMLText(bytes)) return std::nullopt;
    return fitsUTF8(declaredEncoding(bytes), bytes) ? std::optional(std::string(bytes)) : std::nullopt;
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
};
constexpr LeafElement kLeafElements[] = {
    {"string", stringFromText},   {"true", booleanFromText<true>}, {"false", booleanFromText<false>},
    {"integer", integerFromText}, {"real", realFromText},          {"date", dateFromText},
    {"data", dataFromText},
};

// Each reader gives nothing when the element is malformed.
class XMLReader {
public:
    explicit XMLReader(std::string_view text) : scanner_(text) {}

    PropertyList document() {
        XMLScanner::Tag root;
        if (!scanner_.skipProlog() || !scanner_.startTag(root) || root.name != "plist" || root.isEmpty) return {};
        PropertyList value = element(1);
        bool ended = scanner_.skipMisc() && scanner_.endTag("plist") && scanner_.skipMisc() && scanner_.atEnd();
        return ended ? value : PropertyList();
    }

private:
    PropertyList element(unsigned depth) {
        XMLScanner::Tag tag;
        if (depth > PropertyList::kMaximumDepth || !scanner_.skipMisc() || !scanner_.startTag(tag)) return {};
        if (tag.name == "dict") return dictionary(tag, depth);
        if (tag.name == "array") return array(tag, depth);
        for (const LeafElement& leaf : kLeafElements)
            if (leaf.name == tag.name) return text(tag) ? leaf.fromText(text_) : PropertyList();
        return {};
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
            if (!scanner_.startTag(keyTag) || keyTag.name != "key" || !text(keyTag)) return {};
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

bool isXMLText(std::string_view validUTF8) {
    for (std::size_t i = 0; i < validUTF8.size(); ++i) {
        auto c = static_cast<unsigned char>(validUTF8[i]);
        if (c < 0x20 && !isXMLCharacter(c)) return false;
        if (c == 0xEF && (validUTF8.substr(i, 3) == "\uFFFE" || validUTF8.substr(i, 3) == "\uFFFF")) return false;
    }
    return true;
}

PropertyList decodeXMLPropertyList(std::string_view bytes) {
    auto text = xmlText(bytes);
    return text ? XMLReader(*text).document() : PropertyList();
}

}  // namespace propertylist
