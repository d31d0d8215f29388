#include "Samples.h"

#include <fstream>

using namespace std::string_literals;
using propertylist::PropertyList;

namespace {

std::string encoded(const PropertyList& value) {
    return encodePropertyList(value, propertylist::PropertyListFormat::XML);
}

std::string document(const std::string& content) { return "<plist version=\"1.0\">" + content + "</plist>"; }

std::string utf16(std::string_view ascii, bool isBigEndian) {
    std::string bytes = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (char c : ascii) isBigEndian ? bytes.append({'\0', c}) : bytes.append({c, '\0'});
    return bytes;
}

TEST(XMLKeepsEveryValue) {
    propertylist::MutableDictionary changed(samples::everything());
    changed.remove("zero inside");
    changed.set("date", propertylist::Date{-1'000'000});
    changed.set("characters", "\r\n\t \r<&>\"'\u0085\u2028]]>");
    changed.set("key\rwith <&>", true);
    changed.set("long data", PropertyList::data(std::string(1000, '\xFE')));
    PropertyList value = std::move(changed).freeze();
    CHECK_EQ(propertylist::decodePropertyList(encoded(value)), value);
    CHECK_EQ(encoded(propertylist::decodePropertyList(encoded(value))), encoded(value));
}

TEST(XMLRefusesWhatItCannotExpress) {
    for (const PropertyList& value :
         {PropertyList("\x01"), PropertyList("\uFFFE"), PropertyList(std::string_view("\0", 1)),
          PropertyList(propertylist::Date{INT64_MIN}), PropertyList::dictionary({{"\x1B", 1}}),
          PropertyList::array({propertylist::Date{253'402'300'800'000'000}}), samples::doubled(40), PropertyList()})
        CHECK_EQ(encoded(value), "");
}

TEST(XMLIsReadInAllItsForms) {
    const std::pair<std::string, PropertyList> kCases[] = {
        {"<string/>", ""},
        {"<string></string>", ""},
        {"<!-- a --><?p i?>\n<string> a </string> <!-- b -->", " a "},
        {"<string>a\r\nb\rc&#13;&#xA;</string>", "a\nb\nc\r\n"},
        {"<string>&lt;&gt;&amp;&quot;&apos;&#x1F600;&#233;</string>", "<>&\"'\U0001F600\u00e9"},
        {"<string>a<![CDATA[<&amp;]] >]]>b<!-- c -->d<?e f?> g</string>", "a<&amp;]] >bd g"},
        {"<string ><![CDATA[]]></string >", ""},
        {"<true/>", true},
        {"<true></true>", true},
        {"<false />", false},
        {"<integer> -9223372036854775808\n</integer>", INT64_MIN},
        {"<integer>18446744073709551615</integer>", UINT64_MAX},
        {"<integer>+0x1f</integer>", 31},
        {"<integer>-0XFF</integer>", -255},
        {"<real>+1.5e3</real>", 1500.0},
        {"<real>7</real>", 7.0},
        {"<real>-Infinity</real>", -1 / 0.0},
        {"<real>nan</real>", 0.0 / 0.0},
        {"<date>2026-01-31T12:00:00Z</date>", propertylist::Date{1'769'860'800'000'000}},
        {"<data>\n\tAQID\n\tBA = =\n</data>", PropertyList::data("\x01\x02\x03\x04")},
        {"<data/>", PropertyList::data("")},
        {"<array/>", PropertyList::array({})},
        {"<array x='1' y = \"2\"><true/><array></array></array>", PropertyList::array({true, PropertyList::array({})})},
        {"<dict/>", PropertyList::dictionary({})},
        {"<dict><key>a</key><true/><key>b</key><true/><key>a</key><false/></dict>",
         PropertyList::dictionary({{"a", false}, {"b", true}})},
    };
    for (const auto& [content, value] : kCases) {
        CONTEXT(content);
        CHECK_EQ(propertylist::decodePropertyList(document(content)), value);
    }
}

TEST(EncodingsAndPrologs) {
    const auto cases = check::casesIn(TEST_DATA "/xml-documents.txt");
    for (const auto& c : cases) {
        CONTEXT(c.label);
        CHECK_EQ(propertylist::decodePropertyList(c.text),
                 c.expected == "text" ? PropertyList("text") : PropertyList());
    }
    CHECK(cases.size() > 15);
    const std::string plain = "<plist><string>text</string></plist>", declared = "<?xml version='1.0' encoding='UTF-";
    for (const std::string& good : {utf16(plain, true), utf16(declared + "16'?>" + plain, false)})
        CHECK_EQ(propertylist::decodePropertyList(good), PropertyList("text"));
    for (const std::string& bad :
         {utf16(declared + "8'?>" + plain, true), utf16(plain, true).substr(1), utf16(plain, true) + "x"})
        CHECK(!propertylist::decodePropertyList(bad));
}

TEST(MalformedXMLIsNothing) {
    std::ifstream file(TEST_DATA "/malformed-xml.txt");
    int count = 0;
    for (std::string content; std::getline(file, content); ++count) {
        CONTEXT(content);
        CHECK(!propertylist::decodePropertyList(document(content)));
    }
    CHECK(count > 40);
    for (const char* bytes : {"", "<plist></plist>", "<list><true/></list>"})
        CHECK(!propertylist::decodePropertyList(bytes));
}

TEST(XMLTruncatedAtAnyByteIsNothing) {
    std::string bytes = encoded(
        PropertyList::dictionary({{"a", PropertyList::array({1, "b<&", 0.5, true})}, {"c", PropertyList::data("d")}}));
    for (std::size_t size = 0; size < bytes.size() - 1; ++size)
        CHECK(!propertylist::decodePropertyList(std::string_view(bytes).substr(0, size)));
}

TEST(XMLNestingIsReadToTheLimitAndNoFurther) {
    PropertyList deepest = samples::nested(PropertyList::kMaximumDepth);
    CHECK_EQ(propertylist::decodePropertyList(encoded(deepest)), deepest);
    std::string opening;
    for (int i = 0; i < 100'000; ++i) opening += "<array>";
    CHECK(!propertylist::decodePropertyList("<plist>" + opening));
    std::string tooDeep = encoded(deepest);
    tooDeep.replace(tooDeep.find("<array/>"), 8, "<array><array/></array>");
    CHECK(!propertylist::decodePropertyList(tooDeep));
}

}  // namespace
