// Any bytes as a desktop file: what comes out is safe to show and within its limits, whatever went in.
#include "linux/applications/DesktopEntry.h"
#include "linux/applications/Programs.h"
#include "linux/texts/DisplayText.h"
#include "propertylist/Unicode.h"

#include <cstdlib>

using namespace linux;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

// Three bytes for a character is what a bad byte grows to.
void checkShown(const std::string& shown) {
    require(propertylist::isValidUTF8(shown) && shown.size() <= 4 * kMaximumDisplayCharacters + 3);
    for (char c : shown) require(static_cast<unsigned char>(c) >= 0x20 && c != 0x7F);
    if (shown.size() < kMaximumDisplayCharacters) require(displayText(shown) == shown);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    checkShown(displayText(bytes));
    auto record = desktopEntryRecord("/x.desktop", "x", bytes, ApplicationEnvironment());
    if (!record) return 0;
    checkShown(record->name);
    require(!record->name.empty());
    for (const std::string& value : {record->searchName, record->iconName, record->tryProgram, record->workingFolder})
        require(propertylist::isValidUTF8(value) && value.size() <= kMaximumDesktopEntryValue);
    require(record->argumentCount < record->words.size() || record->program.empty());
    isWineProgram(record->program);
    isLauncherProgram(record->program);
    return 0;
}
