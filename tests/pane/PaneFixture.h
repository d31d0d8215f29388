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
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

// The options' controls as options.txt has them: what is under test does not say itself what it should be.
struct OptionControl {
    std::string key, widget, outlet;
    int tag = 0;
};
inline const std::vector<OptionControl>& optionControls() {
    static const std::vector<OptionControl> kControls = [] {
        std::vector<OptionControl> controls;
        std::ifstream file(TEST_DATA "/options.txt");
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with('#')) continue;
            std::ranges::replace(line, '|', ' ');
            OptionControl& control = controls.emplace_back();
            std::istringstream(line) >> control.key >> control.widget >> control.outlet >> control.tag;
        }
        return controls;
    }();
    return kControls;
}

struct PaneFixture {
    fake::World world;
    std::optional<TSPreferencePane> pane;
    std::optional<fake::Interface> interface;

    PaneFixture() {
        forgetInstalledFontManagers();
        TSPreferencePane::PlinthMessageBroadcast = nullptr;
        world.installAliasFramework();
    }

    void setStored(std::string_view key, const platform::PropertyList& value) {
        world.preferences.setValue(key, value, settings::kSettingsDomain);
    }
    platform::PropertyList stored(std::string_view key) {
        return world.preferences.copyValue(key, settings::kSettingsDomain);
    }
    platform::PropertyList list() { return stored(settings::kEntryListKey); }

    // What a host does until the pane is on screen.
    void open() {
        TSPreferencePane::initialize(world.bundles);
        pane.emplace(world.platform());
        pane->mainNibName();
        connect();
        pane->awakeFromNib();
        pane->mainViewDidLoad();
        pane->willSelect();
        // What start-up itself says has tests of its own.
        world.takeJournal();
        world.log.lines.clear();
    }

    void connect() {
        interface.emplace(*pane);
        for (const OptionControl& control : optionControls()) optionControl(control);
        for (const char* name : {"enabledCheckbox", "logStuff", "exRemoveAppButton", "dontShowAgain"}) button(name);
        button("warningOKButton").tagValue = 1;
        button("warningCancelButton").tagValue = 0;
        for (const char* name : {"versionField", "statusField", "warningText", "regexName", "regex"}) field(name);
        interface->get<fake::PopUpButton>("regexType");
        interface->get<fake::TabView>("tabs");
        interface->get<fake::Panel>("warningSheet");
        table();
    }

    platform::View& optionControl(const OptionControl& control) {
        if (control.widget == "QSpinBox") return tagged(field(control.outlet), control.tag);
        if (control.widget == "QComboBox")
            return tagged(interface->get<fake::PopUpButton>(control.outlet), control.tag);
        return tagged(button(control.outlet), control.tag);
    }
    fake::Button& box(std::string_view key) {
        return button(std::ranges::find(optionControls(), key, &OptionControl::key)->outlet);
    }
    fake::Button& button(const std::string& name) { return interface->button(name); }
    fake::TextField& field(const std::string& name) { return interface->get<fake::TextField>(name); }
    fake::TableView& table() { return interface->get<fake::TableView>("exTableView"); }
    fake::Panel& sheet() { return interface->get<fake::Panel>("warningSheet"); }

    // As the user's click does: the control changes first, then its action runs.
    void click(fake::Button& target, std::string_view selector) {
        target.on = !target.on;
        pane->performAction(selector, target);
    }
    void clickOption(std::string_view key) { click(box(key), "togglePerAppPrefs:"); }

private:
    template <typename T>
    static platform::View& tagged(T& control, int tag) {
        control.tagValue = tag;
        return control;
    }
};

// Short ways to write entries.
inline platform::PropertyList entry(
    std::string_view type, std::string_view name, std::string_view data = "",
    const platform::PropertyList& entrySettings = platform::PropertyList::dictionary({})) {
    return platform::PropertyList::dictionary(
        {{"Type", type}, {"Name", name}, {"Data", data}, {"Settings", entrySettings}});
}
