#include "platform/Base64.h"
#include "platform/Log.h"
#include "tests/support/Check.h"

using namespace platform;

TEST(FormatsPrintEachArgumentByItsDirective) {
    struct Case {
        const char* format;
        std::vector<FormatArgument> arguments;
        const char* expected;
    };
    const PropertyList list = PropertyList::array({1, "a b"}), nothing;
    const Case cases[] = {
        {"no directive, 100%%", {}, "no directive, 100%"},
        {"%@ is %s", {"this", "text"}, "this is text"},
        {"[%@] %d", {list, 42}, "[(1, \"a b\")] 42"},
        {"0x%08X %x %5d|%-5d|%05d", {0xBEEF, 255, 42, 42, 42}, "0x0000BEEF ff    42|42   |00042"},
        {"%f %.2f %g", {1.5, 2.345, 1e20}, "1.500000 2.35 1e+20"},
        {"%2$@ before %1$@", {"one", "two"}, "two before one"},
        {"%@ %@", {nullptr, nothing}, "(null) (null)"},
        {"%@ %d %f", {}, "(null) 0 0.000000"},
        {"%d %@ %f", {"text", 7, 3}, "0 7 3.000000"},
        {"%5@|%-5s|%.2s", {"ab", "ab", "abcdef"}, "   ab|ab   |ab"},
        {"%lld %zu %c", {-1, 2, 'x'}, "-1 2 x"},
        {"ends with %", {}, "ends with "},
        {"unknown %q!", {1}, "unknown "},
        {"%999999999d", {1}, nullptr},  // a width that nobody means is cut off
    };
    for (const Case& c : cases) {
        CONTEXT(c.format);
        std::string text;
        switch (c.arguments.size()) {
            case 0:
                text = formatted(c.format, {});
                break;
            case 1:
                text = formatted(c.format, {c.arguments[0]});
                break;
            case 2:
                text = formatted(c.format, {c.arguments[0], c.arguments[1]});
                break;
            case 3:
                text = formatted(c.format, {c.arguments[0], c.arguments[1], c.arguments[2]});
                break;
            default:
                text = formatted(c.format,
                                 {c.arguments[0], c.arguments[1], c.arguments[2], c.arguments[3], c.arguments[4]});
        }
        if (c.expected)
            CHECK_EQ(text, c.expected);
        else
            CHECK_EQ(text.size(), std::size_t{512});
    }
}

TEST(Base64) {
    const std::pair<const char*, const char*> cases[] = {{"", ""},        {"f", "Zg=="},        {"fo", "Zm8="},
                                                         {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"\xFF\xFE", "//4="}};
    for (auto [bytes, text] : cases) {
        CHECK_EQ(base64Encoded(bytes), text);
        CHECK_EQ(base64Decoded(text).value_or("(refused)"), bytes);
    }
    CHECK_EQ(base64Decoded(" Zm9v\n\tYg= = ").value_or("(refused)"), "foob");
    for (const char* bad : {"Zg=", "Z", "Zg", "=", "====", "Zg==Zg==", "Zm9v=", "Zm9*", "Zm=v"}) {
        CONTEXT(bad);
        CHECK(!base64Decoded(bad));
    }
}
