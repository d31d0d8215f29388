// A pane in a fake world, with every object of its interface.
#pragma once

#include "pane/TSPreferencePane.h"
#include "pane/fontcatalog/FontManagers.h"
#include "settings/EntryList.h"
#include "settings/SettingsSchema.h"
#include "tests/support/Check.h"
#include "tests/support/FakeControls.h"
#include "tests/support/FakePlatform.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

// The lines of a file beside the tests, cut at "|" into cells; "#" begins a comment, and <E9> is that byte alone.
template <std::size_t kColumns>
std::vector<std::array<std::string, kColumns>> cells(const std::string& name) {
    std::vector<std::array<std::string, kColumns>> rows;
    std::ifstream file(SOURCE_ROOT "/tests/pane/" + name);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) continue;
        for (std::size_t at = 0; (at = line.find("<E9>", at)) != line.npos;) line.replace(at, 4, 1, '\xE9');
        std::istringstream text(line + " ");
        for (std::string& cell : rows.emplace_back()) {
            REQUIRE(std::getline(text, cell, '|'));
            cell.erase(0, cell.find_first_not_of(' '));
            cell.erase(cell.find_last_not_of(' ') + 1);
        }
        REQUIRE(text.eof());
    }
    REQUIRE(!rows.empty());
    return rows;
}

inline platform::PropertyList valueOfWord(const std::string& word) {
    if (word == "yes" || word == "no") return word == "yes";
    std::int64_t number = 0;
    auto [rest, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error == std::errc() && !*rest) return number;
    platform::PropertyList text(word);
    return text ? text : platform::PropertyList::data(word);
}

// An entry as "Type Name Data key=value...". Keys are of the settings, or of the entry itself with a dot in front; "_"
// is a blank, "''" an empty text, and "-" leaves a key out. "Global" alone is a new one, another single word no entry.
inline platform::PropertyList entry(const std::string& text) {
    if (text == "Global") return settings::newGlobalEntry();
    if (text.find(' ') == std::string::npos) return text;
    platform::MutableDictionary made, entrySettings;
    std::istringstream words(text);
    const char* keys[] = {"Type", "Name", "Data"};
    const char** next = keys;
    for (std::string word; words >> word;) {
        std::ranges::replace(word, '_', ' ');
        std::size_t equals = word.find('=');
        if (word.starts_with('.'))
            made.set(word.substr(1, equals - 1), valueOfWord(word.substr(equals + 1)));
        else if (equals != std::string::npos)
            entrySettings.set(word.substr(0, equals), valueOfWord(word.substr(equals + 1)));
        else if (const char* key = *next++; word != "-")
            made.set(key, word == "''" ? "" : valueOfWord(word));
    }
    if (!made["Settings"]) made.set("Settings", std::move(entrySettings).freeze());
    return std::move(made).freeze();
}

// Entries with a semicolon between two.
inline std::vector<platform::PropertyList> entries(const std::string& text) {
    std::vector<platform::PropertyList> all;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ';');)
        all.push_back(entry(part.substr(part.find_first_not_of(' '))));
    return all;
}

// What a change of the list does to the world.
inline const fake::Journal kOneChange{"set TheExcList", "synchronize",
                                      "post com.tarnwick.typeslate PrefsChanged at once"};

// The options' controls as options.txt has them: what is under test does not say itself what it should be.
struct OptionControl {
    std::string key, widget, outlet;
    int tag;
};
inline const std::vector<OptionControl>& optionControls() {
    static std::vector<OptionControl> sControls;
    if (sControls.empty())
        for (const auto& [key, widget, outlet, tag, action, title] : cells<6>("options.txt"))
            sControls.push_back({key, widget, outlet, std::stoi(tag)});
    return sControls;
}

struct PaneFixture {
    fake::World world;
    std::optional<TSPreferencePane> pane;
    std::optional<fake::Interface> interface;

    PaneFixture() {
        forgetInstalledFontManagers();
        TSPreferencePane::sGreatestAboutPosition = 0;
        TSPreferencePane::PlinthMessageBroadcast = nullptr;
        TSPreferencePane::PlinthMessageSend = nullptr;
        world.installAliasFramework();
    }

