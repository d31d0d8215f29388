// The update checker and its controls in a world of fakes: scripts of what is done to them and what is seen then.
//
// Below a command stands all that it brings about: what is done to the platform, in its order, what is logged, and what
// has another value than before. At first there is a module that has an updater.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdaterLaunch.h"
#include "TarnwickUpdater/PrefPane Stuff/TWVCUpdateViewController/TWVCUpdateViewController.h"
#include "tests/support/FakeControls.h"
#include "tests/support/Script.h"
#include "tests/updater/UpdaterFixture.h"

#include <cstring>

using namespace platform;
using Controller = TWVCUpdateViewController_V100;

namespace {

struct Stage : UpdaterFixture {
    Stage() {
        world.toolkit.fillInterface = [this](std::string_view name, InterfaceOwner& owner) {
            CHECK_EQ(name, "UpdaterView");
            controls.emplace(owner);
            view().rect = {{0, 0}, {300.4, 200.4}};
            view().window = &updaterWindow;
            control<fake::TextField>("lastStatus").text = "%@ | %@";
            control<fake::Button>("checkNow").titleText = "Check Now";
            control<fake::ProgressIndicator>("progessBar").hidden = true;
            menu().tags = {1, 2, 86400, 0, 604800, 1209600, 2592000};
            menu().titles.resize(7);
            seen = values();
        };
        placeholder.rect = {{10, 20}, {101, 50}};
        seen = values();
    }
    template <typename T>
    T& control(const char* name) {
        return controls->get<T>(name);
    }
    fake::Button& button() { return control<fake::Button>("checkNow"); }
    fake::PopUpButton& menu() { return control<fake::PopUpButton>("frequencyPopup"); }
    fake::Control<View>& view() { return control<fake::Control<View>>("updaterView"); }
    void open(const std::string& how) {
        View* replaced = how == "without-view" ? nullptr : &placeholder;
        if (how == "from-button") replaced = &placeholderButton;
        const bool isForModule = how == "for-module";
        controller = Controller::initWithSacrificialView_forBundle_withBundleID(
            platform, replaced, isForModule ? world.bundles.openBundle(kModule) : nullptr,
            isForModule || how == "for-nobody" ? std::nullopt : std::optional<std::string>(kDomain));
        if (!controller) world.journal.emplace_back("there are no controls");
    }
    void store(Words& w) {
        const std::string key = w.next();
        const PropertyList value = w.value(world.runLoop.now());
        world.preferences.setValue(key, value, w.next(kDomain));
        world.takeJournal();
        seen = values();
    }
    void put(Words& w) {
        const int count = w.number();
        const std::string folder = w.next(), name = w.next(), identifier = w.next();
        for (int i = 0; i < count; ++i) {
            FolderEntry& entry = addBundle(folder, name + (i ? std::to_string(i) : ""), identifier);
            if (name.ends_with(".txt")) entry.kind = ItemKind::RegularFile;
            entry.isInvisible = name.starts_with('.');
        }
    }
    void setInfo(Words& w) {
        const std::string key = w.next();
        MutableDictionary changed(module().info);
        changed.set(key, w.value());
        module().info = std::move(changed).freeze();
    }
    void lose(const std::string& what) {
        if (what == "updater") module().resources.clear();
        if (what == "folders") world.files.folders.clear();
        if (what == "module") world.bundles.onDisk.erase(kModule);
        if (what == "interface") world.toolkit.fillInterface = nullptr;
        if (what == "versions") world.system.known.clear();
        if (what == "identifier") module().identifierText.clear();
    }
    void fail(Words& w) {
        const std::string call = w.next();
        world.launcher.statuses[call] = w.number();
    }
    void addProcess(Words& w) {
        const std::string path = w.next(), identifier = w.next();
        world.processes.items.push_back({path, identifier, w.value(world.runLoop.now()).dateValue()});
    }
    void launch(bool isCheck, Words& w) {
        FSRef launched;
        const auto bundle = world.bundles.openBundle(kModule);
        const OSStatus status = isCheck ? check(w.next() == "module", &launched)
                                        : twvc::runUpdater(services, bundle.get(), w.next(kDomain), &launched);
        world.journal.push_back("= " + std::to_string(status) +
                                (launched.path.empty() ? "" : " launched " + launched.path));
    }
    void know(Words& w) {
        FourCharCode selector = 0;
        for (char c : w.next()) selector = selector << 8 | static_cast<unsigned char>(c);
        world.system.known[selector] = static_cast<std::uint32_t>(w.value().integerValue());
    }
    void find() {
        const auto found = Controller::findPlinth(services, kDomain);
        world.journal.push_back(found ? found->path() : "nothing");
    }
    void choose(Words& w) {
        menu().row = w.number();
        seen["frequency"] = std::to_string(menu().row);
        controller->performAction("changeFrequency:", menu());
    }
    void tick(Words& w) {
        auto& box = control<fake::Button>("checkUpdatesButton");
        box.on = w.value().boolValue();
        controller->performAction("changeAutoUpdate:", box);
    }
    void deliver(Words& w) {
        const std::string name = "com.tarnwick.updater." + w.next();
        const PropertyList date = w.value(world.runLoop.now()), status = w.value();
        const auto info = PropertyList::dictionary({{"Date", date}, {"Status", status}});
        world.notifications.deliver({name, w.next(kDomain), status.stringValue() == "text only" ? status : info});
    }
    void perform(const std::string& what, Words& w) {
        if (what == "store") return store(w);
        if (what == "info") return setInfo(w);
        if (what == "put") return put(w);
        if (what == "without") return lose(w.next());
        if (what == "with-statement") return void(world.paneBundle.resources.insert("SUPrivacyStatement.rtfd"));
        if (what == "fails") return fail(w);
        if (what == "process") return addProcess(w);
        if (what == "knows") return know(w);
        if (what == "version") return world.journal.push_back(formatted("0x%X", {twvc::systemVersion(services)}));
        if (what == "verbose") return void(twvc::gLogStuff = true);
        if (what == "wait") return world.runLoop.advance(w.value().realValue());
        if (what == "check" || what == "launch") return launch(what == "check", w);
        if (what == "find") return find();
        if (what == "open") return open(w.next());
        if (what == "click-placeholder") return placeholderButton.click();
        if (what == "act") return controller->performAction(w.next(), button());
        if (what == "choose") return choose(w);
        if (what == "tick") return tick(w);
        if (what == "says") return deliver(w);
        if (what == "move-into-sheet") return void(button().window = &updaterWindow);
        if (what == "spoil-statement") return void(control<fake::TextView>("privacyText").isReadable = false);
        if (what == "close-statement") return controller->windowWillClose();
        if (what == "end") return controller.reset();
        check::fail(__FILE__, __LINE__, "no such command: " + what);
    }

