#include "linux/applications/DesktopEntry.h"

#include "linux/applications/Programs.h"
#include "linux/texts/DisplayText.h"

#include <glib.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace linux {

namespace {

constexpr const char* kGroup = G_KEY_FILE_DESKTOP_GROUP;

struct Deleter {
    void operator()(char* text) const { g_free(text); }
    void operator()(char** texts) const { g_strfreev(texts); }
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
template <typename T>
using Owned = std::unique_ptr<T, Deleter>;

// Whether a line is a translation into a language that is not the user's.
bool isForOthers(std::string_view line, const char* const* languages) {
    std::string_view key = line.substr(0, line.find('='));
    std::size_t bracket = key.find('[');
    if (bracket == key.npos || bracket == 0) return false;
    std::string language(key.substr(bracket + 1, key.find(']') - bracket - 1));
    return !g_strv_contains(languages, language.c_str());
}

// GLib takes some 2,000 instructions for a line, and most lines are translations or belong to a menu of actions.
std::string linesOfInterest(std::string_view bytes, const char* const* languages) {
    std::string lines;
    for (bool isInGroup = false; !bytes.empty();) {
        std::string_view line = bytes.substr(0, bytes.find('\n'));
        bytes.remove_prefix(std::min(line.size() + 1, bytes.size()));
        if (line.starts_with('[') && std::exchange(isInGroup, true)) break;
        if (!isForOthers(line, languages)) lines.append(line) += '\n';
    }
    return lines;
}

// As GLib did up to 2.76. Newer versions give no value at all when there is an escape in it that is none, such as the
// \" that many commands have.
std::string unescaped(std::string_view value) {
    static constexpr std::string_view kEscapes = "sntr\\", kMeanings = " \n\t\r\\";
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        std::size_t escape = value[i] == '\\' && i + 1 < value.size() ? kEscapes.find(value[i + 1]) : kEscapes.npos;
        text += escape == kEscapes.npos ? value[i] : kMeanings[escape];
        if (escape != kEscapes.npos) ++i;
    }
    return text;
}

class MainGroup {
public:
    explicit MainGroup(bool isTranslated) : languages_(isTranslated ? g_get_language_names() : &kNone) {}

    // GLib would cut a value off at a zero byte.
    bool load(std::string_view bytes) {
        std::string lines = linesOfInterest(bytes, languages_);
        if (lines.find('\0') != lines.npos) return false;
        if (!g_key_file_load_from_data(file_.get(), lines.data(), lines.size(), G_KEY_FILE_KEEP_TRANSLATIONS, nullptr))
            return false;
        Owned<char> first(g_key_file_get_start_group(file_.get()));
        return first && std::string_view(first.get()) == kGroup;
    }
    // Asked before each value: GLib makes up a message for one that is missing.
    bool has(const char* key) const { return g_key_file_has_key(file_.get(), kGroup, key, nullptr); }
    bool isTrue(const char* key) const { return has(key) && g_key_file_get_boolean(file_.get(), kGroup, key, nullptr); }
    // Empty when there is none, when it is no UTF-8, and when it is too long.
    std::string text(const std::string& key) const {
        if (!has(key.c_str())) return {};
        Owned<char> value(g_key_file_get_value(file_.get(), kGroup, key.c_str(), nullptr));
        if (!value || !g_utf8_validate(value.get(), -1, nullptr)) return {};
        std::string text = unescaped(value.get());
        return text.size() > kMaximumDesktopEntryValue ? std::string() : text;
    }
    // GLib's own way to a translation makes up messages, too.
    std::string translated(const std::string& key) const {
        for (const char* const* language = languages_; *language; ++language)
            if (std::string value = text(key + "[" + *language + "]"); !value.empty()) return value;
        return text(key);
    }
    bool names(const char* key, const std::vector<std::string>& desktops) const {
        if (!has(key)) return false;
        Owned<char*> list(g_key_file_get_string_list(file_.get(), kGroup, key, nullptr, nullptr));
        auto isInList = [&](const std::string& desktop) { return g_strv_contains(list.get(), desktop.c_str()); };
        return list && std::ranges::any_of(desktops, isInList);
    }

private:
    static constexpr const char* kNone = nullptr;
    Owned<GKeyFile> file_{g_key_file_new()};
    const char* const* const languages_;
};

// Field codes replaced as for a start without files; nothing when there is an unknown one.
std::optional<std::string> expanded(std::string_view word, const ApplicationRecord& record, const std::string& name) {
    std::string text;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (word[i] != '%') {
            text += word[i];
            continue;
        }
        switch (++i < word.size() ? word[i] : '\0') {
            case '%':
                text += '%';
                break;
            case 'c':
                text += name;
                break;
            case 'k':
                text += record.path;
                break;
            default:
                if (i == word.size() || std::string_view("fFuUdDnNvm").find(word[i]) == std::string_view::npos)
                    return {};
        }
    }
    return text;
}

