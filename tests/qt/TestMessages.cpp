#include "platform/PlinthRuntime.h"
#include "qt/messages/DBusNotificationCenter.h"
#include "qt/messages/RuntimeMessages.h"
#include "qt/messages/SessionBus.h"
#include "tests/qt/QtTest.h"

#include <QDBusMessage>
#include <QDBusObjectPath>

#include <dlfcn.h>

using namespace platform;
using namespace qt;

namespace {

PropertyList nested(int depth) {
    PropertyList value = "deep";
    for (int i = 0; i < depth; ++i) value = PropertyList::dictionary({{"k", value}});
    return value;
}

void sendForeign(const QVariantList& arguments) {
    QDBusMessage signal = QDBusMessage::createSignal(
        QLatin1String(kNotificationPath), QLatin1String(kNotificationInterface), QLatin1String(kNotificationMember));
    signal.setArguments(arguments);
    QDBusConnection bus = sessionBusConnection(QStringLiteral("foreign"));
    CHECK(bus.send(signal));
}

}  // namespace

TEST(UserInformationComesBackAsItWasSent) {
    PrivateBus bus;
    check::RecordingLog log;
    DBusNotificationCenter sender(log), receiver(log);
    std::vector<Notification> heard;
    auto observation = receiver.addObserver("name", "", [&](const Notification& n) { heard.push_back(n); });

    const PropertyList cases[] = {
        {},
        PropertyList::dictionary({}),
        PropertyList::dictionary({{"text", "Äpfel 🍏"}, {"empty", ""}, {"on", true}, {"off", false}}),
        PropertyList::dictionary({{"small", -1}, {"large", INT64_MIN}, {"huge", UINT64_MAX}, {"real", 0.1}}),
        PropertyList::dictionary({{"date", Date{-1'234'567'890'123'456}}, {"data", PropertyList::data({"\0\xFF", 2})}}),
        PropertyList::dictionary({{"list", PropertyList::array({1, "two", PropertyList::array({}), Date{3}})}}),
        nested(12),
    };
    for (const PropertyList& userInfo : cases) {
        CONTEXT(userInfo.description());
        heard.clear();
        sender.post("name", "object", userInfo, true);
        REQUIRE(waitFor([&] { return !heard.empty(); }));
        CHECK_EQ(heard[0].object, "object");
        CHECK_EQ(heard[0].userInfo, userInfo ? userInfo : PropertyList::dictionary({}));
    }
    CHECK_EQ(log.lines, std::vector<std::string>{});
    heard.clear();
    sender.post("name", "object", nested(40), false);
    REQUIRE(waitFor([&] { return !heard.empty(); }));
    CHECK_EQ(heard[0].userInfo.size(), 0u);
    CHECK_EQ(log.lines.size(), 1u);
}

TEST(ObserversHearWhatTheyAskedForUntilTheyEnd) {
    PrivateBus bus;
    check::RecordingLog log;
    DBusNotificationCenter center(log);
    std::string all, one;
    std::unique_ptr<Observation> everything =
        center.addFullObserver("", "", [&](const Notification& n, bool immediately) {
            all += n.name + n.object + (immediately ? "!" : ".");
            if (n.name == "end") everything.reset();
        });
    auto single = center.addObserver("a", "x", [&](const Notification& n) { one += n.name + n.object; });
    center.post("a", "x", {}, true);
    center.post("a", "y", {}, false);
    center.post("b", "x", {}, true);
    center.post("end", "", {}, true);
    center.post("a", "x", {}, true);
    REQUIRE(waitFor([&] { return one.size() == 4; }));
    CHECK_EQ(all, "ax!ay.bx!end!");
    CHECK_EQ(one, "axax");
}

TEST(ForeignSignalsGiveValuesOrNothing) {
    PrivateBus bus;
    check::RecordingLog log;
    DBusNotificationCenter center(log);
    std::vector<Notification> heard;
    auto observation = center.addObserver("", "", [&](const Notification& n) { heard.push_back(n); });
    sendForeign({QStringLiteral("too"), QStringLiteral("short")});
    sendForeign({QStringLiteral("wrong"), 1, QVariantMap(), true});
    sendForeign({QStringLiteral("n"), QStringLiteral("o"),
                 QVariantMap{{QStringLiteral("strings"), QStringList{QStringLiteral("a"), QStringLiteral("b")}},
                             {QStringLiteral("int"), 7},
                             {QStringLiteral("short"), QVariant::fromValue<short>(-2)},
                             {QStringLiteral("path"), QVariant::fromValue(QDBusObjectPath(QStringLiteral("/a")))}},
                 false});
    REQUIRE(waitFor([&] { return !heard.empty(); }));
    CHECK_EQ(heard.size(), 1u);
    CHECK_EQ(heard[0].userInfo,
             PropertyList::dictionary(
                 {{"strings", PropertyList::array({"a", "b"})}, {"int", 7}, {"short", -2}, {"path", "/a"}}));
}

TEST(WithoutABusNothingIsAnnouncedAndOneLineSaysSo) {
    useApplication();
    for (const char* address : {static_cast<const char*>(nullptr), "unix:path=/nowhere/bus"}) {
        CONTEXT(address ? address : "no address");
        check::ScopedEnvironment noAddress("DBUS_SESSION_BUS_ADDRESS", address);
        check::ScopedEnvironment noFolder("XDG_RUNTIME_DIR", nullptr);
        check::RecordingLog log;
        DBusNotificationCenter center(log);
        auto observation = center.addObserver("a", "", [](const Notification&) {});
        for (int i = 0; i < 3; ++i) center.post("a", "b", {}, true);
        CHECK_EQ(log.lines, std::vector<std::string>{"No session bus can be reached: changes are not announced"});
        CHECK(!center.isConnected());
    }
}

TEST(APostFindsABusThatCameBack) {
    check::RecordingLog log;
    useApplication();
    DBusNotificationCenter center(log);
    {
        PrivateBus bus;
        center.post("a", "b", {}, true);
        CHECK(center.isConnected());
    }
    PrivateBus bus;
    DBusNotificationCenter other(log);
    bool heard = false;
    auto observation = other.addObserver("a", "", [&](const Notification&) { heard = true; });
    REQUIRE(waitFor([&] { return center.isConnected(); }));
    center.post("a", "b", {}, true);
    CHECK(waitFor([&] { return heard; }));
}

#ifdef PLINTH_LIBRARY
TEST(TheRuntimeLibrarySendsMessagesToListeners) {
    void* library = dlopen(PLINTH_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    REQUIRE(library != nullptr);
    auto broadcast = reinterpret_cast<PlinthMessageBroadcastFunction>(dlsym(library, "PlinthMessageBroadcast"));
    PrivateBus bus;
    std::string heard;
    RuntimeMessageListener listener(
        [&](const RuntimeMessage& m) { heard += m.module + ":" + m.message + ":" + m.data + ";"; });
    REQUIRE(listener.isConnected());
    PlinthData data{"a\0b", 3};
    CHECK_EQ(broadcast("com.tarnwick.typeslate", "PrefChanged", nullptr), 0);
    CHECK_EQ(broadcast("m", "Ä", &data), 0);
    REQUIRE(waitFor([&] { return heard.ends_with(";m:Ä:" + std::string("a\0b", 3) + ";"); }));
    CHECK_EQ(heard, "com.tarnwick.typeslate:PrefChanged:;m:Ä:" + std::string("a\0b", 3) + ";");
    CHECK(broadcast(nullptr, "m", nullptr) < 0 && broadcast("m", "\xFF", nullptr) < 0);
}
#endif
