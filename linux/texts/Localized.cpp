#include "linux/texts/Localized.h"

#include "linux/system/FolderBundle.h"
#include "linux/system/Installation.h"

namespace linux {

using namespace platform;

std::string localized(std::string_view english) {
    // The texts in the code are English: nothing is read for it.
    static const auto sTexts =
        preferredLanguages().front().starts_with("en") ? nullptr : FolderBundle::open(paneBundlePath());
    return sTexts ? sTexts->localizedString(english) : std::string(english);
}

}  // namespace linux
