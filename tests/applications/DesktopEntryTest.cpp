#include "platform/linux/DesktopEntry.h"

#include "platform/linux/DesktopEntryCommand.h"
#include "platform/linux/DisplayText.h"
#include "tests/support/Check.h"

using namespace platform::posix;

namespace {

std::string joined(const std::vector<std::string>& words, char separator) {
    std::string text;
    for (const std::string& word : words) text += word + separator;
    return text;
}

std::string described(const std::optional<DesktopEntry>& entry) {
    if (!entry) return "malformed";
    std::string text = entry->isApplication ? "Application" : "other";
    const std::pair<const char*, std::string> values[] = {
        {"name", entry->name},
        {"plain", entry->unlocalizedName},
        {"icon", entry->icon},
        {"try", entry->tryExec},
        {"exec", entry->exec},
        {"only", joined(entry->onlyShowIn, ',')},
        {"not", joined(entry->notShowIn, ',')},
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

TEST(CommandsAreSplitAndExpanded) {
    const CommandFields fields{{"/a b", "/ü"}, "icon", "The Name", "/x.desktop"};
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"prog", "prog|", "prog|"},
        {"  prog \t %f  ", "prog|%f|", "prog|/a b|"},
        {R"("/opt/a b/prog" "say \"hi\"" "\$\`\\ \n")", R"(/opt/a b/prog|say "hi"|$`\ \n|)",
         R"(/opt/a b/prog|say "hi"|$`\ \n|)"},
        {R"(sh -c 'a "b" \c' x\ y "")", R"(sh|-c|a "b" \c|x y||)", R"(sh|-c|a "b" \c|x y||)"},
        {R"(env P="/w x" wine)", "env|P=/w x|wine|", "env|P=/w x|wine|"},
        {"p %F end", "p|%F|end|", "p|/a b|/ü|end|"},
        {"p %U", "p|%U|", "p|file:///a%20b|file:///%C3%BC|"},
        {"p --open=%u", "p|--open=%u|", "p|--open=file:///a%20b|"},
        {"p %i %c %k 100%%", "p|%i|%c|%k|100%%|", "p|--icon|icon|The Name|/x.desktop|100%|"},
        {"p %d %D %n %N %v %m", "p|%d|%D|%n|%N|%v|%m|", "p|"},
        {"p %z", "p|%z|", ""},
        {"p 100%", "p|100%|", ""},
        {"p x%Fy", "p|x%Fy|", ""},
        {"p \"open", "", ""},
        {"p 'open", "", ""},
        {"p \\", "p|\\|", "p|\\|"},
        {"", "", ""},
    };
    for (const auto& [exec, split, expanded] : cases) {
        CONTEXT(exec);
        const std::vector<std::string> words = splitCommand(exec);
        CHECK_EQ(joined(words, '|'), split);
        CHECK_EQ(joined(expandCommand(words, fields), '|'), expanded);
    }
    CHECK_EQ(joined(expandCommand({"p", "%f", "%F", "%U", "%i"}, {}), '|'), "p|");
}

TEST(ProgramsAreFoundBehindEnvAndWineIsKnown) {
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"wine start.exe", "wine", true},
        {"/usr/bin/wine-stable x", "/usr/bin/wine-stable", true},
        {"wine64-development x", "wine64-development", true},
        {"env WINEPREFIX=\"/home/u/.wine\" wine64 x", "wine64", true},
        {"/usr/bin/env -i -u DISPLAY A=b WINE=1 wine", "wine", true},
        {"'/home/u/Setup.EXE'", "/home/u/Setup.EXE", true},
        {"winetricks", "winetricks", false},
        {"winefish wine", "winefish", false},
        {"twine", "twine", false},
        {"env A=b", "", false},
        {"", "", false},
    };
    for (const auto& [exec, expected, isWine] : cases) {
        CONTEXT(exec);
        const std::vector<std::string> words = splitCommand(exec);
        const std::size_t index = programIndex(words);
        const std::string program = index < words.size() ? words[index] : "";
        CHECK_EQ(program, expected);
        CHECK_EQ(isWineProgram(program), isWine);
    }
    CHECK(isLauncherProgram("/usr/bin/python3.11") && isLauncherProgram("sh") && !isLauncherProgram("gimp-2.10"));
}

TEST(ForeignTextIsSafeToShow) {
    const std::pair<std::string, std::string> cases[] = {
        {"Plain – naïve 名前", "Plain – naïve 名前"},
        {"  two\n\r\tlines\x01\x7F\u0085\u2028end ", "two lines end"},
        {"\u202Eevil\u202C \u2066x\u2069\u200F", "evil x"},
        {"می\u200Cخواهم", "می\u200Cخواهم"},
        {"a\xFF\xC3z\xED\xA0\x80", "a\uFFFD\uFFFDz\uFFFD\uFFFD\uFFFD"},
        {std::string("a\0b", 3), "a b"},
        {std::string(256, 'x'), std::string(256, 'x')},
        {std::string(1000, 'x'), std::string(256, 'x') + "…"},
        {"\n \u202E", ""},
    };
    for (const auto& [text, shown] : cases) CHECK_EQ(displayText(text), shown);
}
