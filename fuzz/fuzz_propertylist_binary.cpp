#include "PropertyListOracle.h"

// The magic is put in front, so that no input is lost on it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string bytes = "bplist0";
    bytes.append(reinterpret_cast<const char*>(data), size);
    propertylist::PropertyList value = decoded(bytes);
    if (!value) return 0;
    expectRoundTrip(value, propertylist::PropertyListFormat::Binary);
    expectLookUps(value);
    return 0;
}
