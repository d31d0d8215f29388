// Reads a property list on standard input and writes it in the form that the argument names, "binary" or "xml"; exit
// status 1 when there is nothing to write. Other people's programs are compared with this one.
#include "propertylist/Codec.h"

#include <iostream>
#include <iterator>

int main(int argc, char** argv) {
    bool isXML = argc > 1 && std::string_view(argv[1]) == "xml";
    std::string bytes{std::istreambuf_iterator<char>(std::cin), {}};
    auto format = isXML ? propertylist::PropertyListFormat::XML : propertylist::PropertyListFormat::Binary;
    std::string encoded = encodePropertyList(propertylist::decodePropertyList(bytes), format);
    std::cout.write(encoded.data(), static_cast<std::streamsize>(encoded.size()));
    return encoded.empty() || !std::cout.flush() ? 1 : 0;
}
