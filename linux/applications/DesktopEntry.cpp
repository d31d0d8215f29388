#include "linux/applications/DesktopEntry.h"

#include "propertylist/Unicode.h"

#include <algorithm>
#include <array>
#include <utility>

namespace linux {

using namespace propertylist;

namespace {

enum Key : std::size_t {
    kType,
    kName,
    kIcon,
    kExec,
    kTryExec,
    kHidden,
    kNoDisplay,
    kDBusActivatable,
    kTerminal,
    kPath,
    kOnlyShowIn,
    kNotShowIn,
    kKeyCount
};
constexpr std::string_view kEscapeLetters = "sntr\\", kEscapedCharacters = " \n\t\r\\";
constexpr std::array<std::string_view, kKeyCount> kKeyNames = {
    "Type",     "Name", "Icon",       "Exec",      "TryExec", "Hidden", "NoDisplay", "DBusActivatable",
    "Terminal", "Path", "OnlyShowIn", "NotShowIn",
};

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::string_view takeLine(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return trimmed(line);
}

// An unknown escape stays as it is: "\"" belongs to the quoting of Exec, "\;" to lists.
std::string unescaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t letter =
            text[i] == '\\' && i + 1 < text.size() ? kEscapeLetters.find(text[i + 1]) : text.npos;
        result += letter == text.npos ? text[i] : kEscapedCharacters[letter];
        i += letter != text.npos;
    }
    return result;
}

std::vector<std::string> unescapedList(std::string_view text) {
    std::vector<std::string> items;
    std::string item;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscape = text[i] == '\\' && i + 1 < text.size();
        if (!isEscape && text[i] == ';') {
            items.push_back(unescaped(std::exchange(item, {})));
            continue;
        }
        if (!isEscape || text[i + 1] != ';') item += text[i];
        if (isEscape) item += text[++i];
    }
    if (!item.empty()) items.push_back(unescaped(item));
    return items;
}

// The values of the main group, as views into the bytes.
class MainGroup {
public:
    explicit MainGroup(const DesktopEntryLocale& locale) : locale_(locale) { ranks_.fill(kMissing); }

    // False when the line is no "key=value".
    bool takeLine(std::string_view line) {
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos || equals == 0) return false;
        const std::string_view name = trimmed(line.substr(0, equals));
        const std::size_t bracket = name.find('[');
        const auto found = std::ranges::find(kKeyNames, name.substr(0, bracket));
        if (found != kKeyNames.end())
            take(static_cast<Key>(found - kKeyNames.begin()), name.substr(std::min(bracket, name.size())),
                 trimmed(line.substr(equals + 1)));
        return true;
    }

    bool has(Key key) const { return plain_[key].data() != nullptr; }
    bool isTrue(Key key) const { return plain_[key] == "true" || plain_[key] == "1"; }
    std::string_view raw(Key key) const { return plain_[key]; }
    std::string text(Key key) const { return unescaped(plain_[key]); }
    std::string localizedText(Key key) const { return unescaped(has(key) ? best_[key] : std::string_view()); }

private:
    static constexpr std::size_t kMissing = static_cast<std::size_t>(-1);

    void take(Key key, std::string_view postfix, std::string_view value) {
        const std::size_t rank = rankOf(key, postfix);
        if (rank > ranks_[key] && !postfix.empty()) return;
        if (rank == kMissing || value.size() > kMaximumDesktopEntryValue) return;
        if (!isValidUTF8(value) || value.find('\0') != std::string_view::npos) return;
        if (postfix.empty()) plain_[key] = value;
        if (rank > ranks_[key]) return;
        best_[key] = value;
        ranks_[key] = rank;
    }

    std::size_t rankOf(Key key, std::string_view postfix) const {
        if (postfix.empty()) return locale_.size();
        if ((key != kName && key != kIcon) || !postfix.ends_with(']')) return kMissing;
        postfix = postfix.substr(1, postfix.size() - 2);
        for (std::size_t i = 0; i < locale_.size(); ++i)
            if (isSameLocale(postfix, locale_[i])) return i;
        return kMissing;
    }

    // The encoding of a postfix says nothing: the file is UTF-8.
    static bool isSameLocale(std::string_view postfix, std::string_view wanted) {
        const std::size_t dot = postfix.find('.');
        if (dot == std::string_view::npos) return postfix == wanted;
        const std::size_t at = std::min(postfix.find('@', dot), postfix.size());
        return wanted.starts_with(postfix.substr(0, dot)) && wanted.substr(dot) == postfix.substr(at);
    }

    const DesktopEntryLocale& locale_;
    std::array<std::string_view, kKeyCount> plain_, best_;
    std::array<std::size_t, kKeyCount> ranks_;
};