    std::map<std::string, std::string> values() {
        std::map<std::string, std::string> all{{"placeholder's action", placeholderButton.selector}};
        PropertyList stored = world.preferences.copyDomain(kDomain);
        for (const auto& [key, value] : stored.entries()) all[std::string(key.stringValue())] = check::show(value);
        if (!controls) return all;
        auto& bar = control<fake::ProgressIndicator>("progessBar");
        auto& status = control<fake::TextField>("lastStatus");
        auto& statement = control<fake::Panel>("privacyWindow");
        all["button"] = formatted("%@, %d%s", {button().titleText, button().tagValue, button().enabled ? "" : ", off"});
        all["bar"] = formatted("%s%s%s", {bar.hidden ? "hidden" : "shown", bar.moving ? ", moving" : "",
                                          bar.indeterminate ? ", endless" : ""});
        all["status"] = status.text + (status.displays ? ", at once" : "");
        all["tool tip"] = status.toolTip;
        all["automatic"] = check::show(control<fake::Button>("checkUpdatesButton").on);
        all["frequency"] = std::to_string(menu().row);
        all["statement"] = control<fake::TextView>("privacyText").text;
        all["statement's window"] = statement.isModal ? "modal" : statement.isOpen ? "sheet" : "away";
        all["controls' window"] = updaterWindow.isOpen ? "sheet" : "away";
        const auto& [origin, size] = view().rect;
        if (placeholder.replacement == &view())
            all["place"] = formatted("(%g, %g), (%g, %g)", {origin.x, origin.y, size.width, size.height});
        return all;
    }
    std::string news() {
        std::string text;
        for (const std::string& line : world.takeJournal()) text += line + "\n";
        for (const std::string& line : takeLog()) text += "log: " + line + "\n";
        for (std::size_t at; (at = text.find(kModule)) != text.npos;) text.replace(at, std::strlen(kModule), "MODULE");
        return text + check::changes(seen, values());
    }

    fake::Control<View> placeholder;
    fake::Button placeholderButton;
    fake::Panel updaterWindow;
    std::optional<fake::Interface> controls;
    std::unique_ptr<Controller> controller;
    std::map<std::string, std::string> seen;
};

}  // namespace

TEST(ChecksAndLaunches) { check::play<Stage>(TEST_DATA "/checks.txt"); }
TEST(Controls) { check::play<Stage>(TEST_DATA "/controls.txt"); }
