#include "linux/files/Failure.h"

#include <system_error>

namespace linux {

std::string Failure::text() const {
    if (!step) return {};
    return std::string(step) + ": " + (reason.empty() ? std::generic_category().message(error) : reason);
}

}  // namespace linux
