#include "propertylist/Date.h"
#include "qt/QtRunLoop.h"
#include "tests/qt/QtTest.h"

using namespace platform;

TEST(AOneShotTimerFiresOnceAndNotBeforeItsDate) {
    useApplication();
    qt::QtRunLoop loop;
    int fired = 0;
    Date began = loop.now(), ended;
    auto timer = loop.scheduleTimer(0.03, false, [&] { ++fired, ended = loop.now(); });
    CHECK(timer->isValid());
    CHECK(timer->fireDate() >= dateByAdding(began, 0.03));
    REQUIRE(waitFor([&] { return fired > 0; }));
    CHECK(ended >= dateByAdding(began, 0.025));
    CHECK(!timer->isValid());
    Date date = timer->fireDate();
    timer->setFireDate(loop.now());
    CHECK(timer->fireDate() == date);
    settle();
    CHECK_EQ(fired, 1);
}

TEST(AnotherFireDateMovesATimer) {
    useApplication();
    qt::QtRunLoop loop;
    std::vector<std::string> order;
    auto late = loop.scheduleTimer(0, false, [&] { order.push_back("late"); });
    auto soon = loop.scheduleTimer(10000, false, [&] { order.push_back("soon"); });
    late->setFireDate(dateByAdding(loop.now(), 0.05));
    Date date = dateByAdding(loop.now(), -5);
    soon->setFireDate(date);
    CHECK(soon->fireDate() == date);
    CHECK(soon->description().find(dateDescription(date)) != std::string::npos);
    REQUIRE(waitFor([&] { return order.size() == 2; }));
    CHECK_EQ(order, std::vector<std::string>{"soon", "late"});
}

TEST(ATimerMayEndInItsOwnAction) {
    useApplication();
    qt::QtRunLoop loop;
    int repeated = 0, invalidated = 0;
    std::unique_ptr<Timer> timer = loop.scheduleTimer(0.001, true, [&] {
        if (++repeated == 3) timer.reset();
    });
    std::unique_ptr<Timer> other = loop.scheduleTimer(0.001, true, [&] {
        ++invalidated;
        other->invalidate();
    });
    REQUIRE(waitFor([&] { return !timer && invalidated > 0; }));
    bool done = false;
    auto later = loop.scheduleTimer(0.02, false, [&] { done = true; });
    REQUIRE(waitFor([&] { return done; }));
    CHECK_EQ(repeated, 3);
    CHECK_EQ(invalidated, 1);
}
