#include "linux/applications/DesktopEntryCommand.h"

#include <algorithm>
#include <array>

namespace linux {

namespace {

constexpr std::string_view kEscapable = "\"`$\\";  // within double quotes

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Reads one word at a time.
class CommandSplitter {
public:
    explicit CommandSplitter(std::string_view text) : text_(text) {}

    bool skipBlanks() {
        while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
        return at_ < text_.size();
    }
    // False when a quote is left open.
    bool takeWord(std::string& word) {
        while (at_ < text_.size() && !isBlank(text_[at_])) {
            const char c = text_[at_++];
            if (c == '"' || c == '\'') {
                if (!takeQuoted(c, word)) return false;
            } else {
                word += c == '\\' && at_ < text_.size() ? text_[at_++] : c;
            }
        }
        return true;
    }

private:
    bool takeQuoted(char quote, std::string& word) {
        while (at_ < text_.size()) {
            const char c = text_[at_++];
            if (c == quote) return true;
            const bool escapes =
                c == '\\' && quote == '"' && at_ < text_.size() && kEscapable.find(text_[at_]) != kEscapable.npos;
            word += escapes ? text_[at_++] : c;
        }
        return false;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

std::string fileUri(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF", plain = "-._~/";
    std::string uri = "file://";
    for (char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isAlphanumeric = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (isAlphanumeric || plain.find(c) != plain.npos)
            uri += c;
        else
            uri.append({'%', digits[byte >> 4], digits[byte & 15]});
    }
    return uri;
}

// What one field code inside a word stands for; false for an unknown code.
bool appendField(char code, const CommandFields& fields, std::string& word) {
    switch (code) {
        case '%':
            word += '%';
            return true;
        case 'c':
            word += fields.name;
            return true;
        case 'k':
            word += fields.path;
            return true;
        case 'f':
            if (!fields.files.empty()) word += fields.files.front();
            return true;
        case 'u':
            if (!fields.files.empty()) word += fileUri(fields.files.front());
            return true;
        default:
            return std::string_view("dDnNvm").find(code) != std::string_view::npos;
    }
}

bool expandWord(const std::string& word, const CommandFields& fields, std::string& expanded) {
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (word[i] != '%')
            expanded += word[i];
        else if (++i == word.size() || !appendField(word[i], fields, expanded))
            return false;
    }
    return true;
}

// A field code that stands for any number of words; false when the word is none.
bool appendWordList(const std::string& word, const CommandFields& fields, std::vector<std::string>& words) {
    if (word == "%F") {
        words.insert(words.end(), fields.files.begin(), fields.files.end());
    } else if (word == "%U") {
        std::ranges::transform(fields.files, std::back_inserter(words), fileUri);
    } else if (word == "%i") {
        if (!fields.icon.empty()) words.insert(words.end(), {"--icon", fields.icon});
    } else {
        return false;
    }
    return true;
}

std::string_view baseName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

bool endsInExe(std::string_view name) {
    return name.size() > 4 && std::ranges::equal(name.substr(name.size() - 4), std::string_view(".exe"), {},
                                                 [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; });
}

}  // namespace

std::vector<std::string> splitCommand(std::string_view exec) {
    std::vector<std::string> words;
    CommandSplitter splitter(exec);
    while (splitter.skipBlanks())
        if (!splitter.takeWord(words.emplace_back())) return {};
    return words;
}

std::vector<std::string> expandCommand(const std::vector<std::string>& words, const CommandFields& fields) {
    std::vector<std::string> expanded;
    for (const std::string& word : words) {
        if (appendWordList(word, fields, expanded)) continue;
        std::string text;
        if (!expandWord(word, fields, text)) return {};
        // A code that stands for nothing leaves no empty argument behind.
        if (!text.empty() || word.empty()) expanded.push_back(std::move(text));
    }
    return expanded;
}

std::string joinCommand(const std::vector<std::string>& words) {
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

std::size_t programIndex(const std::vector<std::string>& words) {
    if (words.empty() || baseName(words.front()) != "env") return 0;
    constexpr std::array<std::string_view, 4> optionsWithValue = {"-u", "--unset", "-C", "--chdir"};
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (std::ranges::find(optionsWithValue, words[i]) != optionsWithValue.end())
            ++i;
        else if (!words[i].starts_with('-') && words[i].find('=') == std::string::npos)
            return i;
    }
    return words.size();
}

bool isWineProgram(std::string_view program) {
    std::string_view name = baseName(program);
    if (endsInExe(name) || name == "wineconsole" || name == "winefile") return true;
    if (!name.starts_with("wine")) return false;
    // "wine", "wine64", "wine-stable", "wine64-development"; not "winetricks" or "winefish".
    name.remove_prefix(std::min(name.find_first_not_of("0123456789", 4), name.size()));
    return name.empty() || name.front() == '-';
}

bool isLauncherProgram(std::string_view program) {
    constexpr std::array<std::string_view, 18> launchers = {
        "bash", "dash", "dbus-launch", "dex",    "flatpak", "gio",  "gjs",  "gtk-launch", "java",
        "mono", "perl", "pkexec",      "python", "sh",      "snap", "sudo", "xdg-open",   "zsh"};
    static_assert(std::ranges::is_sorted(launchers));
    std::string_view name = baseName(program);
    // "python3.11" is a python.
    name = name.substr(0, name.find_last_not_of("0123456789.") + 1);
    return std::ranges::binary_search(launchers, name);
}

}  // namespace linux
