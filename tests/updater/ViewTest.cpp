// The update controls in a world of fakes.
#include "TarnwickUpdater/PrefPane Stuff/TWVCUpdateViewController/TWVCUpdateViewController.h"
#include "propertylist/Date.h"
#include "tests/support/FakeControls.h"
#include "tests/updater/UpdaterFixture.h"

#include <algorithm>
#include <limits>

using namespace platform;
using Controller = TWVCUpdateViewController_V100;

namespace {

// What a started check and a user's cancel leave in the journal, as far as other processes see it.
const fake::Journal kLaunch = {"lock /tmp/com.tarnwick.typeslate.updater.lock",
                               std::string("launch ") + kUpdater + " with " + kModule, "unlock"};
const std::string kCancelPost = "post com.tarnwick.updater.CancelUpdate com.tarnwick.typeslate at once";

struct ViewFixture : UpdaterFixture {
    fake::Control<View> placeholder;
    fake::Panel updaterWindow;
    std::optional<fake::Interface> controls;
    std::unique_ptr<Controller> controller;

    ViewFixture() {
        placeholder.rect = {{10, 20}, {101, 50}};
        world.toolkit.fillInterface = [this](std::string_view name, InterfaceOwner& owner) {
            CHECK_EQ(name, "UpdaterView");
            controls.emplace(owner);
            updaterView().rect = {{0, 0}, {300.4, 200.4}};
            updaterView().window = &updaterWindow;
            status().text = "%@ | %@";
            button().titleText = "Check Now";
            bar().hidden = true;
            popUp().tags = {0, 86400, 604800, 1209600, 2592000};
            popUp().titles.resize(5);
            automatic(), controls->get<fake::TextView>("privacyText"), privacyWindow();
        };
    }
    fake::Control<View>& updaterView() { return controls->get<fake::Control<View>>("updaterView"); }
    fake::TextField& status() { return controls->get<fake::TextField>("lastStatus"); }
    fake::Button& button() { return controls->button("checkNow"); }
    fake::Button& automatic() { return controls->button("checkUpdatesButton"); }
    fake::PopUpButton& popUp() { return controls->get<fake::PopUpButton>("frequencyPopup"); }
    fake::ProgressIndicator& bar() { return controls->get<fake::ProgressIndicator>("progessBar"); }
    fake::TextView& privacyText() { return controls->get<fake::TextView>("privacyText"); }
    fake::Panel& privacyWindow() { return controls->get<fake::Panel>("privacyWindow"); }

    bool open(View* view) {
        controller = Controller::initWithSacrificialView_forBundle_withBundleID(platform, view, nullptr, kDomain);
        return controller != nullptr;
    }
    void openChecked() {  // with a check an hour ago, so that none is due
        setStored("SULastCheckDate", dateByAdding(world.runLoop.now(), -3600));
        setStored("SULastCheckStatus", "Fine.");
        REQUIRE(open(&placeholder));
        world.takeJournal();
    }
    void press() { controller->performAction("checkNow:", button()); }
    void say(std::string_view what, const PropertyList& info, std::string_view object = kDomain) {
        world.notifications.deliver({"com.tarnwick.updater." + std::string(what), std::string(object), info});
    }
    void checkIdle() {
        CHECK_EQ(button().titleText, "Check Now");
        CHECK_EQ(button().tagValue, 0);
        CHECK(button().enabled && bar().hidden && !bar().moving);
    }
    void checkChecking() {
        CHECK_EQ(button().titleText, "Cancel");
        CHECK_EQ(button().tagValue, 1);
        CHECK(button().enabled && !bar().hidden && bar().moving && bar().indeterminate);
    }
    // Of the journal since the last call, without what only this process sees.
    fake::Journal seen() {
        fake::Journal journal = world.takeJournal();
        std::erase_if(journal, [](const std::string& line) { return line.starts_with("s"); });
        return journal;
    }
};

}  // namespace

