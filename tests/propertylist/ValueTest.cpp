#include "Samples.h"

#include "propertylist/PropertyListArena.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <thread>

using propertylist::Date;
using propertylist::MutableDictionary;
using propertylist::PropertyList;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(NumbersAreReadAsEveryKindOfNumber) {
    const std::tuple<const char*, PropertyList, bool, std::int64_t, double, std::uint64_t> kCases[] = {
        {"nothing", {}, false, 0, 0, 0},
        {"string", "7", false, 0, 0, 0},
        {"date", Date{5}, false, 0, 0, 0},
        {"true", true, true, 1, 1, 1},
        {"negative", -3, true, -3, -3, 0},
        {"lowest", INT64_MIN, true, INT64_MIN, -0x1p63, 0},
        {"highest", UINT64_MAX, true, INT64_MAX, 0x1p64, UINT64_MAX},
        {"cut off", -2.9, true, -2, -2.9, 0},
        {"too large", 1e300, true, INT64_MAX, 1e300, UINT64_MAX},
        {"infinite", -kInfinity, true, INT64_MIN, -kInfinity, 0},
    };
    for (const auto& [label, value, asBool, asInteger, asReal, asUnsigned] : kCases) {
        CONTEXT(label);
        CHECK_EQ(value.boolValue(), asBool);
        CHECK_EQ(value.integerValue(), asInteger);
        CHECK_EQ(value.realValue(), asReal);
        CHECK_EQ(value.unsignedValue(), asUnsigned);
    }
    CHECK_EQ(PropertyList(kNaN).integerValue(), 0);
    CHECK(!PropertyList(kNaN).boolValue());
    CHECK(PropertyList(UINT64_MAX).isUnsigned());
    CHECK(!PropertyList(std::uint64_t{INT64_MAX}).isUnsigned());
}

