#include "linux/applications/DesktopEntry.h"

#include "linux/applications/Programs.h"
#include "linux/system/DisplayText.h"

#include <glib.h>

#include <algorithm>
#include <memory>

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

class MainGroup {
public:
    explicit MainGroup(bool isTranslated) : isTranslated_(isTranslated) {}

    // GLib would cut a value off at a zero byte.
    bool load(std::string_view bytes) {
        if (bytes.find('\0') != bytes.npos) return false;
        if (!g_key_file_load_from_data(file_.get(), bytes.data(), bytes.size(), G_KEY_FILE_NONE, nullptr)) return false;
        Owned<char> first(g_key_file_get_start_group(file_.get()));
        return first && std::string_view(first.get()) == kGroup;
    }
    // Asked before each value: GLib makes up a message for one that is missing.
    bool has(const char* key) const { return g_key_file_has_key(file_.get(), kGroup, key, nullptr); }
    bool isTrue(const char* key) const { return has(key) && g_key_file_get_boolean(file_.get(), kGroup, key, nullptr); }
    // Empty when there is none, when it is no UTF-8, and when it is too long.
    std::string text(const char* key) const {
        return has(key) ? kept(g_key_file_get_string(file_.get(), kGroup, key, nullptr)) : "";
    }
    std::string translated(const char* key) const {
        if (!isTranslated_ || !has(key)) return text(key);
        std::string translation = kept(g_key_file_get_locale_string(file_.get(), kGroup, key, nullptr, nullptr));
        return translation.empty() ? text(key) : translation;
    }
    bool names(const char* key, const std::vector<std::string>& desktops) const {
        if (!has(key)) return false;
        Owned<char*> list(g_key_file_get_string_list(file_.get(), kGroup, key, nullptr, nullptr));
        auto isInList = [&](const std::string& desktop) { return g_strv_contains(list.get(), desktop.c_str()); };
        return list && std::ranges::any_of(desktops, isInList);
    }

private:
    static std::string kept(char* value) {
        Owned<char> owner(value);
        std::string_view text = value ? value : "";
        return std::string(text.size() > kMaximumDesktopEntryValue ? "" : text);
    }

    Owned<GKeyFile> file_{g_key_file_new()};
    const bool isTranslated_;
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
