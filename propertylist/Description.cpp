#include "propertylist/ASCII.h"
#include "propertylist/Date.h"

#include <algorithm>
#include <charconv>

namespace propertylist {
namespace {

using Type = PropertyList::Type;

constexpr char kHexDigits[] = "0123456789abcdef";

bool isPlain(char c) {
    return isASCIILetter(c) || isASCIIDigit(c) || std::string_view("_./-").find(c) != std::string_view::npos;
}

void appendEscaped(std::string& text, char c) {
    if (c == '"' || c == '\\') {
        text += {'\\', c};
    } else if (c == '\n') {
        text += "\\n";
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
        text += {'\\', 'x', kHexDigits[c >> 4], kHexDigits[c & 0xF]};
    } else {
        text += c;
    }
}

void appendQuoted(std::string& text, std::string_view string) {
    if (!string.empty() && std::ranges::all_of(string, isPlain)) {
        text += string;
        return;
    }
    text += '"';
    for (char c : string) appendEscaped(text, c);
    text += '"';
}

void appendData(std::string& text, std::string_view bytes) {
    text += '<';
    for (char c : bytes) text += {kHexDigits[static_cast<unsigned char>(c) >> 4], kHexDigits[c & 0xF]};
    text += '>';
}

template <typename Number>
void appendNumber(std::string& text, Number value) {
    char digits[32];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void appendValue(std::string& text, const PropertyList& value, unsigned depth);

void appendContainer(std::string& text, const PropertyList& value, unsigned depth) {
    bool isArray = value.isArray();
    text += isArray ? '(' : '{';
    std::size_t before = text.size();
    for (const PropertyList& element : value.elements()) {
        if (text.size() > before) text += ", ";
        appendValue(text, element, depth);
    }
    for (const auto& [key, entry] : value.entries()) {
        if (text.size() > before) text += ' ';
        appendQuoted(text, key.stringValue());
        text += " = ";
        appendValue(text, entry, depth);
        text += ';';
    }
    text += isArray ? ')' : '}';
}

void appendValue(std::string& text, const PropertyList& value, unsigned depth) {
    switch (value.type()) {
        case Type::Nothing:
            return;
        case Type::String:
            return appendQuoted(text, value.stringValue());
        case Type::Boolean:
            text += value.boolValue() ? '1' : '0';
            return;
        case Type::Integer:
            return value.isUnsigned() ? appendNumber(text, value.unsignedValue())
                                      : appendNumber(text, value.integerValue());
        case Type::Real:
            return appendNumber(text, value.realValue());
        case Type::Date:
            appendQuoted(text, dateDescription(*value.dateValue()));
            return;
        case Type::Data:
            return appendData(text, value.dataValue());
        default:
            // Values that were built may be nested deeper than the stack allows to follow.
            if (depth == PropertyList::kMaximumDepth)
                text += "...";
            else
                appendContainer(text, value, depth + 1);
    }
}

std::int64_t decimalInteger(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    std::int64_t value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? value : 0;
}

bool isTrueText(std::string_view text) {
    return equalIgnoringASCIICase(text, "true") || equalIgnoringASCIICase(text, "yes") || text == "1";
}

}  // namespace

std::string PropertyList::description() const {
    if (isString()) return std::string(stringValue());
    if (isDate()) return dateDescription(*dateValue());
    std::string text;
    appendValue(text, *this, 0);
    return text;
}

bool coercedBoolean(const PropertyList& value) {
    return value.isString() ? isTrueText(value.stringValue()) : value.boolValue();
}

std::int64_t coercedInteger(const PropertyList& value) {
    if (!value.isString()) return value.integerValue();
    return isTrueText(value.stringValue()) ? 1 : decimalInteger(value.stringValue());
}

}  // namespace propertylist
