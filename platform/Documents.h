// Files that the user names, to take values from and to put them into: property lists and JSON.
#pragma once

#include "platform/PlatformTypes.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

class DocumentServices {
public:
    struct Document {
        PropertyList value;   // nothing on failure
        std::string problem;  // one sentence for the user, with the file, the place in it and the reason
    };

    virtual ~DocumentServices() = default;
    // A regular file of at most so many bytes, links followed; what it holds tells the form. Anything else is never
    // waited for.
    virtual Document read(std::string_view path, std::size_t most) = 0;
    // As JSON when the name ends in ".json", in any case of letters, else as an XML property list. The file holds all
    // of it then, or what it held before; links are followed, and nothing but a regular file is written into. A new
    // file is the user's alone. Returns the problem, as above; empty when it is done.
    virtual std::string write(std::string_view path, const PropertyList& value) = 0;
};

}  // namespace platform
