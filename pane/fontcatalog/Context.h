// What the work on the catalogue needs of the world.
#pragma once

#include "platform/FileServices.h"
#include "platform/Log.h"

#include <functional>
#include <string_view>

namespace fontcatalog {

struct Context {
    platform::FileServices& files;  // all three owned by the caller
    platform::Log& log;             // for the one line that is always written
    platform::Log& diagnostics;     // for all others
    // Called after each list file with the number of files read and of all.
    std::function<void(std::size_t, std::size_t)> progress = {};
    // Called for each file or folder that is passed over, with the reason; a start may come across one twice.
    std::function<void(std::string_view path, platform::OSStatus reason)> passedOver = {};

    void passOver(std::string_view path, platform::OSStatus reason) const {
        diagnostics("Passing over %@: %@", path, platform::statusText(reason));
        if (passedOver) passedOver(path, reason);
    }
};

}  // namespace fontcatalog
