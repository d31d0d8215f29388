#include "tests/pane/PaneFixture.h"

#include <functional>

using namespace platform;

namespace {

PropertyList listOf(const PropertyList& globalSettings) {
    return PropertyList::array({entry("Global", "Global", "", globalSettings)});
}

void installFontManagers(PaneFixture& f) {
    f.world.applications.items = {{"/fap", "FontAgent", fourCharCode("FApM"), ""},
                                  {"/fex", "FontExplorer", kUnknownCreator, "com.linotype.FontExplorerX"},
                                  {"/opt/Suitcase Fusion.app", "Suitcase", kUnknownCreator, ""}};
}

const fake::Journal kWritersSequence{"synchronize", "set TheExcList", "synchronize",
                                     "post com.tarnwick.typeslate PrefsChanged at once"};

}  // namespace

TEST(EachControlChangesItsOneKey) {
    PaneFixture f;
    installFontManagers(f);
    PropertyList old = PropertyList::dictionary({{"Enabled", true}, {"Unknown", "kept"}});
    REQUIRE(optionControls().size() == settings::options().size());
    for (const OptionControl& option : optionControls()) {
        CONTEXT(option.key);
        f.setStored("TheExcList", listOf(old));
        f.open();
        View& control = f.optionControl(option);
        if (auto* button = control.asButton()) button->setState(!button->state());
        if (auto* field = control.asTextField()) field->setIntegerValue(42);
        if (auto* menu = control.asPopUpButton()) menu->selectItem(2);
        std::int64_t expected = control.asTextField() ? 42 : control.asPopUpButton() ? 2 : control.integerValue();
        f.pane->performAction("togglePerAppPrefs:", control);

        MutableDictionary changed(old);
        changed.set(option.key, control.asButton() ? PropertyList(expected != 0) : PropertyList(expected));
        CHECK_EQ(f.list()[0]["Settings"], std::move(changed).freeze());
        CHECK_EQ(f.world.takeJournal(), kWritersSequence);
    }
}

TEST(FixedTagsAndUnknownTags) {
    for (const auto& [tag, settings] : {std::pair{8, "{DupeHandling = 0;}"},
                                        {9, "{DupeHandling = 1;}"},
                                        {10, "{DupeHandling = 2;}"},
                                        {99, "{}"},
                                        {0, "{}"}}) {
        CONTEXT(std::to_string(tag));
        PaneFixture f;
        f.setStored("TheExcList", listOf(PropertyList::dictionary({})));
        f.open();
        fake::Button sender;
        sender.tagValue = tag;
        sender.titleText = "Odd One";
        f.pane->performAction("togglePerAppPrefs:", sender);
        CHECK_EQ(f.list()[0]["Settings"].description(), settings);
        CHECK_EQ(f.world.takeJournal(), kWritersSequence);
        std::vector<std::string> complaints(tag < 8 || tag > 10 ? 1 : 0, "Odd One is not handled");
        CHECK_EQ(f.world.log.lines, complaints);
    }
}

TEST(SettingsOfAnyShapeAreShown) {
    const std::tuple<const char*, PropertyList, bool, bool, bool, std::int64_t> cases[] = {
        {"missing keys", PropertyList::dictionary({}), false, true, true, 0},
        {"numbers for booleans", PropertyList::dictionary({{"Enabled", 1}, {"ModifyFontPanel", 0}, {"FontSize", true}}),
         true, false, true, 1},
        {"wrong types", PropertyList::dictionary({{"Enabled", "yes"}, {"FontSize", "12"}, {"IncludeFAPSets", "x"}}),
         false, true, false, 0},
        {"no dictionary", PropertyList("text"), false, false, false, 0},
        {"nothing", PropertyList(), false, false, false, 0},
    };
    for (const auto& [label, stored, enabled, modifyPanel, fap, size] : cases) {
        CONTEXT(label);
        PaneFixture f;
        installFontManagers(f);
        f.setStored("TheExcList", listOf(stored));
        f.open();
        CHECK_EQ(f.box("Enabled").on, enabled);
        CHECK_EQ(f.box("ModifyFontPanel").on, modifyPanel);
        CHECK_EQ(f.box("IncludeFAPSets").on, fap);
        CHECK_EQ(f.field("perAppFontSize").number, size);
        CHECK_EQ(f.list(), listOf(stored));  // showing stores nothing
    }
}