TEST(ADueCheckWaitsForTheUserThenFollowsTheUpdater) {
    ViewFixture f;
    REQUIRE(f.open(&f.placeholder));
    CHECK(f.placeholder.replacement == &f.updaterView());
    CHECK(f.updaterView().rect == Rect{{-90, -55}, {300, 200}});
    f.checkChecking();
    CHECK_EQ(f.status().text, "2001-09-09T01:46:40.000000Z (1/1) | Checking...");
    f.world.runLoop.advance(9.99);
    CHECK_EQ(f.seen(), fake::Journal{});
    f.world.runLoop.advance(0.01);
    CHECK_EQ(f.seen(), kLaunch);
    CHECK_EQ(f.stored("SULastCheckDate"), PropertyList(f.world.runLoop.now()));
    f.checkChecking();

    f.say("statuschange", PropertyList::dictionary({{"Date", Date{}}, {"Status", "Asking"}}));
    CHECK_EQ(f.status().text, "1970-01-01T00:00:00.000000Z (1/1) | Asking");
    CHECK_EQ(f.status().toolTip, "1970-01-01T00:00:00.000000Z (4/4) | Asking");
    CHECK_EQ(f.status().displays, 1);
    f.setStored("SULastCheckStatus", "Up to date.");
    f.say("UpdateCheckCompleted", {});
    f.checkIdle();
    CHECK_EQ(f.status().text, "2001-09-09T01:46:50.000000Z (1/1) | Up to date.");
}

TEST(CancelWithinTheReactionTimeLaunchesNothing) {
    ViewFixture f;
    REQUIRE(f.open(&f.placeholder));
    f.world.runLoop.advance(9.5);
    f.press();
    CHECK_EQ(f.seen(), fake::Journal{kCancelPost});
    CHECK(!f.button().enabled);
    f.world.runLoop.advance(1.9);
    CHECK(!f.button().enabled);
    f.world.runLoop.advance(0.1);
    f.checkIdle();
    f.world.runLoop.advance(100);
    CHECK_EQ(f.seen(), fake::Journal{});
    CHECK_EQ(f.stored("SULastCheckDate"), PropertyList());
}

TEST(CheckNowBecomesCancelAndBack) {
    ViewFixture f;
    f.openChecked();
    f.checkIdle();
    CHECK_EQ(f.status().text, "2001-09-09T00:46:40.000000Z (1/1) | Fine.");
    CHECK_EQ(f.status().toolTip, f.status().text);
    f.press();
    CHECK_EQ(f.seen(), kLaunch);
    f.checkChecking();
    f.press();
    CHECK_EQ(f.seen(), fake::Journal{kCancelPost});
    f.say("UpdateCheckCompleted", {});  // the updater is quicker than the reset
    f.checkIdle();
    f.press();
    f.world.runLoop.advance(60);  // the reset of the cancelled check must not end this one; the updater hangs
    f.checkChecking();
}

TEST(AFailureIsToldAndTheButtonStaysUsable) {
    ViewFixture f;
    f.openChecked();
    f.world.launcher.createStatus = kDuplicateFile;
    f.press();
    CHECK_EQ(f.status().text,
             "2001-09-09T01:46:40.000000Z (1/1) | Failed. Error -48. A file of this name exists already");
    CHECK(f.status().toolTip.starts_with("2001-09-09T01:46:40.000000Z (4/4) | Failed."));
    CHECK(f.button().enabled && f.button().tagValue == 0 && f.bar().moving);
    CHECK_EQ(f.stored("SULastCheckDate"), PropertyList(dateByAdding(f.world.runLoop.now(), -3600)));
    f.world.bundles.onDisk.clear();  // the module is gone
    f.press();
    CHECK(f.status().text.ends_with("Failed. Error -50. Bad parameter"));
}

