// Plays scenarios.txt, whose head says what the words mean.
#include "tests/pane/PaneFixture.h"

#include <map>

using namespace platform;

namespace {

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
    return parts;
}

// The first word, and what comes after the blank behind it.
std::pair<std::string, std::string> cut(const std::string& text) {
    std::size_t end = std::min(text.find(' '), text.size());
    return {text.substr(0, end), text.substr(std::min(end + 1, text.size()))};
}

std::string stateOf(View& view) {
    if (auto* field = dynamic_cast<fake::TextField*>(&view)) return field->text;
    if (auto* panel = dynamic_cast<fake::Panel*>(&view)) return panel->isOpen ? "open" : "closed";
    if (auto* tabs = dynamic_cast<fake::TabView*>(&view))
        return std::string(tabs->tint == ControlTint::Clear ? "clear" : "tinted") +
               (std::exchange(tabs->needsDisplay, false) ? " anew" : "");
    if (auto* box = view.asButton())
        return std::string(box->state() ? "on" : "off") + (box->isEnabled() ? "" : " unusable");
    return std::to_string(view.selectedRow());
}

struct Scenario : PaneFixture {
    void put(const std::string& name, const std::string& text) {
        View& view = interface->object(name);
        if (auto* field = view.asTextField()) field->setStringValue(text);
        if (auto* menu = view.asPopUpButton()) menu->selectItem(std::stoi(text));
        if (auto* box = view.asButton()) box->setState(text == "on");
    }
    void tag(const std::string& name, const std::string& number) {
        button(name).tagValue = std::stoi(number);
        button(name).titleText = name;
    }
    void checkLog(const std::string& expected) {
        std::vector<std::string> lines = std::exchange(world.log.lines, {});
        for (std::string& line : lines) line = line.substr(0, line.find(" (0x"));
        CHECK_EQ(lines, split(expected, '|'));
    }
    void play(const std::string& line) {
        std::string verb, all, first, rest;
        std::tie(verb, all) = cut(line);
        std::tie(first, rest) = cut(all);
        const std::map<std::string, std::function<void()>> verbs = {
            {"list", [&] { setList(all); }},
            {"meanwhile", [&] { world.preferences.duringSynchronize = [this, all] { play(all); }; }},
            {"disabled", [&] { setStored("Disabled", valueOfWord(all)); }},
            {"logging", [&] { setStored("Log Stuff", valueOfWord(all)); }},
            {"quiet", [&] { setStored("Don't Show Log Stuff Sheet", valueOfWord(all)); }},
            {"runtime", [&] { world.loadRuntime(); }},
            {"system", [&] { world.system.known[fake::System::kVersion] = std::stoul(all, nullptr, 16); }},
            {"resource", [&] { world.paneBundle.resources.insert(all); }},
            {"application",
             [&] {
                 world.applications.items.push_back({first, rest, 1, "com.apple." + rest});
             }},
            {"module", [&] { world.files.existing = {all}; }},
            {"open", [&] { open(); }},
            {"show", [&] { pane->willSelect(); }},
            {"leave", [&] { pane->willUnselect(); }},
            {"select", [&] { table().selectRow(std::stoi(all)); }},
            {"unselect", [&] { table().selected = -1; }},
            {"full", [&] { world.preferences.fails = all == "yes"; }},
            {"announced",
             [&] {
                 world.notifications.deliver({"com.tarnwick.typeslate", "PrefsChanged", {}});
             }},
            {"activate", [&] { pane->hostDidBecomeActive(); }},
            {"typing", [&] { field(all).edited = true; }},
            {"reload", [&] { table().reloadData(); }},
            {"put", [&] { put(first, rest); }},
            {"tag", [&] { tag(first, rest); }},
            {"do", [&] { act(first, rest); }},
            {"click", [&] { clickOption(all); }},
            {"wait", [&] { world.runLoop.advance(std::stod(all)); }},
            {"see", [&] { CHECK_EQ(stateOf(interface->object(first)), rest); }},
            {"listed", [&] { CHECK_EQ(list(), entries(all)); }},
            {"stored", [&] { CHECK_EQ(stored(rest), valueOfWord(first)); }},
            {"nothing", [&] { CHECK(!stored(all)); }},
            {"opened", [&] { CHECK_EQ(world.applications.opened, split(all, '|')); }},
            {"journal", [&] { CHECK_EQ(world.takeJournal(), all == "change" ? kOneChange : split(all, '|')); }},
            {"logged", [&] { checkLog(all); }},
        };
        REQUIRE(verbs.contains(verb));
        verbs.at(verb)();
    }
};

}  // namespace

TEST(Scenarios) {
    std::optional<Scenario> played;
    std::string title;
    std::ifstream file(SOURCE_ROOT "/tests/pane/scenarios.txt");
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.starts_with('#')) continue;
        if (line.starts_with("== ")) {
            title = line;
            played.emplace();
            played->world.paneBundle.strings = {{"Log Warning", "Logs go to %@."}, {"RegEx Help", "%@ matches."}};
            continue;
        }
        CONTEXT(title + ": " + line);
        played->play(line);
    }
    CHECK(played);
}