    void setStored(std::string_view key, const platform::PropertyList& value) {
        world.preferences.store(key, value, settings::kSettingsDomain);
    }
    platform::PropertyList stored(std::string_view key) {
        return world.preferences.copyValue(key, settings::kSettingsDomain);
    }
    void setList(const std::string& text) {
        setStored(settings::kEntryListKey, platform::PropertyList::array(entries(text)));
    }
    std::vector<platform::PropertyList> list() { return platform::mutableArray(stored(settings::kEntryListKey)); }

    // What a host does until the pane is on screen, in two steps: the interface file is loaded between them.
    void load() {
        TSPreferencePane::initialize(world.bundles);
        pane.emplace(world.platform());
        pane->mainNibName();
        connect();
        table().numberOfRows();  // toolkits ask as they like
    }
    void show() {
        pane->awakeFromNib();
        pane->mainViewDidLoad();
        pane->willSelect();
        // What start-up itself says has tests of its own.
        world.takeJournal();
        world.log.lines.clear();
    }
    void open() {
        load();
        show();
    }

    void connect() {
        interface.emplace(*pane);
        for (const OptionControl& option : optionControls()) {
            if (option.widget == "QSpinBox") field(option.outlet).tagValue = option.tag;
            if (option.widget == "QComboBox") menu(option.outlet).tagValue = option.tag;
            if (option.widget == "QCheckBox") button(option.outlet).tagValue = option.tag;
        }
        for (const char* name : {"warningOKButton", "regexSheetOK"}) button(name).tagValue = 1;
        for (const char* name : {"enabledCheckbox", "logStuff", "exRemoveAppButton", "dontShowAgain",
                                 "warningCancelButton", "regexAdd", "regexCancel", "regexHelp"})
            button(name);
        for (const char* name : {"undoAction", "redoAction", "duplicateAction", "pasteAction", "useGlobalAction"})
            button(name);
        menu("listStates").titles = {"All", "Off", "Missing", "Different", "Unreachable"};
        field("listSearch");
        button("hideMissing");
        for (const char* name :
             {"versionField", "statusField", "warningText", "regexName", "regex", "regexText", "regexMatches"})
            field(name);
        for (const char* name : {"warningSheet", "regexPanel"}) panel(name);
        button("aboutCloseButton").window = &panel("aboutPanel");
        interface->get<fake::TextView>("aboutTextView");
        menu("regexType");
        interface->get<fake::TabView>("tabs");
        table();
    }
    platform::View& control(const OptionControl& option) { return interface->object(option.outlet); }
    fake::Button& box(std::string_view key) {
        return button(std::ranges::find(optionControls(), key, &OptionControl::key)->outlet);
    }
    fake::Button& button(const std::string& name) { return interface->button(name); }
    fake::TextField& field(const std::string& name) { return interface->get<fake::TextField>(name); }
    fake::TableView& table() { return interface->get<fake::TableView>("exTableView"); }
    fake::PopUpButton& menu(const std::string& name) { return interface->get<fake::PopUpButton>(name); }
    fake::Panel& panel(const std::string& name) { return interface->get<fake::Panel>(name); }
    void act(std::string_view selector, const std::string& name) {
        pane->performAction(selector, interface->object(name));
    }

    // As the user's click does: the box changes first, then its action runs.
    void click(fake::Button& target, std::string_view selector) {
        target.on = !target.on;
        pane->performAction(selector, target);
    }
    void clickOption(std::string_view key) { click(box(key), "togglePerAppPrefs:"); }

    // Of each option, in the order of options.txt, the digit that its control shows, and whether it can be used.
    std::string shownOptions() {
        std::string values, usable;
        for (const OptionControl& option : optionControls()) {
            platform::View& shown = control(option);
            values += std::to_string(shown.asPopUpButton() ? shown.selectedRow() : shown.integerValue());
            usable += shown.isEnabled() ? '1' : '0';
        }
        return values + " " + usable;
    }
};
