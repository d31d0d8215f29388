#include "tools/commands/Commands.h"

#include "linux/LinuxMachine.h"
#include "platform/LoginItems.h"
#include "settings/EntryList.h"
#include "tools/EntryListing.h"
#include "tools/Output.h"

#include <algorithm>
#include <map>

using namespace entrylist;
using namespace platform;
using namespace settings;

namespace tools {
namespace {

struct Arguments {
    std::string what, typed;
    std::vector<std::string> given;

    std::string_view word(std::size_t index) const { return index < given.size() ? given[index] : std::string_view(); }
};
using Candidates = std::vector<std::string>;

PropertyList storedValues(std::string_view domain) { return linux::LinuxStore().preferences.copyDomain(domain); }

std::vector<PropertyList> storedEntries() { return repairedList(storedValues(kSettingsDomain)[kEntryListKey]); }

void addKeys(const PropertyList& dictionary, Candidates& to) {
    for (const auto& [key, value] : dictionary.entries()) to.emplace_back(key.stringValue());
}

Candidates domains(const Arguments&) { return linux::LinuxStore().preferences.domains().value_or(Candidates()); }

Candidates keys(const Arguments& arguments) {
    Candidates keys;
    addKeys(storedValues(arguments.word(0)), keys);
    return keys;
}

// Rows and how the other forms begin, or when one is begun the names of this form that lead to one entry.
Candidates entries(const Arguments& arguments) {
    const std::vector<PropertyList> list = storedEntries();
    const std::string form = arguments.typed.substr(0, arguments.typed.find(':') + 1);
    std::map<std::string, int> counts;
    Candidates rows;
    for (const PropertyList& entry : list) {
        rows.push_back(std::to_string(rows.size()));
        for (const EntryAddress& address : addressesOf(entry)) {
            const std::string text = textOf(address);
            ++counts[form.empty() ? text.substr(0, text.find(':') + 1) : text];
        }
    }
    Candidates names = form.empty() ? rows : Candidates();
    for (const auto& [text, count] : counts)
        if (form.empty() || (count == 1 && text.starts_with(form))) names.push_back(text);
    return names;
}

Candidates options(const Arguments&) {
    Candidates names;
    for (const Option& option : settings::options()) names.emplace_back(option.key);
    return names;
}

Candidates entryKeys(const Arguments& arguments) {
    Candidates names = options(arguments);
    const std::vector<PropertyList> list = storedEntries();
    if (auto address = entryAddress(arguments.word(0)))
        if (auto rows = rowsAt(*address, list); rows.size() == 1) addKeys(list[rows.front()], names);
    return names;
}

Candidates values(const Arguments& arguments) {
    const Option* option = optionForKey(arguments.word(1));
    if (!option) return {};
    const std::vector<std::string_view> words = valueWords(*option);
    return {words.begin(), words.end()};
}

Candidates loginItems(const Arguments&) {
    const PropertyList items = storedValues(kLoginWindowDomain)[kLoginItemsKey];
    linux::LinuxApplications applications;
    Candidates identifiers;
    for (const PropertyList& item : items.elements())
        if (auto identifier = applications.bundleIdentifier(item[kLoginItemPathKey].stringValue()))
            identifiers.push_back(*identifier);
    return identifiers;
}

struct Kind {
    std::string_view name;
    Candidates (*candidates)(const Arguments&);
};
constexpr Kind kKinds[] = {
    {"domains", domains},      {"keys", keys},     {"entries", entries},       {"options", options},
    {"entry-keys", entryKeys}, {"values", values}, {"login-items", loginItems}};

// Whatever is wrong, nothing is said: the user is in the middle of a line.
void complete(const Arguments& arguments) {
    auto kind = std::ranges::find(kKinds, arguments.what, &Kind::name);
    if (kind == std::end(kKinds)) return;
    std::string text;
    for (const std::string& candidate : kind->candidates(arguments)) text.append(candidate).push_back('\0');
    print(text);
}

}  // namespace

void addCompleteCommand(CLI::App& app) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand("complete")->group("");
    command->add_option("WHAT", arguments->what);
    command->add_option("TYPED", arguments->typed);
    command->add_option("GIVEN", arguments->given);
    command->callback([arguments] { complete(*arguments); });
}

}  // namespace tools
