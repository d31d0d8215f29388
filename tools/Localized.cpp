#include "tools/Localized.h"

#include "platform/linux/FolderBundle.h"
#include "platform/linux/Installation.h"

namespace tools {

std::string localized(std::string_view english) {
    // The texts in the code are English: nothing is read for it.
    static const auto sTexts = platform::posix::preferredLanguages().front().starts_with("en")
                                   ? nullptr
                                   : platform::posix::FolderBundle::open(platform::posix::paneBundlePath());
    return sTexts ? sTexts->localizedString(english) : std::string(english);
}

}  // namespace tools
