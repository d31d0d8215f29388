#include "linux/messages/BusValues.h"

#include "platform/MessageForms.h"

#include <algorithm>
#include <string>

using namespace platform;

namespace linux {
namespace {

using Type = PropertyList::Type;

// Open as long as it lives.
struct Container {
    Container(DBusMessageIter& to, int type, const char* contents) : around(to) {
        dbus_message_iter_open_container(&to, type, contents, &inside);
    }
    Container(const Container&) = delete;
    ~Container() { dbus_message_iter_close_container(&around, &inside); }
    DBusMessageIter& around;
    DBusMessageIter inside;
};

template <typename Value>
void appendBasic(DBusMessageIter& to, int type, Value value) {
    dbus_message_iter_append_basic(&to, type, &value);
}

void appendText(DBusMessageIter& to, std::string_view text) {
    appendBasic(to, DBUS_TYPE_STRING, std::string(text).c_str());
}

void appendVariant(DBusMessageIter& to, const PropertyList& value);

void appendPairs(DBusMessageIter& to, const PropertyList& dictionary) {
    Container array(to, DBUS_TYPE_ARRAY, "{sv}");
    for (const auto& [key, value] : dictionary.entries()) {
        Container pair(array.inside, DBUS_TYPE_DICT_ENTRY, nullptr);
        appendText(pair.inside, key.stringValue());
        appendVariant(pair.inside, value);
    }
}

const char* signatureOf(const PropertyList& value) {
    switch (value.type()) {
        case Type::Boolean:
            return "b";
        case Type::Integer:
            return value.isUnsigned() ? "t" : "x";
        case Type::Real:
            return "d";
        case Type::Date:
            return "(x)";
        case Type::Data:
            return "ay";
        case Type::Array:
            return "av";
        case Type::Dictionary:
            return "a{sv}";
        case Type::Nothing:
        case Type::String:
            break;
    }
    return "s";
}

void appendContents(DBusMessageIter& to, const PropertyList& value) {
    switch (value.type()) {
        case Type::Nothing:
        case Type::String:
            return appendText(to, value.stringValue());
        case Type::Boolean:
            return appendBasic<dbus_bool_t>(to, DBUS_TYPE_BOOLEAN, value.boolValue());
        case Type::Integer:
            if (value.isUnsigned()) return appendBasic<dbus_uint64_t>(to, DBUS_TYPE_UINT64, value.unsignedValue());
            return appendBasic<dbus_int64_t>(to, DBUS_TYPE_INT64, value.integerValue());
        case Type::Real:
            return appendBasic(to, DBUS_TYPE_DOUBLE, value.realValue());
        case Type::Date: {
            Container structure(to, DBUS_TYPE_STRUCT, nullptr);
            return appendBasic<dbus_int64_t>(structure.inside, DBUS_TYPE_INT64, value.dateValue()->microseconds);
        }
        case Type::Data: {
            Container array(to, DBUS_TYPE_ARRAY, "y");
            const char* bytes = value.dataValue().data();
            dbus_message_iter_append_fixed_array(&array.inside, DBUS_TYPE_BYTE, &bytes,
                                                 static_cast<int>(value.dataValue().size()));
            return;
        }
        case Type::Array: {
            Container array(to, DBUS_TYPE_ARRAY, "v");
            for (const PropertyList& element : value.elements()) appendVariant(array.inside, element);
            return;
        }
        case Type::Dictionary:
            return appendPairs(to, value);
    }
}

void appendVariant(DBusMessageIter& to, const PropertyList& value) {
    Container variant(to, DBUS_TYPE_VARIANT, signatureOf(value));
    appendContents(variant.inside, value);
}

// Of containers, the value itself included.
bool isNestedWithin(const PropertyList& value, int levels) {
    auto fits = [levels](const PropertyList& inner) { return isNestedWithin(inner, levels - 1); };
    if (value.isArray()) return levels > 0 && std::ranges::all_of(value.elements(), fits);
    if (value.isDictionary())
        return levels > 0 && std::ranges::all_of(value.entries(), fits, &PropertyList::Entry::value);
    return true;
}

PropertyList elementsFrom(DBusMessageIter& inside) {
    std::vector<PropertyList> elements;
    for (; dbus_message_iter_get_arg_type(&inside) != DBUS_TYPE_INVALID; dbus_message_iter_next(&inside))
        elements.push_back(propertyListFromMessage(inside));
    return PropertyList::array(std::move(elements));
}

PropertyList dictionaryFrom(DBusMessageIter& inside) {
    MutableDictionary result;
    for (; dbus_message_iter_get_arg_type(&inside) != DBUS_TYPE_INVALID; dbus_message_iter_next(&inside)) {
        DBusMessageIter pair;
        dbus_message_iter_recurse(&inside, &pair);
        std::string key = propertyListFromMessage(pair).description();
        dbus_message_iter_next(&pair);
        result.set(key, propertyListFromMessage(pair));
    }
    return std::move(result).freeze();
}

PropertyList arrayFrom(DBusMessageIter& at) {
    const int elementType = dbus_message_iter_get_element_type(&at);
    DBusMessageIter inside;
    dbus_message_iter_recurse(&at, &inside);
    if (elementType == DBUS_TYPE_DICT_ENTRY) return dictionaryFrom(inside);
    if (elementType != DBUS_TYPE_BYTE) return elementsFrom(inside);
    const char* bytes = nullptr;
    int size = 0;
    dbus_message_iter_get_fixed_array(&inside, &bytes, &size);
    return PropertyList::data({size > 0 ? bytes : "", static_cast<std::size_t>(size)});
}

PropertyList structureFrom(DBusMessageIter& at) {
    DBusMessageIter inside;
    dbus_message_iter_recurse(&at, &inside);
    const bool startsAsDate = dbus_message_iter_get_arg_type(&inside) == DBUS_TYPE_INT64;
    const bool isDate = startsAsDate && !dbus_message_iter_has_next(&inside);
    PropertyList members = elementsFrom(inside);
    return isDate ? PropertyList(Date{members[0].integerValue()}) : members;
}

PropertyList integerFrom(int type, const DBusBasicValue& value) {
    switch (type) {
        case DBUS_TYPE_BYTE:
            return std::int64_t(value.byt);
        case DBUS_TYPE_INT16:
            return std::int64_t(value.i16);
        case DBUS_TYPE_UINT16:
            return std::int64_t(value.u16);
        case DBUS_TYPE_INT32:
            return std::int64_t(value.i32);
        case DBUS_TYPE_UINT32:
            return std::int64_t(value.u32);
        case DBUS_TYPE_INT64:
            return std::int64_t(value.i64);
        default:
            return std::uint64_t(value.u64);
    }
}

PropertyList basicFrom(DBusMessageIter& at, int type) {
    if (type == DBUS_TYPE_UNIX_FD) return {};  // reading it would open the file once more
    DBusBasicValue value;
    dbus_message_iter_get_basic(&at, &value);
    switch (type) {
        case DBUS_TYPE_BOOLEAN:
            return value.bool_val != 0;
        case DBUS_TYPE_DOUBLE:
            return value.dbl;
        case DBUS_TYPE_STRING:
        case DBUS_TYPE_OBJECT_PATH:
        case DBUS_TYPE_SIGNATURE:
            return value.str;
        default:
            return integerFrom(type, value);
    }
}

}  // namespace

bool appendToMessage(DBusMessageIter& to, const PropertyList& dictionary) {
    const bool fits = isNestedWithin(dictionary, kDeepestUserInfo);
    appendPairs(to, fits ? dictionary : PropertyList());
    return fits;
}

PropertyList propertyListFromMessage(DBusMessageIter& at) {
    const int type = dbus_message_iter_get_arg_type(&at);
    switch (type) {
        case DBUS_TYPE_INVALID:
            return {};
        case DBUS_TYPE_VARIANT: {
            DBusMessageIter inside;
            dbus_message_iter_recurse(&at, &inside);
            return propertyListFromMessage(inside);
        }
        case DBUS_TYPE_ARRAY:
            return arrayFrom(at);
        case DBUS_TYPE_STRUCT:
            return structureFrom(at);
        default:
            return basicFrom(at, type);
    }
}

}  // namespace linux
