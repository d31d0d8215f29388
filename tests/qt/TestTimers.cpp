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
    CHECK(timer->isValid() && timer->fireDate() >= dateByAdding(began, 0.03));
    REQUIRE(waitFor([&] { return fired > 0; }));
    CHECK(ended >= dateByAdding(began, 0.025) && !timer->isValid());
    Date date = timer->fireDate();
    timer->setFireDate(loop.now());
    settle();
    CHECK(timer->fireDate() == date && fired == 1);
}

TEST(AnotherFireDateMovesATimer) {
    useApplication();
    qt::QtRunLoop loop;
    std::string order;
    auto late = loop.scheduleTimer(0, false, [&] { order += "late "; });
    auto soon = loop.scheduleTimer(10000, false, [&] { order += "soon "; });
    late->setFireDate(dateByAdding(loop.now(), 0.05));
    Date date = dateByAdding(loop.now(), -5);
    soon->setFireDate(date);
    CHECK(soon->fireDate() == date && soon->description().find(dateDescription(date)) != std::string::npos);
    REQUIRE(waitFor([&] { return order.size() == 10; }));
    CHECK_EQ(order, "soon late ");
}

TEST(ARepeatingTimerMayEndInItsOwnAction) {
    useApplication();
    qt::QtRunLoop loop;
    int repeated = 0, invalidated = 0;
    bool isOver = false;
    std::unique_ptr<Timer> other, timer = loop.scheduleTimer(0.001, true, [&] {
        if (++repeated == 3) timer.reset();
    });
    other = loop.scheduleTimer(0.001, true, [&] { ++invalidated, other->invalidate(); });
    auto later = loop.scheduleTimer(0.05, false, [&] { isOver = true; });
    REQUIRE(waitFor([&] { return isOver && !timer; }));
    CHECK(repeated == 3 && invalidated == 1);
}
