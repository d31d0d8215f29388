#include "linux/applications/DesktopEntry.h"

#include "Machine.h"
#include "linux/applications/DesktopEntryCommand.h"
#include "linux/system/DisplayText.h"

using namespace linux;

namespace {

std::string described(const std::optional<DesktopEntry>& entry) {
    if (!entry) return "malformed";
    std::string text = entry->isApplication ? "Application" : "other";
    const std::pair<const char*, std::string> values[] = {
        {"name", entry->name},
        {"plain", entry->unlocalizedName},
        {"icon", entry->icon},
        {"try", entry->tryExec},
        {"exec", entry->exec},
        {"only", joined(entry->onlyShowIn)},
        {"not", joined(entry->notShowIn)},
    };
    for (const auto& [key, value] : values)
        if (!value.empty()) text.append(" ").append(key).append("=").append(value);
    if (entry->isHidden) text += " hidden";
    if (entry->isNoDisplay) text += " nodisplay";
    if (entry->isDBusActivatable) text += " dbus";
    return text;
}

}  // namespace

TEST(DesktopEntriesAreRead) {
    const auto cases = check::casesIn(TEST_DATA "/desktop-entries.txt");
    for (const auto& c : cases) {
        CONTEXT(c.label);
        CHECK_EQ(described(readDesktopEntry(c.text, desktopEntryLocale(c.argument))), c.expected);
    }
    CHECK(cases.size() > 25);
}

TEST(OversizedEntriesAreRefusedAndLongValuesIgnored) {
    const std::string head = "[Desktop Entry]\nType=Application\nName=N\n";
    const auto long_ = [](std::size_t size) { return std::string(size, 'x'); };
    CHECK_EQ(described(readDesktopEntry(head + "Exec=" + long_(kMaximumDesktopEntryValue + 1), {})),
             "Application name=N plain=N");
    CHECK_EQ(described(readDesktopEntry(head + "[X]\n" + long_(kMaximumDesktopEntrySize - head.size() - 4), {})),
             "Application name=N plain=N");
    CHECK(!readDesktopEntry(head + "[X]\n" + long_(kMaximumDesktopEntrySize - head.size() - 3), {}));
    CHECK(!readDesktopEntry(head + long_(kMaximumDesktopEntrySize / 2), {}));
}

std::string commandText(const std::string& exec) {
    const std::vector<std::string> words = splitCommand(exec);
    const std::string expanded = joined(expandCommand(words, {{"/a b", "/ü"}, "icon", "The Name", "/x.desktop"}));
    return joined(words) + (words.empty() ? "=>" : " =>") + (expanded.empty() ? "" : " " + expanded);
}

std::string programText(const std::string& exec) {
    const std::vector<std::string> words = splitCommand(exec);
    const std::size_t index = programIndex(words);
    const std::string program = index < words.size() ? words[index] : "";
    return program + (isWineProgram(program) ? " (Wine)" : "");
}

std::string shownText(const std::string& text) { return displayText(text); }

TEST(CommandsProgramsAndForeignTexts) {
    const auto cases = check::casesIn(TEST_DATA "/commands.txt");
    for (const auto& c : cases) {
        CONTEXT(c.label);
        const auto read = c.argument == "command" ? commandText : c.argument == "program" ? programText : shownText;
        CHECK_EQ(read(c.text), c.expected);
    }
    CHECK(cases.size() > 30);
    CHECK_EQ(joined(expandCommand({"p", "%f", "%F", "%U", "%i"}, {})), "p|");
    CHECK(isLauncherProgram("/usr/bin/python3.11") && isLauncherProgram("sh") && !isLauncherProgram("gimp-2.10"));
}
