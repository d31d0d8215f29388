#include "linux/documents/Json.h"

#include "linux/texts/Localized.h"
#include "propertylist/Date.h"
#include "propertylist/codecs/Base64.h"

#include <rapidjson/error/en.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>

#include <charconv>
#include <cmath>
#include <limits>

using platform::PropertyList;

namespace linux {
namespace {

constexpr std::string_view kDate = "$date";
constexpr std::string_view kData = "$data";
constexpr std::string_view kReal = "$real";
constexpr std::string_view kDictionary = "$dictionary";

// True for a dictionary that would be read as something else if it stood as it is.
bool needsWrapper(const PropertyList& dictionary) {
    if (dictionary.size() == 0) return false;
    std::string_view first = dictionary.entries()[0].key.stringValue();
    return first == kDictionary || (dictionary.size() == 1 && first.starts_with('$'));
}

template <typename Writer>
class Emitter {
public:
    explicit Emitter(Writer& writer, bool wraps = true) : writer_(writer), wraps_(wraps) {}

    void value(const PropertyList& item) {
        using Type = PropertyList::Type;
        switch (item.type()) {
            case Type::Nothing:
                writer_.Null();
                break;
            case Type::String:
                string(item.stringValue());
                break;
            case Type::Boolean:
                writer_.Bool(item.boolValue());
                break;
            case Type::Integer:
                item.isUnsigned() ? writer_.Uint64(item.unsignedValue()) : writer_.Int64(item.integerValue());
                break;
            case Type::Real:
                real(item.realValue());
                break;
            case Type::Date:
                wrapped(kDate, propertylist::iso8601FromDate(*item.dateValue()));
                break;
            case Type::Data:
                wrapped(kData, propertylist::base64Encoded(item.dataValue()));
                break;
            case Type::Array:
                array(item);
                break;
            case Type::Dictionary:
                dictionary(item);
                break;
        }
    }

private:
    void string(std::string_view text) { writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size())); }
    void wrapped(std::string_view key, std::string_view text) {
        writer_.StartObject();
        string(key);
        string(text);
        writer_.EndObject();
    }
    // The shortest text that reads back as the same number, and not as an integer.
    void real(double number) {
        if (std::isnan(number)) return wrapped(kReal, "nan");
        if (std::isinf(number)) return wrapped(kReal, number > 0 ? "inf" : "-inf");
        char buffer[32];
        auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
        std::string text(buffer, end);
        if (text.find_first_of(".e") == std::string::npos) text += ".0";
        writer_.RawValue(text.data(), text.size(), rapidjson::kNumberType);
    }
    void array(const PropertyList& item) {
        writer_.StartArray();
        for (const PropertyList& element : item.elements()) value(element);
        writer_.EndArray();
    }
    void dictionary(const PropertyList& item) {
        bool wraps = wraps_ && needsWrapper(item);
        if (wraps) {
            writer_.StartObject();
            string(kDictionary);
        }
        writer_.StartObject();
        for (const PropertyList::Entry& entry : item.entries()) {
            string(entry.key.stringValue());
            value(entry.value);
        }
        writer_.EndObject();
        if (wraps) writer_.EndObject();
    }

    Writer& writer_;
    bool wraps_;
};

PropertyList unwrappedReal(std::string_view text) {
    if (text == "nan") return std::numeric_limits<double>::quiet_NaN();
    if (text == "inf") return std::numeric_limits<double>::infinity();
    if (text == "-inf") return -std::numeric_limits<double>::infinity();
    return {};
}

// What {"$key": inner} stands for; nothing when it is malformed.
PropertyList unwrapped(std::string_view key, const PropertyList& inner) {
    if (key == kDictionary) return inner.isDictionary() ? inner : PropertyList();
    if (!inner.isString()) return {};
    if (key == kReal) return unwrappedReal(inner.stringValue());
    if (key == kDate) {
        auto date = propertylist::dateFromISO8601(inner.stringValue());
        return date ? PropertyList(*date) : PropertyList();
    }
    auto bytes = propertylist::base64Decoded(inner.stringValue());
    return bytes ? PropertyList::data(*bytes) : PropertyList();
}

bool isScalarWrapper(std::string_view key) { return key == kDate || key == kData || key == kReal; }

