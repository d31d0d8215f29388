// User information as anyone on the bus may send it: any nesting of D-Bus types, over a connection without a bus, held
// against the table of the types; by both readers, with the toolkit and without.
#include "linux/messages/BusValues.h"
#include "qt/messages/DBusValues.h"
#include "qt/messages/SignalReceiver.h"

#include "propertylist/Date.h"
#include "propertylist/Unicode.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusServer>

#include <dbus/dbus.h>

#include <cstdlib>
#include <optional>

using namespace platform;

namespace {

constexpr int kDeepest = 8;  // each step may be three of D-Bus's 64 containers
constexpr SignalForm kForm{"/fuzz", "fuzz.Interface", "Value", "a{sv}"};

void require(bool holds) {
    if (!holds) std::abort();
}

class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}
    unsigned next() {
        if (rest_.empty()) return 0;
        const auto byte = static_cast<unsigned char>(rest_.front());
        rest_.remove_prefix(1);
        return byte;
    }
    template <typename Number>
    Number number() {
        Number value = 0;
        for (std::size_t i = 0; i < sizeof value; ++i)
            reinterpret_cast<unsigned char*>(&value)[i] = static_cast<unsigned char>(next());
        return value;
    }
    // D-Bus carries nothing else as a string.
    std::string text() {
        std::string value;
        for (unsigned length = next() % 16; length > 0; --length) value += static_cast<char>(std::max(next(), 1u));
        return propertylist::isValidUTF8(value) ? value : "?";
    }

private:
    std::string_view rest_;
};

struct Container {
    Container(DBusMessageIter& in, int type, const char* contents) : in_(in) {
        require(dbus_message_iter_open_container(&in, type, contents, &iterator));
    }
    ~Container() { dbus_message_iter_close_container(&in_, &iterator); }
    DBusMessageIter iterator;

private:
    DBusMessageIter& in_;
};

template <typename Number>
Number append(DBusMessageIter& to, int type, Number number) {
    require(dbus_message_iter_append_basic(&to, type, &number));
    return number;
}

std::string appendText(DBusMessageIter& to, const std::string& text) {
    const char* start = text.c_str();
    require(dbus_message_iter_append_basic(&to, DBUS_TYPE_STRING, &start));
    return text;
}

PropertyList appendVariant(DBusMessageIter& to, Bytes& bytes, int depth);

PropertyList appendArray(DBusMessageIter& to, Bytes& bytes, int depth) {
    Container array(to, DBUS_TYPE_ARRAY, "v");
    std::vector<PropertyList> elements;
    for (unsigned count = bytes.next() % 4; count > 0; --count)
        elements.push_back(appendVariant(array.iterator, bytes, depth + 1));
    return PropertyList::array(std::move(elements));
}

PropertyList appendDictionary(DBusMessageIter& to, Bytes& bytes, int depth) {
    Container array(to, DBUS_TYPE_ARRAY, "{sv}");
    MutableDictionary dictionary;
    for (unsigned count = bytes.next() % 4; count > 0; --count) {
        Container pair(array.iterator, DBUS_TYPE_DICT_ENTRY, nullptr);
        const std::string key = appendText(pair.iterator, bytes.text());
        dictionary.set(key, appendVariant(pair.iterator, bytes, depth + 1));
    }
    return std::move(dictionary).freeze();
}

PropertyList appendData(DBusMessageIter& to, Bytes& bytes) {
    const std::string text = bytes.text();
    const char* start = text.data();
    Container array(to, DBUS_TYPE_ARRAY, "y");
    require(
        dbus_message_iter_append_fixed_array(&array.iterator, DBUS_TYPE_BYTE, &start, static_cast<int>(text.size())));
    return PropertyList::data(text);
}

PropertyList appendDate(DBusMessageIter& to, Bytes& bytes) {
    Container structure(to, DBUS_TYPE_STRUCT, nullptr);
    return Date{append(structure.iterator, DBUS_TYPE_INT64, bytes.number<dbus_int64_t>())};
}

PropertyList appendStructure(DBusMessageIter& to, Bytes& bytes, int depth) {
    Container structure(to, DBUS_TYPE_STRUCT, nullptr);
    const std::string first = appendText(structure.iterator, bytes.text());
    return PropertyList::array({first, appendVariant(structure.iterator, bytes, depth + 1)});
}

PropertyList appendNumbered(DBusMessageIter& to, Bytes& bytes) {
    Container array(to, DBUS_TYPE_ARRAY, "{ib}");
    MutableDictionary dictionary;
    for (unsigned count = bytes.next() % 3; count > 0; --count) {
        Container pair(array.iterator, DBUS_TYPE_DICT_ENTRY, nullptr);
        const auto key = append(pair.iterator, DBUS_TYPE_INT32, bytes.number<dbus_int32_t>());
        dictionary.set(std::to_string(key),
                       append<dbus_bool_t>(pair.iterator, DBUS_TYPE_BOOLEAN, bytes.next() % 2) != 0);
    }
    return std::move(dictionary).freeze();
}

