#include "tests/pane/PaneFixture.h"

using namespace platform;

TEST(EachControlChangesItsOneKeyOfTheSelectedEntry) {
    REQUIRE(optionControls().size() == settings::options().size());
    for (const OptionControl& option : optionControls()) {
        CONTEXT(option.key);
        PaneFixture f;
        f.world.applications.items = {{"/fex", "FontExplorer", fourCharCode("LFEX"), ""}};
        f.setList("Global; Path A /a Enabled=yes Unknown=kept; Path B /b");
        f.open();
        f.table().selectRow(1);
        View& control = f.control(option);
        if (auto* button = control.asButton()) button->setState(!button->state());
        if (auto* field = control.asTextField()) field->setIntegerValue(42);
        if (auto* menu = control.asPopUpButton()) menu->selectItem(2);
        std::string value = control.asTextField() ? "42" : control.asPopUpButton() ? "2" : "";
        if (value.empty()) value = control.integerValue() ? "yes" : "no";
        f.pane->performAction("togglePerAppPrefs:", control);
        PropertyList changed = entry("Path A /a Unknown=kept " + option.key + "=" + value +
                                     (option.key == "Enabled" ? "" : " Enabled=yes"));
        CHECK_EQ(f.list(), (std::vector{entry("Global"), changed, entry("Path B /b")}));
        CHECK_EQ(f.world.takeJournal(), kOneChange);
    }
}

TEST(TheEditorShowsSettingsAndFollowsClicksAtOnce) {
    const std::pair<const char*, fake::Applications::Item> managers[] = {
        {"fap", {"/fap", "FontAgent", fourCharCode("FApM"), ""}},
        {"fex", {"/fex", "FontExplorer", kUnknownCreator, "com.linotype.FontExplorerX"}},
        {"suitcase", {"/opt/Suitcase Fusion.app", "Suitcase", kUnknownCreator, ""}}};
    for (const auto& [master, installed, entrySettings, clicked, shown] : cells<5>("editor.txt")) {
        CONTEXT(master + "|" + installed + "|" + entrySettings + "|" + clicked);
        PaneFixture f;
        for (const auto& [name, item] : managers)
            if (installed.find(name) != std::string::npos) f.world.applications.items.push_back(item);
        f.setStored("Disabled", master == "off");
        f.setList("Global Global - " + entrySettings);
        f.open();
        std::vector<PropertyList> before = f.list();
        std::istringstream keys(clicked);
        for (std::string key; keys >> key;) f.clickOption(key);
        CHECK_EQ(f.shownOptions(), shown);
        CHECK_EQ(f.button("logStuff").enabled, master == "on");
        if (clicked.empty()) CHECK_EQ(f.list(), before);  // showing stores nothing
        CHECK_EQ(f.world.applications.queries, 3);        // one for each manager, whatever is clicked
    }
}

TEST(WarningsFitTheirTextAndAreRememberedForAnyKey) {
    PaneFixture f;
    f.open();
    f.panel("warningSheet").setContentSize({300, 200});
    f.field("warningText").rect = {{20, 0}, {200, 17}};
    for (const char* name : {"warningOKButton", "warningCancelButton"}) f.button(name).rect = {{50, 0}, {80, 30}};
    f.button("dontShowAgain").rect = {{20, 0}, {150, 18}};
    f.pane->showWarningSheetForString_key(std::string(100, 'x'), "Sets");
    // Six lines of ten points: 60 + 30 + 60 high in all; from the top 20, text, 20, buttons.
    CHECK(f.panel("warningSheet").content == Size{300, 150});
    CHECK(f.field("warningText").rect == Rect{{20, 70}, {200, 60}});
    for (const char* name : {"warningOKButton", "warningCancelButton"})
        CHECK(f.button(name).rect == Rect{{50, 20}, {80, 30}});
    CHECK(f.button("dontShowAgain").rect == Rect{{20, 27}, {150, 18}});
    f.button("dontShowAgain").on = true;
    f.act("warningEnd:", "warningOKButton");
    CHECK_EQ(f.world.log.lines, std::vector<std::string>{"Warning for Sets is not implemented yet."});
    CHECK_EQ(f.stored("Don't Show Sets Sheet"), PropertyList(true));
}
