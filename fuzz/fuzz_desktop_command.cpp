// Commands as desktop entries carry them: words that are written come back as they were, whatever is in them, and none
// of them becomes a line, a group or a key of its own.
#include "linux/applications/DesktopEntry.h"
#include "linux/loginitems/AutostartEntry.h"
#include "propertylist/Unicode.h"

#include <algorithm>
#include <cstdlib>

using namespace linux;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

// Text without zero bytes, which no command can have; nothing else is spared.
std::vector<std::string> wordsOf(std::string_view bytes) {
    std::vector<std::string> words(1);
    for (char c : bytes)
        if (c)
            words.back() += c;
        else
            words.emplace_back();
    return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    StartDescription start;
    start.words = wordsOf(bytes);
    start.name = "Name";
    const std::string path = "/" + start.words.front();
    const std::string entry = autostartEntry(path, size % 2, start);
    require(std::ranges::count(entry, '\n') == 6 + static_cast<int>(size % 2));
    require(autostartPathValue(entry) == escapedDesktopEntryValue(path));

    const auto record = desktopEntryRecord("/x.desktop", "x", entry, ApplicationEnvironment());
    if (!propertylist::isValidUTF8(entry)) return 0;
    require(record.has_value());
    if (record->words.empty() || record->words == start.words) return 0;
    // Some sessions would misread these: a program for awk, which starts them, stands in their place.
    require(record->words.size() == 2 && record->words[0] == "awk" &&
            record->words[1].starts_with("BEGIN { exit system"));
    const std::string all = start.words.front() + std::string(bytes);
    require(std::ranges::any_of(all, [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == '\x7F' ||
               std::string_view("\\$`=%\"'").find(c) != std::string_view::npos;
    }));
    return 0;
}