TEST(EnabledStatesFollowTheSwitchesAndTheInstalledManagers) {
    struct Case {
        const char* label;
        bool master, entryOn, showSize, showFace, managers;
        bool options, size, sets, preview;
    };
    const Case cases[] = {
        {"all on", true, true, true, true, true, true, true, true, true},
        {"master off", false, true, true, true, true, false, false, false, false},
        {"entry off", true, false, true, true, true, false, true, false, false},
        {"no size", true, true, false, true, true, true, false, true, true},
        {"no face", true, true, true, false, true, true, true, true, false},
        {"no managers", true, true, true, true, false, true, true, false, false},
    };
    for (const Case& c : cases) {
        CONTEXT(c.label);
        PaneFixture f;
        if (c.managers) installFontManagers(f);
        f.setStored("Disabled", !c.master);
        f.setStored("TheExcList", listOf(PropertyList::dictionary({{"Enabled", c.entryOn},
                                                                   {"ChangeSize", c.showSize},
                                                                   {"ShowFontInFace", c.showFace},
                                                                   {"IncludeFEXSets", true}})));
        f.open();
        CHECK_EQ(f.box("Enabled").enabled, c.master);
        CHECK_EQ(f.button("logStuff").enabled, c.master);
        for (const char* key : {"CheckMenuItems", "ShowSets", "ShowIcons", "ShowFontInFace", "ChangeSize",
                                "HierarchicalMenu", "AllFontsGroup", "ScriptSort", "ModifyFontPanel"})
            CHECK_EQ(f.box(key).enabled, c.options);
        CHECK_EQ(f.field("perAppFontSize").enabled, c.size);
        for (const char* key : {"IncludeFAPSets", "IncludeFEXSets", "IncludeSuitcaseSets"}) {
            CHECK_EQ(f.box(key).enabled, c.sets);
            CHECK_EQ(f.box(key).on, c.managers);
        }
        CHECK_EQ(f.box("GenerateInactivePreview").enabled, c.preview);
    }
}

TEST(DependentControlsFollowAClickAtOnce) {
    PaneFixture f;
    installFontManagers(f);
    f.setStored("TheExcList", listOf(PropertyList::dictionary({{"Enabled", true}, {"ShowFontInFace", true}})));
    f.open();
    f.clickOption("ShowFontInFace");
    CHECK(!f.box("GenerateInactivePreview").on);
    CHECK(!f.box("GenerateInactivePreview").enabled);
    f.clickOption("ShowFontInFace");
    CHECK(f.box("GenerateInactivePreview").enabled);
    CHECK(f.box("GenerateInactivePreview").on);
    f.clickOption("ChangeSize");
    CHECK(f.field("perAppFontSize").enabled);
    CHECK(!f.list()[0]["Settings"]["GenerateInactivePreview"]);
    CHECK_EQ(f.world.applications.queries, 3);  // one for each manager, whatever is clicked
}

TEST(ClicksWithoutAUsableEntryChangeNothing) {
    PaneFixture f;
    f.setStored("TheExcList", PropertyList::array({settings::newGlobalEntry(), PropertyList("text")}));
    f.open();
    f.table().selectRow(1);
    f.world.takeJournal();
    f.clickOption("ShowSets");
    CHECK_EQ(f.list()[1], PropertyList("text"));
    CHECK_EQ(f.world.takeJournal(), fake::Journal{"synchronize"});
}

TEST(MasterSwitch) {
    struct Case {
        const char* label;
        bool before, hasRuntime;
        std::function<void(PaneFixture&)> meanwhile;
        fake::Journal journal;
    };
    const std::string sync = "synchronize", set = "set Disabled", off = "broadcast com.tarnwick.typeslate Disabled",
                      post = "post com.tarnwick.typeslate PrefsChanged at once";
    auto disable = [](PaneFixture& f) { f.setStored("Disabled", true); };
    const Case cases[] = {
        {"off", false, true, nullptr, {sync, set, sync, off, post}},
        {"off without a runtime", false, false, nullptr, {sync, set, sync, post}},
        {"on", true, false, nullptr, {sync, set, sync, post}},
        {"already off elsewhere", false, true, disable, {sync, set}},
    };
    for (const Case& c : cases) {
        CONTEXT(c.label);
        PaneFixture f;
        f.setStored("Disabled", c.before);
        if (c.hasRuntime) f.world.loadRuntime();
        f.open();
        if (c.meanwhile) f.world.preferences.duringSynchronize = [&] { c.meanwhile(f); };
        f.click(f.button("enabledCheckbox"), "toggleEnabled:");
        CHECK_EQ(f.world.takeJournal(), c.journal);
        CHECK_EQ(f.stored("Disabled"), PropertyList(!c.before));
        if (c.meanwhile) continue;
        CHECK_EQ(f.interface->get<fake::TabView>("tabs").tint == ControlTint::Clear, !c.before);
        CHECK_EQ(f.box("Enabled").enabled, c.before);
        f.world.runLoop.advance(10);
        CHECK_EQ(f.world.takeJournal(), fake::Journal{});
    }
}

