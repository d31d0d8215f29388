#include "platform/Log.h"
#include "propertylist/Base64.h"
#include "tests/support/Check.h"

using namespace platform;
using namespace propertylist;

TEST(FormatsPrintEachArgumentByItsDirective) {
    const PropertyList list = PropertyList::array({1, "a b"}), nothing;
    const std::pair<std::string, const char*> cases[] = {
        {formatted("no directive, 100%%", {}), "no directive, 100%"},
        {formatted("%@ is %s", {"this", "text"}), "this is text"},
        {formatted("[%@] %d", {list, 42}), "[(1, \"a b\")] 42"},
        {formatted("0x%08X %x %5d|%-5d|%05d", {0xBEEF, 255, 42, 42, 42}), "0x0000BEEF ff    42|42   |00042"},
        {formatted("%f %.2f %g", {1.5, 2.345, 1e20}), "1.500000 2.35 1e+20"},
        {formatted("%2$@ before %1$@", {"one", "two"}), "two before one"},
        {formatted("%@ %@", {nullptr, nothing}), "(null) (null)"},
        {formatted("%@ %d %f", {}), "(null) 0 0.000000"},
        {formatted("%d %@ %f", {"text", 7, 3}), "0 7 3.000000"},
        {formatted("%5@|%-5s|%.2s", {"ab", "ab", "abcdef"}), "   ab|ab   |ab"},
        {formatted("%lld %zu %c", {-1, 2, 'x'}), "-1 2 x"},
        {formatted("ends with %", {}), "ends with "},
        {formatted("unknown %q!", {1}), "unknown "},
    };
    for (const auto& [text, expected] : cases) CHECK_EQ(text, expected);
    CHECK_EQ(formatted("%999999999d", {1}).size(), std::size_t{512});  // a width that nobody means is cut off
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
