#include "Samples.h"

#include <functional>

using namespace std::string_literals;
using propertylist::PropertyList;

namespace {

std::string encoded(const PropertyList& value) {
    return encodePropertyList(value, propertylist::PropertyListFormat::Binary);
}

std::string number(std::uint64_t value, unsigned width) {
    std::string bytes;
    for (unsigned i = width; i-- > 0;) bytes += static_cast<char>(i < 8 ? value >> (8 * i) : 0);
    return bytes;
}

struct File {
    std::vector<std::string> objects;
    unsigned referenceWidth = 1;
    std::uint64_t top = 0;

    std::string bytes(std::function<void(std::vector<std::uint64_t>&)> changeOffsets = {}) const {
        std::string file = "bplist00";
        std::vector<std::uint64_t> offsets;
        for (const std::string& object : objects) {
            offsets.push_back(file.size());
            file += object;
        }
        std::uint64_t table = file.size();
        if (changeOffsets) changeOffsets(offsets);
        for (std::uint64_t offset : offsets) file += number(offset, 2);
        return file + std::string(6, '\0') + number(2, 1) + number(referenceWidth, 1) + number(offsets.size(), 8) +
               number(top, 8) + number(table, 8);
    }
    PropertyList value() const { return propertylist::decodePropertyList(bytes()); }
};

TEST(BinaryKeepsEveryValue) {
    PropertyList value = samples::everything();
    PropertyList back = propertylist::decodePropertyList(encoded(value));
    CHECK_EQ(back, value);
    for (std::size_t i = 0; i < value.size(); ++i) CHECK_EQ(back.entries()[i].key, value.entries()[i].key);
    for (const auto& [key, each] : value.entries()) CHECK_EQ(propertylist::decodePropertyList(encoded(each)), each);
    CHECK_EQ(encoded(back), encoded(value));
    CHECK(encoded({}).empty());
}

TEST(EqualTextsAndNumbersAreWrittenOnce) {
    PropertyList list = PropertyList::array({"some text", 1'000'000, 0.5, true});
    std::vector<PropertyList> many(100, list);
    for (int i = 0; i < 100; ++i) many.push_back(PropertyList::array({"some text"s, 1'000'000, 0.5, true}));
    std::size_t size = encoded(PropertyList::array(many)).size();
    CHECK(size < 1500);
    // The nodes of a decoded file meet new ones that equal them.
    std::vector<PropertyList> edited =
        propertylist::mutableArray(propertylist::decodePropertyList(encoded(PropertyList::array(many))));
    edited.push_back(PropertyList::array({"some text"s, 1'000'000, 0.5, true}));
    CHECK(encoded(PropertyList::array(edited)).size() < size + 20);
    CHECK_EQ(propertylist::decodePropertyList(encoded(PropertyList::array(edited))), PropertyList::array(edited));
}

TEST(ValuesOfManyFilesAreWrittenTogether) {
    std::vector<PropertyList> parts;
    for (int i = 0; i < 8; ++i)
        parts.push_back(propertylist::decodePropertyList(
            encoded(PropertyList::array({i, i % 2 == 0, "common", samples::everything()}))));
    PropertyList all = PropertyList::array(parts);
    CHECK_EQ(propertylist::decodePropertyList(encoded(all)), all);
}

TEST(FileTruncatedAtAnyByteIsNothing) {
    std::string bytes = encoded(samples::everything());
    for (std::size_t size = 0; size < bytes.size(); ++size)
        if (propertylist::decodePropertyList(std::string_view(bytes).substr(0, size)))
            check::fail("truncated", static_cast<int>(size), "decodes");
    CHECK(!propertylist::decodePropertyList(bytes + '\0'));
}

TEST(ForeignFormsOfObjectsAreRead) {
    const std::tuple<const char*, std::string, PropertyList> kCases[] = {
        {"unsigned byte", "\x10\xFF"s, 255},
        {"unsigned word", "\x11\xFF\xFF"s, 65535},
        {"unsigned long", "\x12\xFF\xFF\xFF\xFF"s, 0xFFFFFFFFU},
        {"signed", "\x13"s + std::string(8, '\xFF'), -1},
        {"wide", "\x14"s + std::string(8, '\0') + number(UINT64_MAX, 8), UINT64_MAX},
        {"wide negative", "\x14"s + std::string(16, '\xFF'), -1},
        {"short real", "\x22\x3F\x80\0\0"s, 1.0},
        {"length in two bytes", "\x5F\x11\0\x02hi"s, "hi"},
        {"UTF-16", "\x63\0\xE9\xD8\x3D\xDE\0"s, "\u00e9\U0001F600"},
        {"date", "\x33"s + std::string(8, '\0'), propertylist::Date{978'307'200'000'000}},
    };
    for (const auto& [label, object, value] : kCases) {
        CONTEXT(label);
        CHECK_EQ(File{{object}}.value(), value);
    }
}

TEST(MalformedObjectsMakeTheFileNothing) {
    const auto cases = check::casesIn(TEST_DATA "/malformed-objects.txt");
    for (const auto& c : cases) {
        CONTEXT(c.label);
        CHECK(!File{{c.text}}.value());
        CHECK(!File{{"\x51\x61"s, c.text}, 1, 1}.value());
    }
    CHECK(cases.size() > 20);
    CHECK(!File({{"\xA1\0"s}}).value());
    CHECK(!File({{"\xD1\x01\x01"s, "\x10\x01"s}}).value());
    CHECK(!File({{"\xA1\x01"s, "\xD1\x02\0"s, "\x51k"s}}).value());
}

TEST(MalformedTablesMakeTheFileNothing) {
    File file{{"\xA2\x01\x01"s, "\x51\x61"s}};
    REQUIRE(file.value().size() == 2);
    using Offsets = std::vector<std::uint64_t>;
    CHECK(!propertylist::decodePropertyList(file.bytes([](Offsets& offsets) { offsets[1] = 7; })));
    CHECK(!propertylist::decodePropertyList(file.bytes([](Offsets& offsets) { offsets[1] = 13; })));
    // Many objects on the same bytes would take memory out of proportion.
    CHECK(!propertylist::decodePropertyList(file.bytes([](Offsets& offsets) { offsets.resize(20'000, 8); })));
    const std::pair<std::size_t, char> kTrailerBytes[] = {
        {6, 0}, {6, 1}, {6, 9}, {7, 0}, {7, 9}, {15, 1}, {15, 3}, {8, '\xFF'}, {23, 2}, {16, 1}, {31, 4}, {24, '\xFF'}};
    for (auto [at, value] : kTrailerBytes) {
        std::string bytes = file.bytes();
        bytes[bytes.size() - 32 + at] = value;
        CONTEXT("trailer byte " + std::to_string(at) + " is " + std::to_string(value));
        CHECK(!propertylist::decodePropertyList(bytes));
    }
}

TEST(LastValueOfARepeatedKeyStandsAtTheFirstPlace) {
    PropertyList value = File{
        {"\xD3\x01\x02\x03\x04\x05\x05"s, "\x51\x61"s, "\x51\x62"s, "\x51\x61"s, "\x10\x01"s,
         "\x10\x02"s}}.value();
    REQUIRE(value.size() == 2);
    CHECK_EQ(value.entries()[0].key.stringValue(), "a");
    CHECK_EQ(value["a"].integerValue(), 2);
    CHECK_EQ(value["b"].integerValue(), 2);
}

TEST(NestingIsReadToTheLimitAndNoFurther) {
    PropertyList deepest = samples::nested(PropertyList::kMaximumDepth);
    CHECK_EQ(propertylist::decodePropertyList(encoded(deepest)), deepest);
    CHECK(encoded(samples::nested(PropertyList::kMaximumDepth + 1)).empty());
    for (unsigned depth : {PropertyList::kMaximumDepth, PropertyList::kMaximumDepth + 1, 30'000U}) {
        File file{{}, 2};
        for (unsigned i = 1; i < depth; ++i) file.objects.push_back(std::string("\xA1").append(number(i, 2)));
        file.objects.push_back("\xA0");
        CHECK_EQ(static_cast<bool>(file.value()), depth <= PropertyList::kMaximumDepth);
    }
}

TEST(SharedValuesExpandOnlySoFar) {
    PropertyList some = samples::doubled(10);
    CHECK_EQ(propertylist::decodePropertyList(encoded(some)), some);
    CHECK(encoded(some).size() < 150);
    for (unsigned levels : {30U, 200U}) {
        CHECK(encoded(samples::doubled(levels)).empty());
        File file;
        for (unsigned i = 1; i <= levels; ++i)
            file.objects.push_back(std::string("\xA2").append(2, static_cast<char>(i)));
        file.objects.push_back("\x51\x61");
        CHECK(!file.value());
    }
}

}  // namespace
