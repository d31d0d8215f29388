#include "propertylist/Base64.h"
#include "propertylist/CodecParts.h"
#include "propertylist/Date.h"
#include "propertylist/XMLScanner.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace propertylist {
namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isXMLSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isXMLSpace(text.back())) text.remove_suffix(1);
    return text;
}

template <typename... Options>
bool parseWhole(std::string_view text, auto& value, Options... options) {
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, options...);
    return error == std::errc() && end == text.data() + text.size();
}

// "+" or "-" is taken off the front; true for "-".
bool takeSign(std::string_view& text) {
    bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    return negative;
}

PropertyList integerFromText(std::string_view text) {
    text = trimmed(text);
    bool negative = takeSign(text);
    bool isHex = text.starts_with("0x") || text.starts_with("0X");
    if (isHex) text.remove_prefix(2);
    std::uint64_t value = 0;
    if (!parseWhole(text, value, isHex ? 16 : 10)) return {};
    if (!negative) return value;
    constexpr std::uint64_t kLowest = std::uint64_t{1} << 63;
    return value <= kLowest ? PropertyList(static_cast<std::int64_t>(0 - value)) : PropertyList();
}

PropertyList realFromText(std::string_view text) {
    text = trimmed(text);
    double sign = takeSign(text) ? -1.0 : 1.0, value = 0;
    bool isNumber = !text.starts_with('-') && text.find('(') == std::string_view::npos;
    return isNumber && parseWhole(text, value, std::chars_format::general) ? PropertyList(std::copysign(value, sign))
                                                                           : PropertyList();
}

PropertyList dateFromText(std::string_view text) {
    constexpr std::size_t kLength = sizeof "2026-01-31T12:00:00Z" - 1;
    text = trimmed(text);
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
    return trimmed(text).empty() ? PropertyList(kValue) : PropertyList();
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

PropertyList decodeXMLPropertyList(std::string_view bytes) {
    auto text = xmlText(bytes);
    return text ? XMLReader(*text).document() : PropertyList();
}

}  // namespace propertylist
