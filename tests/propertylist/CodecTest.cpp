#include "Samples.h"

#include "propertylist/Unicode.h"

#include <functional>
#include <sstream>

using namespace std::string_literals;
using propertylist::decodePropertyList;
using propertylist::PropertyList;
using propertylist::PropertyListFormat;

namespace {

constexpr PropertyListFormat kFormats[] = {PropertyListFormat::Binary, PropertyListFormat::XML};

std::string binary(const PropertyList& value) { return encodePropertyList(value, PropertyListFormat::Binary); }
std::string xml(const PropertyList& value) { return encodePropertyList(value, PropertyListFormat::XML); }

std::string number(std::uint64_t value, unsigned width) {
    std::string bytes;
    for (unsigned i = width; i-- > 0;) bytes += static_cast<char>(i < 8 ? value >> (8 * i) : 0);
    return bytes;
}

struct File {
    std::vector<std::string> objects;
    unsigned referenceWidth = 1;

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
               number(0, 8) + number(table, 8);
    }
    PropertyList value() const { return decodePropertyList(bytes()); }
};

// "type description"
std::string told(const PropertyList& value) {
    constexpr const char* kTypes[] = {"nothing", "string ", "boolean ", "integer ",   "real ",
                                      "date ",   "data ",   "array ",   "dictionary "};
    return kTypes[static_cast<int>(value.type())] + value.description();
}

// The same, or "nothing: reason at position".
std::string toldOf(const std::string& bytes) {
    propertylist::DecodeProblem problem;
    const PropertyList value = decodePropertyList(bytes, &problem);
    CHECK_EQ(!value, problem.reason != nullptr);
    return value ? told(value) : propertylist::formatted("nothing: %s at %d", {problem.reason, problem.position});
}

std::string asNumbers(const PropertyList& value) {
    std::ostringstream text;
    text << std::boolalpha << value.boolValue() << ' ' << value.integerValue() << ' ' << value.realValue() << ' '
         << value.unsignedValue();
    return text.str();
}

PropertyList withoutControls() {
    propertylist::MutableDictionary changed(samples::everything());
    changed.remove("zero inside");
    changed.set("date", propertylist::Date{-1'000'000});
    changed.set("characters", "\r\n\t \r<&>\"'\u0085\u2028]]>");
    changed.set("key\rwith <&>", true);
    return std::move(changed).freeze();
}

}  // namespace

TEST(BytesAndWhatTheyDecodeTo) {
    const auto cases = check::casesIn(TEST_DATA "/decoding.txt");
    for (const auto& c : cases) {
        CONTEXT(c.label);
        const std::string bytes = c.argument == "object"     ? File{{c.text}}.bytes()
                                  : c.argument == "objects"  ? File{check::linesIn(c.text)}.bytes()
                                  : c.argument == "document" ? c.text
                                                             : "<plist>" + c.text + "</plist>";
        CHECK_EQ(c.argument == "numbers" ? asNumbers(decodePropertyList(bytes)) : toldOf(bytes), c.expected);
        // What nothing refers to must be sound, too.
        if (c.argument == "object" && c.expected.starts_with("nothing")) CHECK(!File{{"\x51\x61"s, c.text}}.value());
    }
    CHECK(cases.size() > 120);
}

TEST(EveryValueIsKept) {
    CHECK(propertylist::isASCII("ASCII up to e") && !propertylist::isASCII("ASCII up to \u00E9"));
    for (PropertyListFormat format : kFormats) {
        const bool isXML = format == PropertyListFormat::XML;
        const PropertyList value = isXML ? withoutControls() : samples::everything();
        const PropertyList back = decodePropertyList(encodePropertyList(value, format));
        CHECK_EQ(back, value);
        for (std::size_t i = 0; i < value.size(); ++i) CHECK_EQ(back.entries()[i].key, value.entries()[i].key);
        for (const auto& [key, each] : value.entries())
            CHECK_EQ(decodePropertyList(encodePropertyList(each, format)), each);
        CHECK_EQ(encodePropertyList(back, format), encodePropertyList(value, format));
        CHECK(encodePropertyList({}, format).empty());
    }
}

