#include "platform/Log.h"
#include "tests/support/Check.h"

using namespace platform;
using propertylist::PropertyList;

TEST(FormatsPrintEachArgumentByItsDirective) {
    const PropertyList list = PropertyList::array({1, "a b"}), nothing;
    const std::pair<std::string, const char*> cases[] = {
        {formatted("100%% %@ is %s [%@] %d", {"this", "text", list, 42}), "100% this is text [(1, \"a b\")] 42"},
        {formatted("0x%08X %x %5d|%-5d|%05d", {0xBEEF, 255, 42, 42, 42}), "0x0000BEEF ff    42|42   |00042"},
        {formatted("%f %.2f %g", {1.5, 2.345, 1e20}), "1.500000 2.35 1e+20"},
        {formatted("%2$@ before %1$@", {"one", "two"}), "two before one"},
        {formatted("%@ %@", {nullptr, nothing}), "(null) (null)"},
        {formatted("%@ %d %f", {}), "(null) 0 0.000000"},
        {formatted("%d %@ %f", {"text", 7, 3}), "0 7 3.000000"},
        {formatted("%5@|%-5s|%.2s", {"ab", "ab", "abcdef"}), "   ab|ab   |ab"},
        {formatted("%lld %zu %c", {-1, 2, 'x'}), "-1 2 x"},
        {formatted("ends with %", {}) + formatted("unknown %q!", {1}), "ends with unknown "},
    };
    for (const auto& [text, expected] : cases) CHECK_EQ(text, expected);
    CHECK_EQ(formatted("%999999999d", {1}).size(), std::size_t{512});  // a width that nobody means is cut off
}