TEST(NotificationsOfWrongFormOrForOthersChangeNothing) {
    ViewFixture f;
    f.openChecked();
    f.press();
    std::string text = f.status().text;
    const Date now = f.world.runLoop.now();
    auto said = [](const PropertyList& date, const PropertyList& status) {
        return PropertyList::dictionary({{"Date", date}, {"Status", status}});
    };
    for (const PropertyList& info : {PropertyList(), PropertyList("text"), PropertyList::array({now, "Status"}),
                                     said(5, "x"), said(now, 5), said(now, {}), said({}, "x")})
        f.say("statuschange", info);
    f.say("statuschange", said(now, "x"), "com.tarnwick.other");
    f.say("UpdateCheckCompleted", {}, "com.tarnwick.other");
    CHECK_EQ(f.status().text, text);
    f.checkChecking();
    f.say("statuschange", said(now, "%@ %s %n"));
    CHECK(f.status().text.ends_with("| %@ %s %n"));
    f.controller.reset();
    f.say("UpdateCheckCompleted", {});  // nobody is there
}

TEST(StoredSchedulesOfEveryKind) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity(),
                     kNaN = std::numeric_limits<double>::quiet_NaN();
    const Date now = fake::World().runLoop.now();
    auto ago = [now](double seconds) { return dateByAdding(now, -seconds); };
    struct Case {
        const char* label;
        PropertyList on, interval, last;
        bool isOn, isDue;
        int item;
        PropertyList storedOn, storedInterval;
    };
    const Case cases[] = {
        {"nothing", {}, {}, {}, true, true, 2, true, 604800.0},
        {"wrong types", PropertyList::array({}), "60", "yesterday", true, true, 2, true, 604800.0},
        {"off", false, 86400, {}, false, false, 1, false, 86400},
        {"not yet", true, 86400.9, ago(86400), true, false, 1, true, 86400.9},
        {"odd interval", true, 1209599.9, ago(60), true, false, 2, true, 1209599.9},
        {"shorter than any item", "yes", 3600, ago(60), true, false, 0, "yes", 3600},
        {"too short", true, 0.5, ago(604800), true, false, 2, true, 0.5},
        {"zero", true, 0, ago(604801), true, true, 2, true, 0},
        {"negative", true, -5, ago(60), true, false, 2, true, -5},
        {"not a number", true, kNaN, ago(1e9), true, false, 0, true, kNaN},
        {"infinite", true, kInfinity, Date{INT64_MIN}, true, false, 4, true, kInfinity},
        {"far future", true, 86400, Date{INT64_MAX}, true, false, 1, true, 86400},
        {"far past", true, 2592000, Date{INT64_MIN}, true, true, 4, true, 2592000},
    };
    for (const Case& c : cases) {
        CONTEXT(c.label);
        ViewFixture f;
        f.setStored("SUCheckForUpdates", c.on);
        f.setStored("SUCheckInterval", c.interval);
        f.setStored("SULastCheckDate", c.last);
        REQUIRE(f.open(&f.placeholder));
        CHECK_EQ(f.automatic().on, c.isOn);
        CHECK_EQ(f.button().tagValue == 1, c.isDue);
        CHECK_EQ(f.popUp().row, c.item);
        CHECK_EQ(f.stored("SUCheckForUpdates"), c.storedOn);
        CHECK_EQ(f.stored("SUCheckInterval"), c.storedInterval);
        bool hasWritten = !(c.storedOn == c.on && c.storedInterval == c.interval);
        CHECK_EQ(std::ranges::count(f.world.journal, "synchronize"), hasWritten ? 2 : 1);
    }
    ViewFixture f;
    f.module().info = PropertyList::dictionary({{"CFBundleExecutable", "ts"}, {"CFBundleShortVersionString", "2fc1"}});
    REQUIRE(f.open(&f.placeholder));
    CHECK_EQ(f.stored("SUCheckInterval"), PropertyList(86400.0));
    CHECK_EQ(f.takeLog(), std::vector<std::string>{
                              "[ts] Because the version stirng of \"2fc1\" contains an indicator it is a beta release, "
                              "we are defaulting to checking for updates daily."});
}

