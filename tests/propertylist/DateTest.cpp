#include "propertylist/Date.h"

#include "Samples.h"

#include <limits>

using propertylist::Date;
using propertylist::PropertyList;

namespace {

TEST(DatesAsText) {
    const auto cases = check::casesIn(TEST_DATA "/dates.txt");
    for (const auto& c : cases) {
        CONTEXT(c.label);
        const auto date = propertylist::dateFromISO8601(c.text);
        CHECK_EQ(date ? std::to_string(date->microseconds) : "nothing", c.expected);
        if (date && c.argument == "both ways") CHECK_EQ(propertylist::iso8601FromDate(*date), c.text);
    }
    CHECK(cases.size() > 30);
    CHECK_EQ(propertylist::dateDescription({INT64_MAX}), "+294247-01-10 04:00:54 +0000");
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
    const PropertyList built = PropertyList::array(dates);
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
