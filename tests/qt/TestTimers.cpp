#include "propertylist/Date.h"
#include "qt/QtRunLoop.h"
#include "qt/controls/FirstPaint.h"
#include "tests/qt/QtTest.h"

#include <QPaintEvent>
#include <QShowEvent>

using namespace platform;

TEST(TimersFireOnTheirDatesAndMayBeMovedUntilTheyAreOver) {
    useApplication();
    qt::QtRunLoop loop;
    std::string order;
    int repeated = 0, invalidated = 0;
    Date began = loop.now(), ended, past = dateByAdding(began, -5);
    auto once = loop.scheduleTimer(0.03, false, [&] { order += "once ", ended = loop.now(); });
    auto late = loop.scheduleTimer(0, false, [&] { order += "late "; });
    auto soon = loop.scheduleTimer(10000, false, [&] { order += "soon "; });
    std::unique_ptr<Timer> other, timer = loop.scheduleTimer(0.001, true, [&] {
        if (++repeated == 3) timer.reset();
    });
    other = loop.scheduleTimer(0.001, true, [&] { ++invalidated, other->invalidate(); });
    CHECK(once->isValid() && once->fireDate() >= dateByAdding(began, 0.03));
    late->setFireDate(dateByAdding(loop.now(), 0.08));
    soon->setFireDate(past);
    CHECK(soon->fireDate() == past && soon->description().find(dateDescription(past)) != std::string::npos);
    REQUIRE(waitFor([&] { return order.size() == 15 && !timer; }));
    CHECK_EQ(order, "soon once late ");
    CHECK(ended >= dateByAdding(began, 0.025) && !once->isValid() && repeated == 3 && invalidated == 1);
    // Somebody sets the clock back by an hour.
    struct : Clock {
        Date now() const override { return dateByAdding(qt::QtRunLoop().now(), offset); }
        double offset = 0;
    } clock;
    qt::QtRunLoop setLoop(clock);
    auto hourly = setLoop.scheduleTimer(0.02, true, [&] { order += "tick "; });
    clock.offset = -3600;
    CHECK(hourly->fireDate() < dateByAdding(began, -3500));
    REQUIRE(waitFor([&] { return order.size() >= 25; }));
    hourly.reset();
    order.resize(15);

    Date date = once->fireDate();
    once->setFireDate(loop.now());
    settle();
    CHECK(once->fireDate() == date && order.size() == 15);
}

TEST(WhatWaitsForAWindowThatIsSeenLateComesOnce) {
    useApplication();
    QWidget widget;
    int calls = 0;
    qt::FirstPaint first(widget, [&] { ++calls; });
    QShowEvent shown;
    QPaintEvent painted(QRect(0, 0, 1, 1));
    QCoreApplication::sendEvent(&widget, &shown);
    CHECK(waitFor([&] { return first.isOver(); }));
    QCoreApplication::sendEvent(&widget, &painted);
    settle();
    CHECK_EQ(calls, 1);
}
