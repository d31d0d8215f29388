#include "linux/loginitems/AutostartEntry.h"

#include "propertylist/ASCII.h"

#include <algorithm>

namespace linux {

namespace {

// Keys of our own: by the first an entry is known as one of ours; the second makes an entry out of date, although
// nothing else in it need change, when the user hides or shows the item.
constexpr std::string_view kItemKey = "X-Typeslate-LoginItem", kHideKey = "X-Typeslate-Hide";
constexpr std::string_view kOwnKeys = "X-Typeslate-", kFurtherKeys = "X-";
constexpr std::string_view kFilePrefix = "login-item-";
constexpr std::size_t kLongestStem = 100;

std::string line(std::string_view key, std::string_view text) {
    return std::string(key) + "=" + escapedDesktopEntryValue(text) + "\n";
}

// Calls the function with each line until it returns true. False when it never did.
template <typename Function>
bool anyLine(std::string_view text, Function function) {
    while (!text.empty()) {
        std::string_view next = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(next.size() + 1, text.size()));
        if (function(next)) return true;
    }
    return false;
}

// What sessions get wrong, besides the equals sign that the rules forbid in a program: those built on GLib look for a
// program before they turn "%%" into "%"; systemd's resolves backslashes once too often, leaves some of the quoting
// before dollar signs and backquotes, and starts no program with quotes or control characters in its path.
constexpr std::string_view kMisread = "\\$`", kMisreadInPrograms = "\\$`=%\"'";

bool isOdd(char c) { return (c >= 0 && c < ' ') || c == '\x7F' || kMisreadInPrograms.find(c) != std::string::npos; }

bool isReadRight(const std::vector<std::string>& words) {
    return std::ranges::none_of(words.front(), isOdd) &&
           std::ranges::all_of(words, [](auto& word) { return word.find_first_of(kMisread) == word.npos; });
}

// A program for awk that starts the words: in place of each odd character stands "%c", and the number of the character
// behind the text.
std::string awkProgram(const std::vector<std::string>& words) {
    std::string command, codes;
    for (const std::string& word : words) {
        command += " '";
        for (char c : word) {
            bool isQuote = c == '\'';  // the shell's, too
            command += isQuote ? "'%c'%c'" : isOdd(c) ? "%c" : std::string(1, c);
            if (isOdd(c)) codes += isQuote ? ", 34, 34" : ", " + std::to_string(c);
        }
        command += "'";
    }
    return "BEGIN { exit system(sprintf(\"exec" + command + "\"" + codes + ")) }";
}

std::vector<std::string> startableWords(const std::vector<std::string>& words) {
    return isReadRight(words) ? words : std::vector<std::string>{"awk", awkProgram(words)};
}

// The command (before it is escaped as a value) that a reader turns back into these words. GLib would quote with single
// quotes, which the rules for desktop entries do not know.
std::string joinCommand(const std::vector<std::string>& words) {
    constexpr std::string_view kEscapable = "\"`$\\";
    std::string command;
    for (const std::string& word : words) {
        command += command.empty() ? "\"" : " \"";
        for (char c : word) {
            if (kEscapable.find(c) != kEscapable.npos) command += '\\';
            command.append(c == '%' ? 2 : 1, c);
        }
        command += '"';
    }
    return command;
}

bool isPlain(char c) { return propertylist::isASCIIDigit(c) || propertylist::isASCIILetter(c) || c == '.' || c == '-'; }

std::string stemOf(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    path.remove_prefix(path.rfind('/') + 1);
    for (std::string_view suffix : {kBundleSuffix, kDesktopEntrySuffix})
        if (path.ends_with(suffix)) path.remove_suffix(suffix.size());
    std::string stem(path.substr(0, kLongestStem));
    std::ranges::replace_if(
        stem, [](char c) { return !isPlain(c); }, '_');
    return stem;
}

}  // namespace

// A blank counts only where a reader would cut it off; GLib's writer leaves it at the end.
std::string escapedDesktopEntryValue(std::string_view text) {
    constexpr std::string_view kLetters = "sntr\\", kCharacters = " \n\t\r\\";
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::size_t letter = kCharacters.find(text[i]);
        bool isInnerBlank = text[i] == ' ' && i > 0 && i + 1 < text.size();
        if (letter == text.npos || isInnerBlank)
            value += text[i];
        else
            value.append({'\\', kLetters[letter]});
    }
    return value;
}

std::optional<std::string_view> autostartPathValue(std::string_view entry) {
    std::optional<std::string_view> value;
    anyLine(entry, [&](std::string_view next) {
        if (!next.starts_with(kItemKey) || next.substr(kItemKey.size(), 1) != "=") return false;
        value = next.substr(kItemKey.size() + 1);
        return true;
    });
    return value;
}

std::string autostartEntry(std::string_view itemPath, bool hide, const StartDescription& start) {
    std::string entry = "[Desktop Entry]\nType=Application\n" + line("Name", start.name);
    entry += line("Exec", joinCommand(startableWords(start.words)));
    if (!start.iconName.empty()) entry += line("Icon", start.iconName);
    if (!start.workingFolder.empty()) entry += line("Path", start.workingFolder);
    if (start.isInTerminal) entry += "Terminal=true\n";
    if (hide) entry += "StartupNotify=false\n";
    return entry + line(kItemKey, itemPath) + line(kHideKey, hide ? "true" : "false");
}

bool hasLinesOf(std::string_view file, std::string_view other) {
    return !anyLine(other, [&](std::string_view wanted) {
        return !anyLine(file, [&](std::string_view present) { return present == wanted; });
    });
}

std::string linesOfTheDesktop(std::string_view entry) {
    std::string lines;
    anyLine(entry, [&](std::string_view next) {
        std::string_view key = next.substr(0, next.find('='));
        bool isOthers = next.starts_with(kFurtherKeys) && !next.starts_with(kOwnKeys);
        if (isOthers || key == "Hidden" || key == "OnlyShowIn" || key == "NotShowIn") lines.append(next) += '\n';
        return next.starts_with('[') && next != "[Desktop Entry]";  // what follows is no key of the entry itself
    });
    return lines;
}

std::string autostartFileName(std::string_view itemPath, int number) {
    std::string name = std::string(kFilePrefix) + stemOf(itemPath);
    if (number > 1) name.append("-").append(std::to_string(number));
    return name.append(kDesktopEntrySuffix);
}

bool isAutostartFileName(std::string_view name) {
    return name.starts_with(kFilePrefix) && name.ends_with(kDesktopEntrySuffix);
}

}  // namespace linux
