#include "qt/messages/DBusValues.h"

#include "platform/MessageForms.h"
#include "qt/texts/Utf8.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>

#include <limits>

namespace qt {

using namespace platform;

// A date on the bus: the structure (x), microseconds since 1970.
struct DBusDate {
    qlonglong microseconds = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const DBusDate& date) {
    argument.beginStructure();
    argument << date.microseconds;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusDate& date) {
    argument.beginStructure();
    argument >> date.microseconds;
    argument.endStructure();
    return argument;
}

}  // namespace qt

Q_DECLARE_METATYPE(qt::DBusDate)

namespace qt {

namespace {

using Type = PropertyList::Type;

QByteArray toBytes(std::string_view bytes) { return {bytes.data(), static_cast<int>(bytes.size())}; }

QVariant dbusValue(const PropertyList& value, int depth);

QVariantMap dbusMap(const PropertyList& dictionary, int depth) {
    QVariantMap map;
    for (const auto& [key, value] : dictionary.entries())
        map.insert(toQString(key.stringValue()), dbusValue(value, depth + 1));
    return map;
}

struct TooDeep {};

QVariant dbusContainer(const PropertyList& value, int depth) {
    if (depth >= kDeepestUserInfo) throw TooDeep();
    if (value.isDictionary()) return dbusMap(value, depth);
    QVariantList list;
    for (const PropertyList& element : value.elements()) list << dbusValue(element, depth + 1);
    return list;
}

QVariant dbusValue(const PropertyList& value, int depth) {
    switch (value.type()) {
        case Type::Nothing:
            return QString();
        case Type::String:
            return toQString(value.stringValue());
        case Type::Boolean:
            return value.boolValue();
        case Type::Integer:
            if (value.isUnsigned()) return static_cast<qulonglong>(value.unsignedValue());
            return static_cast<qlonglong>(value.integerValue());
        case Type::Real:
            return value.realValue();
        case Type::Date:
            return QVariant::fromValue(DBusDate{value.dateValue()->microseconds});
        case Type::Data:
            return toBytes(value.dataValue());
        case Type::Array:
        case Type::Dictionary:
            return dbusContainer(value, depth);
    }
    return {};
}

PropertyList text(const QString& string) { return string.toStdString(); }

PropertyList scalar(const QVariant& value) {
    switch (value.userType()) {
        case QMetaType::Bool:
            return value.toBool();
        case QMetaType::UChar:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
            return static_cast<std::int64_t>(value.toLongLong());
        case QMetaType::ULongLong:
            return static_cast<std::uint64_t>(value.toULongLong());
        case QMetaType::Double:
            return value.toDouble();
        case QMetaType::QString:
            return text(value.toString());
        case QMetaType::QByteArray:
            return PropertyList::data(value.toByteArray().toStdString());
        default:
            break;
    }
    if (value.canConvert<QDBusObjectPath>()) return text(value.value<QDBusObjectPath>().path());
    if (value.canConvert<QDBusSignature>()) return text(value.value<QDBusSignature>().signature());
    return {};
}

template <typename Sequence>
PropertyList array(const Sequence& elements) {
    std::vector<PropertyList> array;
    for (const auto& element : elements)
        if (PropertyList value = propertyListFromDBus(element)) array.push_back(std::move(value));
    return PropertyList::array(std::move(array));
}

PropertyList dictionary(const QVariantMap& map) {
    MutableDictionary result;
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        result.set(entry.key().toStdString(), propertyListFromDBus(entry.value()));
    return std::move(result).freeze();
}

PropertyList fromSequence(const QDBusArgument& argument) {
    std::vector<PropertyList> elements;
    argument.beginArray();
    while (!argument.atEnd())
        if (PropertyList value = propertyListFromDBus(argument.asVariant())) elements.push_back(std::move(value));
    argument.endArray();
    return PropertyList::array(std::move(elements));
}

PropertyList fromMap(const QDBusArgument& argument) {
    MutableDictionary result;
    argument.beginMap();
    while (!argument.atEnd()) {
        argument.beginMapEntry();
        std::string key = propertyListFromDBus(argument.asVariant()).description();
        result.set(key, propertyListFromDBus(argument.asVariant()));
        argument.endMapEntry();
    }
    argument.endMap();
    return std::move(result).freeze();
}

PropertyList fromStructure(const QDBusArgument& argument) {
    bool isDate = argument.currentSignature() == QLatin1String("(x)");
    std::vector<PropertyList> members;
    argument.beginStructure();
    while (!argument.atEnd()) members.push_back(propertyListFromDBus(argument.asVariant()));
    argument.endStructure();
    if (isDate) return Date{members.at(0).integerValue()};
    return PropertyList::array(std::move(members));
}

PropertyList fromArgument(const QDBusArgument& argument) {
    switch (argument.currentType()) {
        case QDBusArgument::ArrayType:
            return fromSequence(argument);
        case QDBusArgument::MapType:
            return fromMap(argument);
        case QDBusArgument::StructureType:
            return fromStructure(argument);
        default:
            return propertyListFromDBus(argument.asVariant());
    }
}

}  // namespace

void registerDBusTypes() {
    static const auto kRegistered = qDBusRegisterMetaType<DBusDate>();
    Q_UNUSED(kRegistered)
}

std::optional<QVariantMap> dbusDictionary(const PropertyList& dictionary) try {
    return dbusMap(dictionary, 0);
} catch (const TooDeep&) {
    return std::nullopt;
}

PropertyList propertyListFromDBus(const QVariant& value) {
    const int type = value.userType();
    if (type == qMetaTypeId<QDBusVariant>()) return propertyListFromDBus(value.value<QDBusVariant>().variant());
    if (type == qMetaTypeId<QDBusArgument>()) return fromArgument(value.value<QDBusArgument>());
    if (type == qMetaTypeId<DBusDate>()) return Date{value.value<DBusDate>().microseconds};
    if (type == QMetaType::QVariantMap) return dictionary(value.toMap());
    if (type == QMetaType::QVariantList) return array(value.toList());
    if (type == QMetaType::QStringList) return array(value.toStringList());
    return scalar(value);
}

}  // namespace qt
