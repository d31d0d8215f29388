#include "PropertyListOracle.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (bytes.starts_with("bplist0")) return 0;
    propertylist::PropertyList value = decoded(bytes);
    if (!value) return 0;
    expectRoundTrip(value, propertylist::PropertyListFormat::XML);
    expectRoundTrip(value, propertylist::PropertyListFormat::Binary);
    expectLookUps(value);
    expect(!value.description().empty() || value.isString());
    return 0;
}