bool isCommentOrEmpty(std::string_view line) { return line.empty() || line.front() == '#'; }

bool readMainGroup(std::string_view bytes, MainGroup& group) {
    std::string_view line;
    while (!bytes.empty() && isCommentOrEmpty(line)) line = takeLine(bytes);
    if (line != "[Desktop Entry]") return false;
    while (!bytes.empty()) {
        line = takeLine(bytes);
        if (isCommentOrEmpty(line)) continue;
        if (line.front() == '[') return true;
        if (!group.takeLine(line)) return false;
    }
    return true;
}

bool intersects(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    return std::ranges::find_first_of(a, b) != a.end();
}

}  // namespace

DesktopEntryLocale desktopEntryLocale(std::string_view posixLocale) {
    const std::size_t at = std::min(posixLocale.find('@'), posixLocale.size());
    const std::string modifier(posixLocale.substr(at));
    std::string_view base = posixLocale.substr(0, at);
    base = base.substr(0, base.find('.'));
    const std::string language(base.substr(0, base.find('_')));
    if (language.empty() || language == "C" || language == "POSIX") return {};
    DesktopEntryLocale locale;
    for (std::string candidate : {std::string(base) + modifier, std::string(base), language + modifier, language})
        if (std::ranges::find(locale, candidate) == locale.end()) locale.push_back(std::move(candidate));
    return locale;
}

bool DesktopEntry::isShownIn(const std::vector<std::string>& desktops) const {
    return (onlyShowIn.empty() || intersects(onlyShowIn, desktops)) && !intersects(notShowIn, desktops);
}

std::optional<DesktopEntry> readDesktopEntry(std::string_view bytes, const DesktopEntryLocale& locale) {
    MainGroup group(locale);
    if (bytes.size() > kMaximumDesktopEntrySize || !readMainGroup(bytes, group)) return {};
    DesktopEntry entry;
    entry.isApplication = group.raw(kType) == "Application";
    entry.isHidden = group.isTrue(kHidden);
    const bool isNamed = group.has(kType) && (!entry.isApplication || group.has(kName));
    if (!isNamed && !entry.isHidden) return {};
    entry.isNoDisplay = group.isTrue(kNoDisplay);
    entry.isDBusActivatable = group.isTrue(kDBusActivatable);
    entry.isTerminal = group.isTrue(kTerminal);
    entry.workingFolder = group.text(kPath);
    entry.name = group.localizedText(kName);
    entry.unlocalizedName = group.text(kName);
    entry.icon = group.localizedText(kIcon);
    entry.tryExec = group.text(kTryExec);
    entry.exec = group.text(kExec);
    entry.onlyShowIn = unescapedList(group.raw(kOnlyShowIn));
    entry.notShowIn = unescapedList(group.raw(kNotShowIn));
    return entry;
}

// A blank counts only where a reader would cut it off.
std::string escapedDesktopEntryValue(std::string_view text) {
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t letter = kEscapedCharacters.find(text[i]);
        const bool isInnerBlank = text[i] == ' ' && i > 0 && i + 1 < text.size();
        if (letter == text.npos || isInnerBlank)
            value += text[i];
        else
            value.append({'\\', kEscapeLetters[letter]});
    }
    return value;
}

}  // namespace linux
