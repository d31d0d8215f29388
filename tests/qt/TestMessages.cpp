#include "linux/messages/BusNotificationCenter.h"
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
    QDBusMessage signal =
        QDBusMessage::createSignal(QLatin1String(kNotificationForm.path), QLatin1String(kNotificationForm.interface),
                                   QLatin1String(kNotificationForm.member));
    signal.setArguments(arguments);
    QDBusConnection bus = sessionBusConnection(QStringLiteral("foreign"));
    CHECK(bus.send(signal));
}

// The one of programs without a toolkit, which the test turns.
class PlainCenter final : public DistributedNotificationCenter {
public:
    explicit PlainCenter(Log& log) : center_(bus_, loop_, log) { sAll.push_back(this); }
    ~PlainCenter() override { std::erase(sAll, this); }
    void post(std::string_view name, std::string_view object, const PropertyList& userInfo, bool now) override {
        center_.post(name, object, userInfo, now);
    }
    std::unique_ptr<Observation> addObserver(std::string_view name, std::string_view object, Delivery delivery,
                                             std::function<void(const Notification&)> handler) override {
        return center_.addObserver(name, object, delivery, std::move(handler));
    }
    void turn() {
        auto end = loop_.scheduleTimer(0.001, false, [this] { loop_.stop(); });
        loop_.run(bus_);
    }
    static inline std::vector<PlainCenter*> sAll;

private:
    linux::EventLoop loop_;
    linux::SessionBus bus_;
    linux::BusNotificationCenter center_;
};

using CenterPointer = std::unique_ptr<DistributedNotificationCenter>;
template <typename Center>
CenterPointer make(Log& log) {
    return std::make_unique<Center>(log);
}
constexpr CenterPointer (*kKinds[])(Log&) = {make<DBusNotificationCenter>, make<PlainCenter>};

bool comes(const std::function<bool()>& condition) {
    return waitFor([&] {
        for (PlainCenter* center : PlainCenter::sAll) center->turn();
        return condition();
    });
}

// What one kind of centre says to another.
void compareInformation(DistributedNotificationCenter& sender, DistributedNotificationCenter& receiver,
                        check::RecordingLog& log) {
    std::vector<Notification> heard;
    auto observation =
        receiver.addObserver("name", "", Delivery::Each, [&](const Notification& n) { heard.push_back(n); });
    auto sent = [&](const PropertyList& userInfo) {
        heard.clear();
        sender.post("name", "object", userInfo, true);
        REQUIRE(comes([&] { return !heard.empty(); }));
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
    REQUIRE(comes([&] { return !heard.empty(); }));
    CHECK_EQ(heard.size(), 1u);
    CHECK_EQ(heard[0].sender, sessionBusConnection(QStringLiteral("foreign")).baseService().toStdString());
    CHECK_EQ(heard[0].userInfo,
             PropertyList::dictionary(
                 {{"strings", PropertyList::array({"a", "b"})}, {"int", 7}, {"short", -2}, {"path", "/a"}}));
}

void hearUntilTheEnd(DistributedNotificationCenter& center) {
    std::string all, one;
    std::unique_ptr<Observation> everything = center.addObserver("", "", Delivery::Each, [&](const Notification& n) {
        all += n.name + n.object + (n.deliverImmediately ? "!" : ".");
        if (n.name == "end") everything.reset();
    });
    auto single =
        center.addObserver("a", "x", Delivery::Each, [&](const Notification& n) { one += n.name + n.object; });
    for (auto [name, object] : {std::pair{"a", "x"}, {"a", "y"}, {"b", "x"}, {"end", ""}, {"a", "x"}})
        center.post(name, object, {}, object[0] != 'y');
    REQUIRE(comes([&] { return one.size() == 4; }));
    CHECK_EQ(all + " " + one, "ax!ay.bx!end! axax");
}

}  // namespace

TEST(UserInformationComesBackAsItWasSent) {
    PrivateBus bus;
    for (int kinds = 0; kinds < 4; ++kinds) {
        check::RecordingLog log;
        CenterPointer sender = kKinds[kinds / 2](log), receiver = kKinds[kinds % 2](log);
        compareInformation(*sender, *receiver, log);
    }
}

TEST(ObserversHearWhatTheyAskedForUntilTheyEnd) {
    PrivateBus bus;
    check::RecordingLog log;
    for (auto kind : kKinds) hearUntilTheEnd(*kind(log));
}

TEST(WhatWasPostedIsSentThoughItsSenderEnds) {
    PrivateBus bus;
    check::RecordingLog log;
    const PropertyList large = PropertyList::dictionary({{"text", std::string(1 << 20, 'x')}});
    for (auto kind : kKinds) {
        CenterPointer receiver = kind(log);
        int heard = 0;
        auto observation = receiver->addObserver(
            "name", "", Delivery::Each, [&](const Notification& n) { heard += n.object == std::to_string(heard); });
        {
            CenterPointer sender = kind(log);
            for (int i = 0; i < 1000; ++i)
                sender->post("name", std::to_string(i), i < 6 ? large : PropertyList(), true);
        }
        CHECK(comes([&] { return heard == 1000; }));
    }
}

TEST(WhoEndsHearsNothingOfWhatIsHeldBack) {
    PrivateBus bus;
    check::RecordingLog log;
    for (auto kind : kKinds) {
        CenterPointer center = kind(log);
        bool isOver = false, isHeard = false;
        std::unique_ptr<Observation> ended;
        auto each = center->addObserver("a", "", Delivery::Each, [&](const Notification&) { ended.reset(); });
        ended = center->addObserver("a", "", Delivery::Latest, [&](const Notification&) { isHeard = true; });
        auto last =
            center->addObserver("a", "", Delivery::Latest, [&](const Notification& n) { isOver = n.object == "2"; });
        for (const char* object : {"1", "2"}) center->post("a", object, {}, true);
        CHECK(comes([&] { return isOver; }) && !isHeard);
    }
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
        check::RecordingLog plainLog;
        PlainCenter plain(plainLog);
        for (int i = 0; i < 3; ++i) plain.post("a", "b", {}, true);
        CHECK_EQ(plainLog.lines, log.lines);
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