TEST(XMLRefusesWhatItCannotExpress) {
    for (const PropertyList& value :
         {PropertyList("\x01"), PropertyList("\uFFFE"), PropertyList(std::string_view("\0", 1)),
          PropertyList(propertylist::Date{INT64_MIN}), PropertyList::dictionary({{"\x1B", 1}}),
          PropertyList::array({propertylist::Date{253'402'300'800'000'000}}), samples::doubled(40)})
        CHECK_EQ(xml(value), "");
}

TEST(EqualTextsAndNumbersAreWrittenOnce) {
    const auto list = [] { return PropertyList::array({"some text"s, 1'000'000, 0.5, true, std::string(2000, 'x')}); };
    std::vector<PropertyList> many(100, list());
    for (int i = 0; i < 100; ++i) many.push_back(list());
    const std::string once = binary(PropertyList::array(many));
    CHECK(once.size() < 3500);
    // What was read from several files meets what was built.
    std::vector<PropertyList> edited = propertylist::mutableArray(decodePropertyList(once));
    edited.push_back(list());
    edited.push_back(decodePropertyList(binary(list())));
    CHECK(binary(PropertyList::array(edited)).size() < once.size() + 40);
    CHECK_EQ(decodePropertyList(binary(PropertyList::array(edited))), PropertyList::array(edited));
    const PropertyList read = decodePropertyList(binary(PropertyList::array({true, false})));
    CHECK_EQ(binary(PropertyList::array({read[0], true, read[1], false})).size(), 8 + 5 + 2 + 3 + 32u);
    many.clear();
    for (int i = 0; i < 100; ++i) many.emplace_back(1'000'000);
    CHECK(binary(PropertyList::array(many)).size() < 200);
    CHECK_EQ(told(decodePropertyList(binary(PropertyList::array({1, true, 1.0, "1", propertylist::Date{1}})))),
             "array (1, 1, 1, 1, \"1970-01-01 00:00:00 +0000\")");
}

TEST(FileTruncatedAtAnyByteIsNothing) {
    const PropertyList value =
        PropertyList::dictionary({{"a", PropertyList::array({1, "b<&", 0.5, true})}, {"c", PropertyList::data("d")}});
    for (PropertyListFormat format : kFormats) {
        std::string bytes = encodePropertyList(value, format);
        if (format == PropertyListFormat::XML) bytes.pop_back();  // the line end
        for (std::size_t size = 0; size < bytes.size(); ++size)
            CHECK(toldOf(bytes.substr(0, size)).starts_with("nothing: "));
        CHECK_EQ(toldOf(bytes.substr(0, 20)), "nothing: unexpected end at 20");
    }
    CHECK(!decodePropertyList(binary(value) + '\0'));
}

TEST(ReferencesAndTablesMustBeSound) {
    File file{{"\xA2\x01\x01"s, "\x51\x61"s}};
    REQUIRE(file.value().size() == 2);
    File cycle{std::vector<std::string>(300, "\x51\x61")};
    cycle.objects[0] = "\xA1\0"s;
    CHECK(!cycle.value());
    using Offsets = std::vector<std::uint64_t>;
    for (std::uint64_t outside : {7, 13})
        CHECK_EQ(toldOf(file.bytes([=](Offsets& offsets) { offsets[1] = outside; })),
                 "nothing: offset outside the objects at 15");
    // Many objects on the same bytes would take memory out of proportion.
    CHECK(!decodePropertyList(file.bytes([](Offsets& offsets) { offsets.resize(20'000, 8); })));
    CHECK(!decodePropertyList(file.bytes().insert(file.bytes().size() - 32, 2, '\0')));
    const std::pair<std::size_t, char> kTrailerBytes[] = {
        {6, 0}, {6, 1}, {6, 9}, {7, 0}, {7, 9}, {15, 1}, {15, 3}, {8, '\xFF'}, {23, 2}, {16, 1}, {31, 4}, {24, '\xFF'}};
    for (auto [at, value] : kTrailerBytes) {
        std::string bytes = file.bytes();
        bytes[bytes.size() - 32 + at] = value;
        CONTEXT("trailer byte " + std::to_string(at) + " is " + std::to_string(value));
        CHECK_EQ(toldOf(bytes), "nothing: trailer that does not fit the file at 17");
    }
}

TEST(NestingIsReadToTheLimitAndNoFurther) {
    const PropertyList deepest = samples::nested(PropertyList::kMaximumDepth);
    for (PropertyListFormat format : kFormats) {
        CHECK_EQ(decodePropertyList(encodePropertyList(deepest, format)), deepest);
        CHECK(encodePropertyList(samples::nested(PropertyList::kMaximumDepth + 1), format).empty());
    }
    for (unsigned depth : {PropertyList::kMaximumDepth, PropertyList::kMaximumDepth + 1, 30'000U}) {
        File file{{}, 2};
        for (unsigned i = 1; i < depth; ++i) file.objects.push_back(std::string("\xA1").append(number(i, 2)));
        file.objects.push_back("\xA0");
        CHECK_EQ(static_cast<bool>(file.value()), depth <= PropertyList::kMaximumDepth);
    }
    std::string opening, tooDeep = xml(deepest);
    for (int i = 0; i < 100'000; ++i) opening += "<array>";
    CHECK(!decodePropertyList("<plist>" + opening));
    tooDeep.replace(tooDeep.find("<array/>"), 8, "<array><array/></array>");
    CHECK(!decodePropertyList(tooDeep));
}

TEST(SharedValuesExpandOnlySoFar) {
    const PropertyList some = samples::doubled(10);
    CHECK_EQ(decodePropertyList(binary(some)), some);
    CHECK(binary(some).size() < 150);
    for (unsigned levels : {30U, 200U}) {
        CHECK(binary(samples::doubled(levels)).empty());
        File file;
        for (unsigned i = 1; i <= levels; ++i)
            file.objects.push_back(std::string("\xA2").append(2, static_cast<char>(i)));
        file.objects.push_back("\x51\x61");
        CHECK(!file.value());
    }
}