TEST(TheUsersChoicesAreStoredAtOnce) {
    ViewFixture f;
    f.openChecked();
    f.popUp().row = 3;
    f.controller->performAction("changeFrequency:", f.popUp());
    CHECK_EQ(f.stored("SUCheckInterval"), PropertyList(1209600));
    f.popUp().row = 0;  // an item without seconds
    f.controller->performAction("changeFrequency:", f.popUp());
    CHECK_EQ(f.stored("SUCheckInterval"), PropertyList(1209600));
    f.automatic().on = false;
    f.controller->performAction("changeAutoUpdate:", f.automatic());
    CHECK_EQ(f.stored("SUCheckForUpdates"), PropertyList(false));
    CHECK_EQ(f.world.takeJournal(),
             fake::Journal{"set SUCheckInterval", "synchronize", "set SUCheckForUpdates", "synchronize"});
}

TEST(APrivacyStatementThatIsMissingOrUnreadable) {
    ViewFixture f;
    f.openChecked();
    f.controller->performAction("privacyPolicy:", f.button());
    CHECK_EQ(f.takeLog(), std::vector<std::string>{"Cannot find path for SUPrivacyStatement.rtfd"});
    CHECK_EQ(f.seen(), fake::Journal{"beep"});
    f.world.paneBundle.resources.insert("SUPrivacyStatement.rtfd");
    f.privacyText().isReadable = false;
    f.controller->performAction("privacyPolicy:", f.button());
    CHECK_EQ(f.privacyText().text, "Cannot load /Pane.prefPane/SUPrivacyStatement.rtfd");
    CHECK(f.privacyWindow().isOpen && !f.privacyWindow().isModal);
}

TEST(WhatKeepsTheControlsAway) {
    ViewFixture f;
    CHECK(!f.open(nullptr));
    CHECK(!Controller::initWithSacrificialView_forBundle_withBundleID(f.platform, &f.placeholder, nullptr, {}));
    f.world.toolkit.fillInterface = nullptr;
    CHECK(!f.open(&f.placeholder));
    f.world.bundles.onDisk.clear();
    CHECK(!f.open(&f.placeholder));
    CHECK_EQ(f.takeLog(),
             std::vector<std::string>{
                 "Cannot find nib named \"UpdaterView\".", std::string("This bundle has no ID! ") + kModule,
                 "Cannot match up Plinth Bundle ((null)) and Plinth Bundle Identifier (com.tarnwick.typeslate)"});
}

TEST(ModulesAreFoundByIdentifierInTheOrderOfFolders) {
    UpdaterFixture f;
    f.world.files.folders.clear();
    f.world.bundles.onDisk.clear();
    auto add = [&f](const std::string& folder, const std::string& name, const char* identifier,
                    ItemKind kind = ItemKind::Folder) {
        FolderEntry entry;
        entry.name = name;
        entry.kind = kind;
        entry.isInvisible = name.starts_with('.');
        f.world.files.folders[folder].push_back(entry);
        fake::Bundle& bundle = f.world.bundles.onDisk[folder + "/" + name];
        bundle.pathText = folder + "/" + name;
        bundle.identifierText = identifier;
    };
    auto found = [&f] {
        auto bundle = Controller::findPlinth(f.services, kDomain);
        return bundle ? bundle->path() : "";
    };
    for (int i = 0; i < 100; ++i) add("/Library/Plinthworks", "Other" + std::to_string(i), "other");
    CHECK_EQ(found(), "");
    const std::string kFolders[] = {"/Library/Plinthworks (Disabled)", "/home/user/Library/Plinthworks (Disabled)",
                                    "/Library/Plinthworks", "/home/user/Library/Plinthworks"};
    for (const std::string& folder : kFolders) {
        add(folder, ".hidden", kDomain);
        add(folder, "file", kDomain, ItemKind::RegularFile);
        add(folder, "Found", "COM.Tarnwick.TypeSlate");
        add(folder, "Later", kDomain);
        CHECK_EQ(found(), folder + "/Found");
    }
}