std::vector<std::string> commandOf(const MainGroup& group, const ApplicationRecord& record) {
    char** split = nullptr;
    if (!g_shell_parse_argv(group.text("Exec").c_str(), nullptr, &split, nullptr)) return {};
    Owned<char*> owner(split);
    std::string name = group.translated("Name");
    std::vector<std::string> words;
    for (std::string_view word; *split; ++split) {
        word = *split;
        if (word == "%i") {
            if (!record.iconName.empty()) words.insert(words.end(), {"--icon", record.iconName});
            continue;
        }
        std::optional<std::string> text = expanded(word, record, name);
        if (!text) return {};
        // A code that stands for nothing leaves no empty argument behind.
        if (!text->empty() || word.empty()) words.push_back(std::move(*text));
    }
    return words;
}

std::string searchTextsOf(const MainGroup& group) {
    std::string texts;
    for (const char* key : {"Name", "GenericName", "Keywords"})
        if (group.has(key)) texts += group.text(key) + "\n" + group.translated(key) + "\n";
    return texts;
}

}  // namespace

std::optional<ApplicationRecord> desktopEntryRecord(const std::string& path, std::string identifier,
                                                    std::string_view bytes, const ApplicationEnvironment& environment) {
    MainGroup group(environment.isTranslated);
    if (!group.load(bytes)) return {};
    std::string type = group.text("Type");
    bool isHidden = group.isTrue("Hidden");
    ApplicationRecord record;
    record.isApplication = type == "Application" && !isHidden;
    record.searchName = group.text("Name");
    if (!isHidden && (type.empty() || (record.isApplication && record.searchName.empty()))) return {};
    record.path = path;
    record.identifier = std::move(identifier);
    record.name = displayText(group.translated("Name"));
    if (record.name.empty()) record.name = displayedLastComponent(path);
    if (group.has("GenericName")) record.genericName = displayText(group.translated("GenericName"));
    record.searchTexts = searchTextsOf(group);
    record.windowClass = group.text("StartupWMClass");
    record.iconName = group.translated("Icon");
    record.tryProgram = group.text("TryExec");
    record.workingFolder = group.text("Path");
    record.isInTerminal = group.isTrue("Terminal");
    record.isDBusActivatable = group.isTrue("DBusActivatable");
    bool isForThisDesktop = !group.has("OnlyShowIn") || group.names("OnlyShowIn", environment.currentDesktops);
    record.isDisplayed =
        isForThisDesktop && !group.isTrue("NoDisplay") && !group.names("NotShowIn", environment.currentDesktops);
    record.words = commandOf(group, record);
    if (std::size_t index = programIndex(record.words); index < record.words.size()) {
        record.program = record.words[index];
        record.argumentCount = record.words.size() - index - 1;
    }
    if (record.isDBusActivatable && record.words.empty()) record.words = {"gapplication", "launch", record.identifier};
    return record;
}

}  // namespace linux
