#include "platform/linux/Localized.h"

#include "platform/linux/FolderBundle.h"
#include "platform/linux/Installation.h"

namespace platform::posix {

std::string localized(std::string_view english) {
    // The texts in the code are English: nothing is read for it.
    static const auto sTexts =
        preferredLanguages().front().starts_with("en") ? nullptr : FolderBundle::open(paneBundlePath());
    return sTexts ? sTexts->localizedString(english) : std::string(english);
}

}  // namespace platform::posix
