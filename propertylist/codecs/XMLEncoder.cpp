#include "propertylist/Date.h"
#include "propertylist/codecs/Base64.h"
#include "propertylist/codecs/CodecParts.h"

#include <charconv>

namespace propertylist {
namespace {

using Type = PropertyList::Type;

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view kTail = "</plist>\n";

class XMLWriter {
public:
    std::string document(const PropertyList& value) {
        text_ = kHead;
        element(value);
        text_ += kTail;
        return isExpressible_ ? std::move(text_) : std::string();
    }

private:
    void element(const PropertyList& value) {
        switch (value.type()) {
            case Type::Nothing:
                return;
            case Type::String:
                return leaf("string", value.stringValue());
            case Type::Boolean:
                return line(value.boolValue() ? "<true/>" : "<false/>");
            case Type::Integer:
                return value.isUnsigned() ? number("integer", value.unsignedValue())
                                          : number("integer", value.integerValue());
            case Type::Real:
                return number("real", value.realValue());
            case Type::Date:
                return date(*value.dateValue());
            case Type::Data:
                return data(value.dataValue());
            case Type::Array:
                return container("array", value);
            case Type::Dictionary:
                return container("dict", value);
        }
    }

    void indent() { text_.append(depth_, '\t'); }
    void line(std::string_view content) {
        indent();
        text_ += content;
        text_ += '\n';
    }
    void tag(std::string_view before, std::string_view name, std::string_view after) {
        text_ += before;
        text_ += name;
        text_ += after;
    }

    void leaf(std::string_view name, std::string_view content) {
        indent();
        tag("<", name, ">");
        escape(content);
        tag("</", name, ">\n");
    }

    template <typename Number>
    void number(std::string_view name, Number value) {
        char digits[32];
        leaf(name, {digits, std::to_chars(digits, digits + sizeof digits, value).ptr});
    }

    // Readers turn a bare carriage return into a line feed.
    void escape(std::string_view content) {
        isExpressible_ = isExpressible_ && xmlTextPrefix(content) == content.size();
        while (!content.empty()) {
            std::size_t length = content.find_first_of("&<>\r");
            text_ += content.substr(0, length);
            if (length == std::string_view::npos) return;
            char c = content[length];
            text_ += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : "&#13;";
            content.remove_prefix(length + 1);
        }
    }

    void date(Date value) {
        constexpr std::size_t kLengthToSeconds = sizeof "2026-01-31T12:00:00" - 1;
        std::int64_t year = calendarTime(value).year;
        isExpressible_ = isExpressible_ && year >= 1 && year <= 9999;
        leaf("date", iso8601FromDate(value).substr(0, kLengthToSeconds) + "Z");
    }

    void data(std::string_view bytes) {
        constexpr std::size_t kBytesInLine = 57;  // 76 digits
        line("<data>");
        for (; !bytes.empty(); bytes.remove_prefix(std::min(kBytesInLine, bytes.size()))) {
            indent();
            text_ += base64Encoded(bytes.substr(0, kBytesInLine));
            text_ += '\n';
        }
        line("</data>");
    }

    void container(std::string_view name, const PropertyList& value) {
        indent();
        if (value.size() == 0) return tag("<", name, "/>\n");
        tag("<", name, ">\n");
        ++depth_;
        for (const PropertyList& child : value.elements()) element(child);
        for (const auto& [key, child] : value.entries()) {
            leaf("key", key.stringValue());
            element(child);
        }
        --depth_;
        indent();
        tag("</", name, ">\n");
    }

    std::string text_;
    std::size_t depth_ = 0;
    bool isExpressible_ = true;
};

}  // namespace

std::string encodeXMLPropertyList(const PropertyList& value) { return XMLWriter().document(value); }

}  // namespace propertylist
