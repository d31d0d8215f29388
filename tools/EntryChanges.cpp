#include "tools/EntryChanges.h"

#include "entrylist/Differences.h"
#include "linux/texts/DisplayText.h"
#include "tools/Localized.h"

#include <algorithm>
#include <utility>

using namespace platform;
using namespace settings;

namespace tools {
namespace {

using List = TSPreferencePane::List;

void requireExpression(const List& list, std::size_t row) {
    if (!hasType(list[row], kRegExType)) throw refused("entry %d is not for an expression", row);
}

void requireNotGlobal(const List& list, std::size_t row) {
    if (hasType(list[row], kGlobalType)) throw refused("the Global entry cannot be duplicated");
}

PropertyList with(const PropertyList& entry, std::string_view key, PropertyList value) {
    MutableDictionary changed(entry);
    changed.set(key, std::move(value));
    return std::move(changed).freeze();
}

}  // namespace

EntryChange renaming(std::string name) {
    return [name = std::move(name)](List& list, std::size_t row) {
        requireExpression(list, row);
        list[row] = with(list[row], kNameKey, name);
    };
}

EntryChange editing(std::string expression, std::optional<int> kind) {
    return [expression = std::move(expression), kind](List& list, std::size_t row) {
        requireExpression(list, row);
        list[row] = with(list[row], kDataKey, expression);
        if (kind) list[row] = with(list[row], kRegExTypeKey, *kind);
    };
}

EntryChange resetting() {
    return [](List& list, std::size_t row) {
        if (!list[row].isDictionary()) throw refused("entry %d holds no settings", row);
        PropertyList model = hasType(list[row], kGlobalType) ? newGlobalEntry() : list.front();
        list[row] = entrylist::withOptionsOf(list[row], model, options());
    };
}

EntryChange moving(std::int64_t to) {
    return [to](List& list, std::size_t row) {
        if (row == 0 || to == 0) throw refused("the Global entry stays first");
        if (to < 0 || to >= std::ssize(list))
            throw refused("there is no entry %d; the last one is %d", to, list.size() - 1);
        auto from = list.begin() + static_cast<std::ptrdiff_t>(row), target = list.begin() + to;
        if (from < target)
            std::rotate(from, from + 1, target + 1);
        else
            std::rotate(target, from, from + 1);
    };
}

EntryChange unsetting(const Option& option) {
    return [key = option.key](List& list, std::size_t row) {
        if (!list[row][kSettingsKey][key]) return;
        list[row] = with(list[row], kSettingsKey, with(list[row][kSettingsKey], key, {}));
    };
}

EntryChange duplicating(std::string expression, std::optional<std::string> name) {
    return [expression = std::move(expression), name = std::move(name)](List& list, std::size_t row) {
        requireExpression(list, row);
        PropertyList copy = with(list[row], kDataKey, expression);
        if (name) copy = with(copy, kNameKey, *name);
        auto isSame = [&copy](const PropertyList& entry) {
            return hasType(entry, kRegExType) && entry[kDataKey] == copy[kDataKey] &&
                   entry[kRegExTypeKey] == copy[kRegExTypeKey];
        };
        if (std::ranges::any_of(list, isSame)) throw refused("an entry for this expression is in the list already");
        list.push_back(std::move(copy));
    };
}

EntryChange duplicating(ApplicationIdentity application) {
    return [application = std::move(application)](List& list, std::size_t row) {
        requireNotGlobal(list, row);
        if (ApplicationIndex(list).contains(application))
            throw refused("%@ is in the list already", linux::displayText(application.path));
        list.push_back(applicationEntry(application, list[row][kSettingsKey]));
    };
}

}  // namespace tools