template <typename Number>
bool parseWhole(std::string_view text, Number& number) {
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

// An integer stays one; what does not fit is nothing, not a number nearby.
PropertyList numberFromText(std::string_view text) {
    if (text.find_first_of(".eE") != std::string_view::npos) {
        double real = 0;
        return parseWhole(text, real) ? PropertyList(real) : PropertyList();
    }
    std::int64_t integer = 0;
    if (parseWhole(text, integer)) return integer;
    std::uint64_t large = 0;
    return parseWhole(text, large) ? PropertyList(large) : PropertyList();
}

// Builds the value as the parser reports what it meets; an open container waits on the stack for its elements.
class Builder : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Builder> {
public:
    bool Null() { return refuse(localized("null has no place in a property list")); }
    bool Bool(bool value) { return add(value); }
    bool RawNumber(const char* text, rapidjson::SizeType length, bool) {
        PropertyList value = numberFromText({text, length});
        return value ? add(std::move(value)) : refuse(localized("a number out of range"));
    }
    bool String(const char* text, rapidjson::SizeType length, bool) {
        return add(PropertyList(std::string_view(text, length)));
    }
    bool StartObject() { return open(false); }
    bool StartArray() { return open(true); }
    bool Key(const char* text, rapidjson::SizeType length, bool) {
        stack_.back().key.assign(text, length);
        return true;
    }
    bool EndArray(rapidjson::SizeType) {
        PropertyList value = PropertyList::array(std::move(stack_.back().elements));
        stack_.pop_back();
        return add(std::move(value));
    }
    bool EndObject(rapidjson::SizeType) {
        Open object = std::move(stack_.back());
        stack_.pop_back();
        PropertyList value = std::move(object.entries).freeze();
        std::string_view key = value.size() == 0 ? "" : value.entries()[0].key.stringValue();
        bool isWrapper = !object.isContent && (key == kDictionary || (value.size() == 1 && isScalarWrapper(key)));
        if (!isWrapper) return add(std::move(value));
        PropertyList meant = value.size() == 1 ? unwrapped(key, value.entries()[0].value) : PropertyList();
        return meant ? add(std::move(meant)) : refuse(localizedFormat("a malformed \"%@\"", key));
    }

    PropertyList result;
    std::string error;

private:
    struct Open {
        bool isArray;
        bool isContent;  // the dictionary inside a {"$dictionary": ...}, which stands for itself
        std::vector<PropertyList> elements;
        platform::MutableDictionary entries;
        std::string key;
    };

    bool open(bool isArray) {
        if (stack_.size() + 1 >= PropertyList::kMaximumDepth) return refuse(localized("nested too deeply"));
        stack_.push_back({isArray, !isArray && isInDictionaryWrapper(), {}, {}, {}});
        return true;
    }
    bool isInDictionaryWrapper() const {
        if (stack_.empty()) return false;
        const Open& around = stack_.back();
        return !around.isArray && !around.isContent && around.entries.size() == 0 && around.key == kDictionary;
    }
    bool add(PropertyList value) {
        if (stack_.empty())
            result = std::move(value);
        else if (stack_.back().isArray)
            stack_.back().elements.push_back(std::move(value));
        else
            stack_.back().entries.set(stack_.back().key, std::move(value));
        return true;
    }
    bool refuse(std::string why) {
        error = std::move(why);
        return false;
    }

    std::vector<Open> stack_;
};

}  // namespace

std::string jsonText(const PropertyList& value, JsonLayout layout) {
    rapidjson::StringBuffer buffer;
    if (layout == JsonLayout::OneLine) {
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        Emitter(writer).value(value);
    } else {
        rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
        writer.SetIndent(' ', 2);
        Emitter(writer, layout != JsonLayout::Plain).value(value);
    }
    return {buffer.GetString(), buffer.GetSize()};
}

JsonResult parseJson(std::string_view text) {
    constexpr unsigned kFlags =
        rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::MemoryStream stream(text.data(), text.size());
    rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream> input(stream);
    rapidjson::Reader reader;
    Builder builder;
    rapidjson::ParseResult parsed = reader.Parse<kFlags>(input, builder);
    if (!parsed.IsError()) return {std::move(builder.result), {}, 0};
    std::string why = builder.error.empty() ? rapidjson::GetParseError_En(parsed.Code()) : builder.error;
    return {{}, why, parsed.Offset()};
}

}  // namespace linux