TEST(LoggingSwitchWarnsFirst) {
    struct Case {
        const char* label;
        bool dontShowStored, consoleIsThere, pressOK, tickDontShow;
        const char* text;  // of the sheet; null: none
        bool logsAfter;
    };
    const Case cases[] = {
        {"confirmed", false, true, true, false, "Logs go to /Tools/Console Deluxe.", true},
        {"cancelled", false, true, false, true, "Logs go to /Tools/Console Deluxe.", false},
        {"no console", false, false, true, true, "Logs go to (null).", true},
        {"not to be shown", true, true, true, false, nullptr, true},
    };
    for (const Case& c : cases) {
        CONTEXT(c.label);
        PaneFixture f;
        f.world.paneBundle.strings["Log Warning"] = "Logs go to %@.";
        if (c.consoleIsThere)
            f.world.applications.items = {
                {"/tools/console.app", "Console Deluxe", kUnknownCreator, "com.apple.Console"},
                {"/tools", "Tools", 1, "", 0}};
        f.setStored("Don't Show Log Stuff Sheet", c.dontShowStored);
        f.open();
        f.click(f.button("logStuff"), "toggleLogging:");
        CHECK_EQ(f.sheet().isOpen, c.text != nullptr);
        if (c.text) {
            CHECK_EQ(f.field("warningText").text, c.text);
            CHECK(!f.stored("Log Stuff"));
            f.button("dontShowAgain").on = c.tickDontShow;
            f.pane->performAction("warningEnd:", f.button(c.pressOK ? "warningOKButton" : "warningCancelButton"));
            CHECK_EQ(f.stored("Don't Show Log Stuff Sheet"), PropertyList(c.tickDontShow));
        }
        CHECK(!f.sheet().isOpen);
        CHECK_EQ(f.stored("Log Stuff"), PropertyList(c.logsAfter));
        CHECK_EQ(f.button("logStuff").on, c.logsAfter);
        for (const std::string& event : f.world.takeJournal()) CHECK(!event.starts_with("post"));
        // Turning it off never warns.
        f.button("logStuff").on = false;
        f.pane->performAction("toggleLogging:", f.button("logStuff"));
        CHECK(!f.sheet().isOpen);
        CHECK_EQ(f.stored("Log Stuff"), PropertyList(false));
    }
}

TEST(WarningsOfOtherKeysAreRememberedAllTheSame) {
    PaneFixture f;
    f.open();
    f.pane->showWarningSheetForString_key("Careful.", "Sets");
    f.button("dontShowAgain").on = true;
    f.pane->performAction("warningEnd:", f.button("warningOKButton"));
    CHECK_EQ(f.world.log.lines, std::vector<std::string>{"Warning for Sets is not implemented yet."});
    CHECK_EQ(f.stored("Don't Show Sets Sheet"), PropertyList(true));
}

TEST(WarningSheetFitsItsText) {
    PaneFixture f;
    f.open();
    f.sheet().setContentSize({300, 200});
    f.field("warningText").rect = {{20, 0}, {200, 17}};
    for (const char* name : {"warningOKButton", "warningCancelButton"}) f.button(name).rect = {{50, 0}, {80, 30}};
    f.button("dontShowAgain").rect = {{20, 0}, {150, 18}};
    f.pane->showWarningSheetForString_key(std::string(100, 'x'), "Log Stuff");
    // Six lines of ten points: 60 + 30 + 60 high in all; from the top 20, text, 20, buttons.
    CHECK_EQ(f.sheet().content.height, 150.0);
    CHECK_EQ(f.sheet().content.width, 300.0);
    CHECK(f.field("warningText").rect == Rect{{20, 70}, {200, 60}});
    CHECK(f.button("warningOKButton").rect == Rect{{50, 20}, {80, 30}});
    CHECK(f.button("dontShowAgain").rect == Rect{{20, 27}, {150, 18}});
}
