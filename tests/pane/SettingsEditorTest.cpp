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
        {"fap-id", {"/fap", "FontAgent", 0, "com.insidersoftware.fontagentpro.fontmanager"}},
        {"fap-name", {"/opt/FontAgent Pro.app", "FontAgent", 0, ""}},
        {"fex", {"/fex", "FontExplorer", 0, "com.linotype.FontExplorerX"}},
        {"fex-code", {"/fex", "FontExplorer", fourCharCode("LFEX"), ""}},
        {"fex-name", {"/opt/Linotype FontExplorer X.app", "FontExplorer", 0, ""}},
        {"suitcase", {"/opt/Suitcase Fusion.app", "Suitcase", 0, ""}},
        {"suitcase-code", {"/suitcase", "Suitcase", fourCharCode("SUIT"), ""}},
        {"suitcase-id", {"/suitcase", "Suitcase", 0, "com.extensis.SuitcaseFusion"}}};
    for (const auto& [master, installed, entrySettings, clicked, shown] : cells<5>("editor.txt")) {
        CONTEXT(master + "|" + installed + "|" + entrySettings + "|" + clicked);
        PaneFixture f;
        for (const auto& [name, item] : managers)
            if ((" " + installed + " ").find(" " + std::string(name) + " ") != std::string::npos)
                f.world.applications.items.push_back(item);
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
