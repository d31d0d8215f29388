// Any bytes as a desktop file, through everything that reads its values.
#include "linux/applications/DesktopEntry.h"
#include "linux/applications/DesktopEntryCommand.h"
#include "linux/system/DisplayText.h"
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
    for (const char c : shown) require(static_cast<unsigned char>(c) >= 0x20 && c != 0x7F);
    if (shown.size() < kMaximumDisplayCharacters) require(displayText(shown) == shown);
}

void checkCommand(const std::string& exec) {
    const std::vector<std::string> words = splitCommand(exec);
    const std::vector<std::string> expanded = expandCommand(words, {{"/a b"}, "icon", "name", "/path"});
    require(programIndex(expanded) <= expanded.size());
    for (const std::string& word : expanded) {
        isWineProgram(word);
        isLauncherProgram(word);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    checkShown(displayText(bytes));
    checkCommand(std::string(bytes));
    desktopEntryLocale(bytes);
    const auto entry = readDesktopEntry(bytes, desktopEntryLocale("sr_YU.UTF-8@Latn"));
    if (!entry) return 0;
    require(propertylist::isValidUTF8(entry->name) && entry->name.find('\0') == std::string::npos);
    require(entry->name.size() <= kMaximumDesktopEntryValue && entry->exec.size() <= kMaximumDesktopEntryValue);
    checkShown(displayText(entry->name));
    checkCommand(entry->exec);
    entry->isShownIn({"GNOME"});
    return 0;
}
