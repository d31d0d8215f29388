#include "platform/PlinthRuntime.h"
#include "qt/messages/DBusNotificationCenter.h"
#include "qt/messages/DBusValues.h"
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
    receiver.connectAhead();
    std::vector<Notification> heard;
    auto observation =
        receiver.addObserver("name", "", Delivery::Each, [&](const Notification& n) { heard.push_back(n); });
    auto sent = [&](const PropertyList& userInfo) {
        heard.clear();
        sender.post("name", "object", userInfo, true);
        REQUIRE(waitFor([&] { return !heard.empty(); }));
        CHECK_EQ(heard[0].object, "object");
        return heard[0].userInfo;
    };
    const PropertyList empty = PropertyList::dictionary({});
    const PropertyList cases[] = {
        empty,
        PropertyList::dictionary({{"text", "Äpfel 🍏"}, {"empty", ""}, {"on", true}, {"off", false}}),
        PropertyList::dictionary({{"small", -1}, {"large", INT64_MIN}, {"huge", UINT64_MAX}, {"real", 0.1}}),
        PropertyList::dictionary({{"date", Date{-1'234'567'890'123'456}}, {"data", PropertyList::data({"\0\xFF", 2})}}),
        PropertyList::dictionary({{"list", PropertyList::array({1, "two", PropertyList::array({}), Date{3}})}}),
        nested(kDeepestUserInfo)};
    for (const PropertyList& userInfo : cases) CHECK_EQ(sent(userInfo), userInfo);
    CHECK_EQ(sent({}), empty);
    CHECK_EQ(log.lines.size(), 0u);
    CHECK_EQ(sent(nested(kDeepestUserInfo + 1)), empty);
    CHECK_EQ(log.lines.size(), 1u);

    sendForeign({QStringLiteral("name"), QStringLiteral("short")});
    sendForeign({QStringLiteral("name"), 1, QVariantMap(), true});
    heard.clear();
    sendForeign({QStringLiteral("name"), QStringLiteral("o"),
                 QVariantMap{{QStringLiteral("strings"), QStringList{QStringLiteral("a"), QStringLiteral("b")}},
                             {QStringLiteral("int"), 7},
                             {QStringLiteral("short"), QVariant::fromValue<short>(-2)},
                             {QStringLiteral("path"), QVariant::fromValue(QDBusObjectPath(QStringLiteral("/a")))}},
                 false});
    REQUIRE(waitFor([&] { return !heard.empty(); }));
    CHECK_EQ(heard.size(), 1u);
    CHECK_EQ(heard[0].sender, sessionBusConnection(QStringLiteral("foreign")).baseService().toStdString());
    CHECK_EQ(heard[0].userInfo,
             PropertyList::dictionary(
                 {{"strings", PropertyList::array({"a", "b"})}, {"int", 7}, {"short", -2}, {"path", "/a"}}));
}

TEST(ObserversHearWhatTheyAskedForUntilTheyEnd) {
    PrivateBus bus;
    check::RecordingLog log;
    DBusNotificationCenter center(log);
    std::string all, one;
    std::unique_ptr<Observation> everything = center.addObserver("", "", Delivery::Each, [&](const Notification& n) {
        all += n.name + n.object + (n.deliverImmediately ? "!" : ".");
        if (n.name == "end") everything.reset();
    });
    auto single =
        center.addObserver("a", "x", Delivery::Each, [&](const Notification& n) { one += n.name + n.object; });
    for (auto [name, object] : {std::pair{"a", "x"}, {"a", "y"}, {"b", "x"}, {"end", ""}, {"a", "x"}})
        center.post(name, object, {}, object[0] != 'y');
    REQUIRE(waitFor([&] { return one.size() == 4; }));
    CHECK_EQ(all + " " + one, "ax!ay.bx!end! axax");
}

TEST(WhatWasPostedIsSentThoughItsSenderEnds) {
    PrivateBus bus;
    check::RecordingLog log;
    DBusNotificationCenter receiver(log);
    int heard = 0;
    auto observation = receiver.addObserver("name", "", Delivery::Each, [&](const Notification&) { ++heard; });
    const PropertyList large = PropertyList::dictionary({{"text", std::string(1 << 20, 'x')}});
    for (DBusNotificationCenter sender(log); const char* object : {"a", "b", "c", "d", "e", "f"})
        sender.post("name", object, large, true);
    CHECK(waitFor([&] { return heard == 6; }));
}

TEST(WhoEndsHearsNothingOfWhatIsHeldBack) {
    PrivateBus bus;
    check::RecordingLog log;
    DBusNotificationCenter center(log);
    bool isOver = false, isHeard = false;
    std::unique_ptr<Observation> ended;
    auto each = center.addObserver("a", "", Delivery::Each, [&](const Notification&) { ended.reset(); });
    ended = center.addObserver("a", "", Delivery::Latest, [&](const Notification&) { isHeard = true; });
    auto last = center.addObserver("a", "", Delivery::Latest, [&](const Notification&) { isOver = true; });
    center.post("a", "", {}, true);
    CHECK(waitFor([&] { return isOver; }) && !isHeard);
}

TEST(WithoutABusOneLineSaysSoAndAPostFindsOneThatCame) {
    useApplication();
    check::RecordingLog log;
    DBusNotificationCenter center(log);
    for (const char* address : {static_cast<const char*>(nullptr), "unix:path=/nowhere/bus"}) {
        check::ScopedEnvironment noAddress("DBUS_SESSION_BUS_ADDRESS", address), noFolder("XDG_RUNTIME_DIR", nullptr);
        auto observation = center.addObserver("a", "", Delivery::Each, [](const Notification&) {});
        for (int i = 0; i < 3; ++i) center.post("a", "b", {}, true);
        CHECK_EQ(log.lines, std::vector<std::string>{"No session bus can be reached: changes are not announced"});
    }
    {
        PrivateBus bus;
        center.post("a", "b", {}, true);
    }
    PrivateBus bus;
    DBusNotificationCenter other(log);
    bool heard = false;
    auto observation = other.addObserver("a", "", Delivery::Each, [&](const Notification&) { heard = true; });
    CHECK(waitFor([&] {
        center.post("a", "b", {}, true);
        return heard;
    }));
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
