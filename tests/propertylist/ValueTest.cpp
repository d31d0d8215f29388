#include "Samples.h"

#include "propertylist/Date.h"
#include "propertylist/Hash.h"
#include "propertylist/PropertyListArena.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <set>
#include <thread>

using propertylist::Date;
using propertylist::MutableDictionary;
using propertylist::PropertyList;

namespace {

TEST(EqualityLooksAtTypeAndValue) {
    const auto array = [](std::vector<PropertyList> elements) { return PropertyList::array(std::move(elements)); };
    const auto one = [](const char* key, PropertyList value) { return PropertyList::dictionary({{key, value}}); };
    // clang-format off
    const PropertyList kDifferent[] = {{}, "1", true, 1, 1.0, Date{1}, PropertyList::data("1"), UINT64_MAX, -1, array({1}),
                                       array({1, 2}), array({2, 1}), one("a", 1), one("b", 1), one("a", array({2}))};
    // clang-format on
    for (const PropertyList& a : kDifferent)
        for (const PropertyList& b : kDifferent) CHECK_EQ(a == b, &a == &b);
    CHECK(PropertyList(0.0 / 0.0) == PropertyList(-(0.0 / 0.0)));
    CHECK(PropertyList(UINT64_MAX).isUnsigned() && !PropertyList(std::uint64_t{INT64_MAX}).isUnsigned());
    CHECK(PropertyList::dictionary({{"a", 1}, {"b", 2}}) == PropertyList::dictionary({{"b", 2}, {"a", 1}}));
    CHECK(samples::everything() == samples::everything());
}

TEST(LookUpsBeyondWhatIsThereGiveNothing) {
    PropertyList value = samples::everything();
    CHECK(!value["missing"]["deeper"][3]);
    CHECK(!value["integers"][8]);
    CHECK(!value["string"][0]);
    CHECK(!value[std::size_t{0}]);
    CHECK_EQ(value["nested"][""][1].stringValue(), "a");
    CHECK_EQ(value["zero inside"].stringValue().size(), std::size_t{3});
    CHECK_EQ(value["string"].dataValue(), "");
}

TEST(WhatCannotBeHeldIsLeftOut) {
    for (const char* text : {"\x80", "\xC0\x80", "\xC3", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "ok\xFF"})
        CHECK(!PropertyList(text));
    CHECK(PropertyList("\u00e9\uFFFF\U0010FFFF"));
    CHECK_EQ(PropertyList::array({1, {}, 2}), PropertyList::array({1, 2}));
    CHECK_EQ(PropertyList::dictionary({{"a", 1}, {"b", {}}, {"\xFF", 2}}), PropertyList::dictionary({{"a", 1}}));
}

// The same operations on a list of pairs tell what is right, on both sides of the size that gets an index.
TEST(MutableDictionaryKeepsOrderThroughManyChanges) {
    MutableDictionary tested;
    std::vector<std::pair<std::string, int>> expected;
    std::uint32_t random = 1;
    for (int step = 0; step < 20'000; ++step) {
        random = random * 1664525 + 1013904223;
        const std::string key = "key " + std::to_string((random >> 16) % (step < 10'000 ? 300 : 20));
        const bool isRemoved = (random >> 8) % 3 == 0;
        isRemoved ? tested.remove(key) : tested.set(key, step);
        const auto at = std::ranges::find(expected, key, &std::pair<std::string, int>::first);
        if (at != expected.end())
            isRemoved ? void(expected.erase(at)) : void(at->second = step);
        else if (!isRemoved)
            expected.emplace_back(key, step);
        REQUIRE(tested.size() == expected.size() && tested[key].integerValue() == (isRemoved ? 0 : step));
    }
    const PropertyList frozen = std::move(tested).freeze();
    REQUIRE(frozen.size() == expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        CHECK_EQ(frozen.entries()[i].key.stringValue(), expected[i].first);
        CHECK_EQ(frozen[expected[i].first].integerValue(), expected[i].second);
    }
}

TEST(MutableCopyLeavesTheSourceAlone) {
    const PropertyList before = samples::everything();
    MutableDictionary copy(before);
    copy.set("string", 1);
    copy.remove("real");
    copy.set("true", {});
    CHECK_EQ(copy.exchange("string", 2).integerValue(), 1);
    CHECK(!copy.exchange(3, 4) && !copy.exchange("new", 5));
    std::vector<PropertyList> elements = propertylist::mutableArray(before["integers"]);
    elements[0] = "changed";
    CHECK_EQ(before, samples::everything());
    const PropertyList changed = std::move(copy).freeze();
    CHECK(changed["string"].integerValue() == 2 && changed["new"].integerValue() == 5 && !changed["real"] &&
          !changed["true"]);
    CHECK(propertylist::mutableArray("not an array").empty());
}

// Would overflow the stack if freeing, comparing or describing followed the nesting.
TEST(BuiltValuesMayBeNestedAsDeepAsTheyLike) {
    PropertyList deep = samples::nested(300'000), other = samples::nested(300'000);
    CHECK(deep == other);
    CHECK(deep.description().size() < 2000);
}

// What an arena makes is like any other value, and outlives it.
TEST(ArenasMakeDictionariesOfStrings) {
    const auto text = std::make_shared<const std::string>("key = value");
    const std::string l(70'000, 'l');
    PropertyList made, string;
    {
        propertylist::PropertyListArena arena(text);
        const auto value = arena.string(std::string_view(*text).substr(6));
        std::string passing = l;
        const auto empty = arena.string(""), longKey = arena.string(passing);
        passing.assign(passing.size(), '-');
        string = arena.value(value);
        made = arena.dictionary({{{arena.string("cl\u00e9"), value}, {empty, longKey}, {longKey, empty}}});
    }
    CHECK(string.stringValue().data() == text->data() + 6 && string.stringValue() == "value");
    CHECK_EQ(made, PropertyList::dictionary({{l, ""}, {"cl\u00e9", "value"}, {"", l}}));
    CHECK_EQ(propertylist::decodePropertyList(encodePropertyList(made, propertylist::PropertyListFormat::Binary)),
             made);
    string = made[l];
    made = {};
    CHECK_EQ(string, PropertyList(""));
}

// For the thread sanitizer: the first look-ups race to make the index, and the last holder frees the value.
TEST(EveryByteCountsInTheHashOfContents) {
    std::set<std::uint64_t> hashes;
    std::string bytes(300, 'x');
    for (std::size_t size = 0; size < bytes.size(); ++size)
        hashes.insert(propertylist::hashContents({bytes.data(), size}));
    for (char& changed : bytes) {
        for (char other : {'y', '\0'}) {
            changed = other;
            hashes.insert(propertylist::hashContents(bytes));
        }
        changed = 'x';
    }
    CHECK_EQ(hashes.size(), 3 * bytes.size());
}

TEST(ThreadsShareAValue) {
    std::vector<std::string> keys;
    MutableDictionary built;
    for (int i = 0; i < 500; ++i) {
        keys.push_back("key " + std::to_string(i));
        built.set(keys.back(), keys.back());
    }
    PropertyList forms[] = {std::move(built).freeze(), {}};
    forms[1] = propertylist::decodePropertyList(encodePropertyList(forms[0], propertylist::PropertyListFormat::Binary));
    for (PropertyList& shared : forms) {
        std::atomic<int> wrong{0};
        std::vector<std::thread> threads;
        for (std::size_t thread = 0; thread < 4; ++thread)
            threads.emplace_back([copy = shared, thread, &keys, &wrong]() mutable {
                for (std::size_t i = thread; i < keys.size(); i += 3)
                    if (copy[keys[i]].stringValue() != keys[i]) ++wrong;
                copy = {};
            });
        shared = {};
        for (std::thread& thread : threads) thread.join();
        CHECK_EQ(wrong.load(), 0);
    }
}

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
