// Any bytes as a desktop file, through everything that reads its values.
#include "platform/Unicode.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/DesktopEntryCommand.h"
#include "platform/linux/DisplayText.h"

#include <cstdlib>

using namespace platform::posix;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

// Three bytes for a character is what a bad byte grows to.
void checkShown(const std::string& shown) {
    require(platform::isValidUTF8(shown) && shown.size() <= 4 * kMaximumDisplayCharacters + 3);
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
    require(platform::isValidUTF8(entry->name) && entry->name.find('\0') == std::string::npos);
    require(entry->name.size() <= kMaximumDesktopEntryValue && entry->exec.size() <= kMaximumDesktopEntryValue);
    checkShown(displayText(entry->name));
    checkCommand(entry->exec);
    entry->isShownIn({"GNOME"});
    return 0;
}