TEST(EqualityLooksAtTypeAndValue) {
    const PropertyList kDifferent[] = {
        {},
        "1",
        true,
        1,
        1.0,
        Date{1},
        PropertyList::data("1"),
        UINT64_MAX,
        -1,
        PropertyList::array({1}),
        PropertyList::array({1, 2}),
        PropertyList::array({2, 1}),
        PropertyList::dictionary({{"a", 1}}),
        PropertyList::dictionary({{"b", 1}}),
        PropertyList::dictionary({{"a", PropertyList::array({2})}}),
    };
    for (const PropertyList& a : kDifferent)
        for (const PropertyList& b : kDifferent) CHECK_EQ(a == b, &a == &b);
    CHECK(PropertyList(kNaN) == PropertyList(-kNaN));
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

TEST(TextThatIsNotUTF8IsNothing) {
    for (const char* text : {"\x80", "\xC0\x80", "\xC3", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "ok\xFF"})
        CHECK(!PropertyList(text));
    CHECK(PropertyList("\u00e9\uFFFF\U0010FFFF"));
}

TEST(ContainersHoldNoNothing) {
    CHECK_EQ(PropertyList::array({1, {}, 2}), PropertyList::array({1, 2}));
    CHECK_EQ(PropertyList::dictionary({{"a", 1}, {"b", {}}, {"\xFF", 2}}), PropertyList::dictionary({{"a", 1}}));
}

// The same operations on a list of pairs tell what is right, on both sides of the size that gets an index.
TEST(MutableDictionaryKeepsOrderThroughManyChanges) {
    MutableDictionary tested;
    std::vector<std::pair<std::string, int>> expected;
    auto same = [](const std::string& key) { return [&key](const auto& pair) { return pair.first == key; }; };
    std::uint32_t random = 1;
    for (int step = 0; step < 20'000; ++step) {
        random = random * 1664525 + 1013904223;
        std::string key = "key " + std::to_string((random >> 16) % (step < 10'000 ? 300 : 20));
        auto at = std::ranges::find_if(expected, same(key));
        if ((random >> 8) % 3 == 0) {
            tested.remove(key);
            std::erase_if(expected, same(key));
        } else {
            tested.set(key, step);
            at == expected.end() ? void(expected.emplace_back(key, step)) : void(at->second = step);
        }
        REQUIRE(tested.size() == expected.size());
        REQUIRE(tested[key].integerValue() == ((random >> 8) % 3 == 0 ? 0 : step));
    }
    PropertyList frozen = std::move(tested).freeze();
    REQUIRE(frozen.size() == expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        CHECK_EQ(frozen.entries()[i].key.stringValue(), expected[i].first);
        CHECK_EQ(frozen[expected[i].first].integerValue(), expected[i].second);
    }
}

TEST(MutableCopyLeavesTheSourceAlone) {
    PropertyList before = samples::everything();
    MutableDictionary copy(before);
    copy.set("string", 1);
    copy.remove("real");
    std::vector<PropertyList> elements = propertylist::mutableArray(before["integers"]);
    elements[0] = "changed";
    CHECK_EQ(before, samples::everything());
    CHECK_EQ(std::move(copy).freeze()["string"].integerValue(), 1);
    CHECK(propertylist::mutableArray("not an array").empty());
}

// Would overflow the stack if freeing, comparing or describing followed the nesting.
TEST(BuiltValuesMayBeNestedAsDeepAsTheyLike) {
    PropertyList deep = samples::nested(300'000), other = samples::nested(300'000);
    CHECK(deep == other);
    CHECK(encodePropertyList(deep, propertylist::PropertyListFormat::Binary).empty());
    CHECK(encodePropertyList(deep, propertylist::PropertyListFormat::XML).empty());
    CHECK(deep.description().size() < 2000);
}

TEST(DescriptionIsReadable) {
    const std::pair<PropertyList, const char*> kCases[] = {
        {{}, ""},
        {"as it \"is\"\n", "as it \"is\"\n"},
        {true, "1"},
        {-5, "-5"},
        {UINT64_MAX, "18446744073709551615"},
        {0.5, "0.5"},
        {Date{1'769'860'800'000'000}, "2026-01-31 12:00:00 +0000"},
        {PropertyList::data("\x01\xAB"), "<01ab>"},
        {PropertyList::array({"plain/x.y-z_1", "two words", ""}), "(plain/x.y-z_1, \"two words\", \"\")"},
        {PropertyList::array({"\"\\\n\x01"}), "(\"\\\"\\\\\\n\\x01\")"},
        {PropertyList::dictionary({{"a", false}, {"b c", PropertyList::dictionary({})}}), "{a = 0; \"b c\" = {};}"},
    };
    for (const auto& [value, text] : kCases) CHECK_EQ(value.description(), text);
}

// What an arena makes is like any other value, and outlives it.
TEST(ArenasMakeDictionariesOfStrings) {
    const std::pair<std::string, std::string> kPairs[] = {
        {"key", "value"}, {"", ""}, {"cl\u00e9", "\U0001F600"}, {"again", "value"}, {"long", std::string(70'000, 'l')}};
    const auto text = std::make_shared<const std::string>("key = value");
    MutableDictionary expected;
    PropertyList made, string;
    {
        propertylist::PropertyListArena arena(text);
        std::vector<propertylist::PropertyListArena::Field> fields;
        for (const auto& [key, value] : kPairs) {
            fields.push_back({arena.string(key), arena.string(value)});
            expected.set(key, value);
        }
        string = arena.value(arena.string(std::string_view(*text).substr(6)));
        made = arena.dictionary(fields);
    }
    CHECK_EQ(string.stringValue().data() == text->data() + 6 || string.stringValue() == "value", true);
    CHECK_EQ(made, std::move(expected).freeze());
    CHECK_EQ(propertylist::decodePropertyList(encodePropertyList(made, propertylist::PropertyListFormat::Binary)),
             made);
    made = made["long"];
    CHECK_EQ(made.stringValue().size(), 70'000U);
}

// For the thread sanitizer: the first look-ups race to make the index, and the last holder frees the value.
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

}  // namespace