struct Type {
    const char* signature;
    PropertyList (*append)(DBusMessageIter&, Bytes&, int depth);
};

constexpr Type kTypes[] = {
    {"s", [](DBusMessageIter& to, Bytes& bytes, int) -> PropertyList { return appendText(to, bytes.text()); }},
    {"b",
     [](DBusMessageIter& to, Bytes& bytes, int) -> PropertyList {
         return append<dbus_bool_t>(to, 'b', bytes.next() % 2) != 0;
     }},
    {"y",
     [](DBusMessageIter& to, Bytes& bytes, int) -> PropertyList {
         return std::int64_t(append<unsigned char>(to, 'y', bytes.number<unsigned char>()));
     }},
    {"n",
     [](DBusMessageIter& to, Bytes& bytes, int) -> PropertyList {
         return std::int64_t(append(to, 'n', bytes.number<dbus_int16_t>()));
     }},
    {"u",
     [](DBusMessageIter& to, Bytes& bytes, int) -> PropertyList {
         return std::int64_t(append(to, 'u', bytes.number<dbus_uint32_t>()));
     }},
    {"x",
     [](DBusMessageIter& to, Bytes& bytes, int) -> PropertyList {
         return std::int64_t(append(to, 'x', bytes.number<dbus_int64_t>()));
     }},
    {"t",
     [](DBusMessageIter& to, Bytes& bytes, int) -> PropertyList {
         return std::uint64_t(append(to, 't', bytes.number<dbus_uint64_t>()));
     }},
    {"d",
     [](DBusMessageIter& to, Bytes& bytes, int) -> PropertyList {
         return append(to, 'd', double(bytes.number<dbus_int32_t>()) / 8);
     }},
    {"ay", [](DBusMessageIter& to, Bytes& bytes, int) { return appendData(to, bytes); }},
    {"(x)", [](DBusMessageIter& to, Bytes& bytes, int) { return appendDate(to, bytes); }},
    {"a{ib}", [](DBusMessageIter& to, Bytes& bytes, int) { return appendNumbered(to, bytes); }},
    {"v", appendVariant},
    {"av", appendArray},
    {"a{sv}", appendDictionary},
    {"(sv)", appendStructure},
};
constexpr unsigned kContainers = 4;  // the last ones

PropertyList appendVariant(DBusMessageIter& to, Bytes& bytes, int depth) {
    const unsigned choices = std::size(kTypes) - (depth < kDeepest ? 0 : kContainers);
    const Type& type = kTypes[bytes.next() % choices];
    Container variant(to, DBUS_TYPE_VARIANT, type.signature);
    return type.append(variant.iterator, bytes, depth + 1);
}

// Two ends of one connection in this process.
class Peers {
public:
    Peers() {
        qt::registerDBusTypes();
        QObject::connect(&server_, &QDBusServer::newConnection, [this](const QDBusConnection& connection) {
            receiver_ = new qt::SignalReceiver(connection, kForm, {}, [this](const QDBusMessage& message) {
                received = qt::propertyListFromDBus(message.arguments().at(0));
            });
        });
        sender_ = dbus_connection_open_private(server_.address().toUtf8().constData(), nullptr);
        require(sender_);
        while (!receiver_) turn();
    }
    PropertyList carried(DBusMessage* message) {
        received.reset();
        require(dbus_connection_send(sender_, message, nullptr));
        while (!received) turn();
        return *received;
    }

private:
    // The sender's end has a hand in the handshake too.
    void turn() {
        dbus_connection_read_write_dispatch(sender_, 0);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        require(dbus_connection_get_is_connected(sender_));
    }

    QDBusServer server_{QStringLiteral("unix:tmpdir=/tmp")};
    std::optional<PropertyList> received;
    qt::SignalReceiver* receiver_ = nullptr;
    DBusConnection* sender_ = nullptr;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static int sCount = 1;
    static char sName[] = "fuzz";
    static char* sArguments[] = {sName, nullptr};
    static auto* sApplication = new QCoreApplication(sCount, sArguments);
    static auto* sPeers = new Peers;
    Q_UNUSED(sApplication)
    DBusMessage* message = dbus_message_new_signal(kForm.path, kForm.interface, kForm.member);
    DBusMessageIter arguments;
    dbus_message_iter_init_append(message, &arguments);
    Bytes bytes(data, size);
    const PropertyList sent = appendDictionary(arguments, bytes, 0);
    const PropertyList received = sPeers->carried(message);
    dbus_message_iter_init(message, &arguments);
    const PropertyList direct = linux::propertyListFromMessage(arguments);
    dbus_message_unref(message);
    require(received == sent && direct == sent);
    return 0;
}
