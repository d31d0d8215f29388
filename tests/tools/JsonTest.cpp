#include "tools/Json.h"

#include "tests/support/Check.h"

#include <cmath>
#include <fstream>
#include <limits>

using namespace platform;
using tools::JsonLayout;

namespace {

PropertyList dictionary(std::string_view key, PropertyList value) {
    return PropertyList::dictionary({{key, std::move(value)}});
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    while (count-- > 0) all += text;
    return all;
}

}  // namespace

TEST(EveryValueHasOneForm) {
    const std::pair<PropertyList, const char*> kCases[] = {
        {"line\n\"q\" \xE2\x82\xAC", "\"line\\n\\\"q\\\" \xE2\x82\xAC\""},
        {std::string_view("a\0b", 3), "\"a\\u0000b\""},
        {true, "true"},
        {std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
        {std::numeric_limits<std::uint64_t>::max(), "18446744073709551615"},
        {1.0, "1.0"},
        {-0.0, "-0.0"},
        {0.1, "0.1"},
        {1e300, "1e+300"},
        {5e-324, "5e-324"},
        {std::nan(""), R"({"$real":"nan"})"},
        {-std::numeric_limits<double>::infinity(), R"({"$real":"-inf"})"},
        {Date{1'769'860'800'000'001}, R"({"$date":"2026-01-31T12:00:00.000001Z"})"},
        {PropertyList::data(std::string_view("\0\xFF", 2)), R"({"$data":"AP8="})"},
        {PropertyList::data(""), R"({"$data":""})"},
        {PropertyList::dictionary({{"z", 1}, {"", PropertyList::array({})}, {"a", PropertyList::dictionary({})}}),
         R"({"z":1,"":[],"a":{}})"},
    };
    for (const auto& [value, text] : kCases) {
        CONTEXT(text);
        CHECK_EQ(tools::jsonText(value, JsonLayout::OneLine), std::string(text));
        CHECK_EQ(tools::parseJson(text).value, value);
    }
}

TEST(ADictionaryThatLooksLikeAnotherValueStaysADictionary) {
    const PropertyList text = dictionary("$date", "2026-01-31T12:00:00Z");
    const PropertyList kValues[] = {
        text,
        dictionary("$other", 1),
        dictionary("$dictionary", text),
        dictionary("$dictionary", dictionary("$dictionary", dictionary("$data", "AA=="))),
        dictionary("$dictionary", PropertyList::array({text})),
        PropertyList::dictionary({{"$dictionary", text}, {"b", text}}),
        PropertyList::dictionary({{"b", text}, {"$dictionary", text}}),
        PropertyList::dictionary({{"$date", "x"}, {"b", Date{0}}}),
    };
    for (const PropertyList& value : kValues) {
        std::string json = tools::jsonText(value, JsonLayout::Indented);
        CONTEXT(json);
        CHECK_EQ(tools::parseJson(json).value, value);
    }
}

TEST(WhatNoPropertyListCanHoldIsRefused) {
    const std::size_t deepest = PropertyList::kMaximumDepth - 1;  // a number inside makes one level more
    CHECK(tools::parseJson(repeated("[", deepest) + "1" + repeated("]", deepest)).error.empty());
    std::vector<std::string> texts = {"", "\"\xFF\"", repeated("[", 100'000),
                                      repeated("[", deepest + 1) + "1" + repeated("]", deepest + 1)};
    std::ifstream file(TEST_DATA "/malformed-json.txt");
    for (std::string line; std::getline(file, line);) texts.push_back(line);
    CHECK(texts.size() > 20);
    for (const std::string& text : texts) {
        CONTEXT(text.substr(0, 40));
        tools::JsonResult result = tools::parseJson(text);
        CHECK(!result.value && !result.error.empty());
        CHECK_EQ(result.error.find('\n'), std::string::npos);
    }
}
