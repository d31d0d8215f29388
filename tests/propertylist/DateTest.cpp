#include "propertylist/Date.h"

#include "Samples.h"
#include "platform/RunLoop.h"

#include <limits>

using propertylist::Date;
using propertylist::PropertyList;

namespace {

TEST(DatesAsTextAndBack) {
    const std::pair<std::int64_t, const char*> kCases[] = {
        {0, "1970-01-01T00:00:00.000000Z"},
        {-1, "1969-12-31T23:59:59.999999Z"},
        {1'769'860'800'123'456, "2026-01-31T12:00:00.123456Z"},
        {951'782'400'000'000, "2000-02-29T00:00:00.000000Z"},
        {-62'135'596'800'000'000, "0001-01-01T00:00:00.000000Z"},
        {-62'135'596'800'000'001, "+0000-12-31T23:59:59.999999Z"},
        {-62'198'755'200'000'000, "-0001-01-01T00:00:00.000000Z"},
        {253'402'300'799'999'999, "9999-12-31T23:59:59.999999Z"},
        {253'402'300'800'000'000, "+10000-01-01T00:00:00.000000Z"},
        {INT64_MIN, "-290308-12-21T19:59:05.224192Z"},
        {INT64_MAX, "+294247-01-10T04:00:54.775807Z"},
    };
    for (const auto& [microseconds, text] : kCases) {
        CHECK_EQ(propertylist::iso8601FromDate({microseconds}), text);
        auto date = propertylist::dateFromISO8601(text);
        REQUIRE(date.has_value());
        CHECK_EQ(date->microseconds, microseconds);
    }
    CHECK_EQ(propertylist::dateFromISO8601("2026-01-31T12:00:00Z")->microseconds, 1'769'860'800'000'000);
    CHECK_EQ(propertylist::dateFromISO8601("2026-01-31T12:00:00.5Z")->microseconds, 1'769'860'800'500'000);
    CHECK_EQ(propertylist::dateDescription({INT64_MAX}), "+294247-01-10 04:00:54 +0000");
}

TEST(TextThatIsNoDateIsRefused) {
    for (const char* text :
         {"", "2026-01-31", "2026-01-31T12:00:00", "2026-02-29T12:00:00Z", "1900-02-29T00:00:00Z",
          "2026-13-01T00:00:00Z", "2026-00-01T00:00:00Z", "2026-01-00T00:00:00Z", "2026-01-01T24:00:00Z",
          "2026-01-01T00:60:00Z", "2026-01-01T00:00:60Z", "2026-01-01T00:00:00.Z", "26-01-01T00:00:00Z",
          "12026-01-01T00:00:00Z", "2026-01-01T00:00:00Zx", " 2026-01-01T00:00:00Z", "+294248-01-01T00:00:00Z",
          "2026-1-01T00:00:00Z"})
        CHECK(!propertylist::dateFromISO8601(text).has_value());
}

TEST(EveryDayOfFourCenturiesFollowsTheOneBefore) {
    for (std::int64_t day = -40'000; day < 110'000; ++day) {
        auto t = propertylist::calendarTime({day * 86'400'000'000});
        REQUIRE(propertylist::daysFromCivil(t.year, t.month, t.day) == day);
        REQUIRE(propertylist::dateFromCalendar(t).has_value());
    }
}

TEST(DatesEqualThemselvesAfterTheDisk) {
    std::vector<std::int64_t> cases = {INT64_MIN, INT64_MAX, INT64_MAX - 1, 0, 978'307'200'000'001};
    std::uint64_t random = 1;
    for (int i = 0; i < 20'000; ++i) {
        random = random * 6364136223846793005U + 1442695040888963407U;
        cases.push_back(static_cast<std::int64_t>(random) >> (i % 50));
    }
    std::vector<PropertyList> dates;
    for (std::int64_t microseconds : cases) {
        dates.emplace_back(Date{microseconds});
        constexpr std::int64_t kExact = std::int64_t{7'500'000'000} * 1'000'000;
        if (microseconds > -kExact && microseconds < kExact)
            CHECK_EQ(dates.back().dateValue()->microseconds, microseconds);
    }
    PropertyList built = PropertyList::array(dates);
    CHECK(propertylist::decodePropertyList(encodePropertyList(built, propertylist::PropertyListFormat::Binary)) ==
          built);
}

TEST(AddingToADateStaysInItsRange) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    CHECK_EQ(propertylist::dateByAdding({10}, 1.5).microseconds, 1'500'010);
    CHECK_EQ(propertylist::dateByAdding({10}, -0.000'02).microseconds, -10);
    CHECK_EQ(propertylist::dateByAdding({10}, kInfinity).microseconds, INT64_MAX);
    CHECK_EQ(propertylist::dateByAdding({INT64_MIN + 5}, -1).microseconds, INT64_MIN);
    CHECK_EQ(propertylist::dateByAdding({10}, kInfinity - kInfinity).microseconds, 10);
}

}  // namespace
