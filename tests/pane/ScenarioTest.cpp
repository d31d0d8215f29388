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

std::string withLineEnds(std::string text) {
    std::ranges::replace(text, '|', '\n');
    return text;
}

std::string stateOf(View& view) {
    if (auto* field = dynamic_cast<fake::TextField*>(&view))
        return field->text + (field->selectable ? " (selectable)" : "");
    if (auto* text = dynamic_cast<fake::TextView*>(&view)) {
        std::string shown = std::exchange(text->text, "");
        for (double place : std::exchange(text->visible, {})) shown += formatted(shown.empty() ? "%g" : " %g", {place});
        return shown;
    }
    if (auto* panel = dynamic_cast<fake::Panel*>(&view)) return panel->isOpen ? "open" : "closed";
    if (auto* tabs = dynamic_cast<fake::TabView*>(&view))
        return std::string(tabs->tint == ControlTint::Clear ? "clear" : "tinted") +
               (std::exchange(tabs->needsDisplay, false) ? " anew" : "");
    if (auto* box = view.asButton())
        return std::string(box->state() ? "on" : "off") + (box->isEnabled() ? "" : " unusable");
    auto* table = dynamic_cast<fake::TableView*>(&view);
    return std::to_string(view.selectedRow()) + (table && !table->takesFiles ? " (no drops)" : "");
}

struct Scenario : PaneFixture {
    void put(const std::string& name, const std::string& text) {
        View& view = interface->object(name);
        if (auto* field = view.asTextField()) field->setStringValue(text);
        if (auto* menu = view.asPopUpButton()) menu->selectItem(std::stoi(text));
        if (auto* box = view.asButton()) box->setState(text == "on");
    }
    // Of a panel the size of what is in it.
    void frame(View& view, const std::string& numbers) {
        std::istringstream in(numbers);
        Rect frame;
        if (!view.asPanel()) in >> frame.origin.x >> frame.origin.y;
        in >> frame.size.width >> frame.size.height;
        view.asPanel() ? view.asPanel()->setContentSize(frame.size) : view.setFrame(frame);
    }
    static std::string frameOf(View& view) {
        const auto [origin, size] = view.frame();
        return formatted(view.asPanel() ? "%3$g %4$g" : "%g %g %g %g", {origin.x, origin.y, size.width, size.height});
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
    std::string said() {
        const ActionMessage message = world.host.said;
        if (message.buttonTitle.empty()) world.host.said = {};
        return message.text + (message.buttonTitle.empty() ? "" : " [" + message.buttonTitle + "]");
    }
    std::optional<ControlMark>& markOn(const OptionControl& option) {
        View& shown = control(option);
        if (auto* field = dynamic_cast<fake::TextField*>(&shown)) return field->mark;
        if (auto* menu = dynamic_cast<fake::PopUpButton*>(&shown)) return menu->mark;
        return dynamic_cast<fake::Button&>(shown).mark;
    }
    std::string marked() {
        std::string text;
        for (const OptionControl& option : optionControls())
            if (auto mark = markOn(option)) text += (text.empty() ? "" : "|") + option.key + ": " + mark->description;
        return text;
    }
    // The rows that are seen then, and what stands where none is.
    void find(const std::string& typed, const std::string& expected) {
        field("listSearch").text = typed == "-" ? "" : typed;
        act("searchEntries:", "listSearch");
        auto rows = pane->tableView_shownRows(table());
        std::string text = rows ? "" : "all";
        if (rows)
            for (int row : *rows) text += (text.empty() ? "" : " ") + std::to_string(row);
        CHECK_EQ(text.empty() ? table().placeholder : text, expected);
    }
    std::string tagsOfRow(int row) {
        std::string text;
        CellValue cell = pane->tableView_objectValueForTableColumn_row(table(), "name", row);
        for (const std::string& tag : cell.marks) text += (text.empty() ? "" : "|") + tag;
        return text + (pane->tableView_objectValueForTableColumn_row(table(), "13", row).isPale ? " (pale)" : "");
    }
    std::string detailsOfRow(int row) {
        std::string text;
        for (const std::string& line : pane->tableView_detailsOfRow(table(), row))
            text += (text.empty() ? "" : "|") + line;
        return text;
    }
    std::string offered() {
        std::string text = world.toolkit.import.note;
        for (const auto& [group, name, difference] : world.toolkit.import.rows)
            text += (text.empty() ? "" : "|") + std::string(1, "+~=-"[int(group)]) + name +
                    (difference.empty() ? "" : " (" + difference + ")");
        return text;
    }
    // "replace", "merge" and the rows of which theirs are taken, or "-".
    void decide(const std::string& words) {
        std::istringstream in(words);
        std::string way;
        in >> way;
        ImportAnswer answer{way == "replace", std::vector<bool>(world.toolkit.import.rows.size())};
        for (std::size_t row = 0; in >> row;) answer.takesTheirs[row] = true;
        world.toolkit.importDidEnd(way == "-" ? std::nullopt : std::optional(answer));
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
            {"system",
             [&] {
                 world.system.known = {{fake::System::kVersion, std::stoul(all, nullptr, 16)}};
             }},
            {"nowhere", [&] { world.system.known.clear(); }},
            {"resource", [&] { world.paneBundle.resources.insert(all); }},
            {"application",
             [&] {
                 world.applications.items.push_back({first, rest, kUnknownCreator, "com.apple." + rest});
             }},
            {"module", [&] { world.files.existing = {all}; }},
            {"called",
             [&] {
                 world.paneBundle.info = PropertyList::dictionary({{"CFBundleName", all}});
             }},
            {"open", [&] { open(); }},
            {"gone", [&] { pane.reset(); }},
            {"keys", [&] { world.toolkit.keyModifiers = static_cast<std::uint32_t>(std::stoul(all, nullptr, 16)); }},
            {"warn", [&] { pane->showWarningSheetForString_key(rest, first); }},
            {"escape", [&] { panel(all).endSheet(0); }},
            {"scrolled", [&] { CHECK_EQ(std::to_string(table().visible), all); }},
            {"choose", [&] { world.toolkit.endOpenPanel({rest}, std::stoi(first)); }},
            {"asked",
             [&] {
                 const OpenPanelRequest& r = world.toolkit.request;
                 CHECK_EQ(r.title + "|" + r.prompt + "|" + r.folder + "|" + r.allowedTypes.at(0), all);
                 CHECK(r.allowsMultipleSelection && r.canChooseFiles && !r.canChooseFolders);
             }},
            {"icon", [&] { std::istringstream(all) >> world.toolkit.iconSize.width >> world.toolkit.iconSize.height; }},
            {"badged",
             [&] {
                 auto icon = pane->overlayIcon_withProductIcon(world.toolkit.icon, first == "-" ? "" : first);
                 CHECK_EQ(fake::imageName(icon), rest);
             }},
            {"unaliased", [&] { world.bundles.onDisk.clear(); }},
            {"aliased", [&] { world.installAliasFramework(), pane->numberOfRowsInTableView(table()); }},
            {"at",
             [&] {
                 int row = std::stoi(first);
                 CHECK_EQ(pane->nameForIndex(row) + " " + pane->pathForIndex(row).value_or("-"), rest);
             }},
            {"fonts", [&] { CHECK_EQ(pane->fontSettingsForRow(std::stoi(first)).description(), rest); }},
            {"rows", [&] { CHECK_EQ(std::to_string(table().numberOfRows()), all); }},
            {"frame", [&] { frame(interface->object(first), rest); }},
            {"framed", [&] { CHECK_EQ(frameOf(interface->object(first)), rest); }},
            {"leaving", [&] { CHECK_EQ(pane->shouldUnselect() == UnselectReply::Now ? "now" : "later", all); }},
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
            {"said", [&] { CHECK_EQ(said(), all); }},
            {"offer", [&] { std::exchange(world.host.said, {}).perform(); }},
            {"marked", [&] { CHECK_EQ(marked(), all); }},
            {"mark", [&] { markOn(*std::ranges::find(optionControls(), all, &OptionControl::key))->perform(); }},
            {"find", [&] { find(first, rest); }},
            {"tagged", [&] { CHECK_EQ(tagsOfRow(std::stoi(first)), rest); }},
            {"tip", [&] { CHECK_EQ(field(first).toolTip, rest.empty() ? "" : withLineEnds(rest)); }},
            {"details", [&] { CHECK_EQ(detailsOfRow(std::stoi(first)), rest); }},
            {"explained",
             [&] {
                 CHECK_EQ(world.host.explained.text, all);
                 world.host.explained.text = {};
             }},
            {"help", [&] { world.host.explained.perform(); }},
            {"closed", [&] { world.host.closed(); }},
            {"forget",
             [&] {
                 const char* key = "Hide What Works Without Module";
                 world.preferences.store(key, false, "com.tarnwick.typeslate.Settings");
             }},
            {"unreadable", [&] { world.expressions.available = false; }},
            {"clipboard", [&] { world.toolkit.copied = all; }},
            {"holds", [&] { world.documents.files[first] = entrylist::exchangeDocument(entries(rest)); }},
            {"stray", [&] { world.documents.files[first] = rest; }},
            {"written",
             [&] { CHECK_EQ(mutableArray(world.documents.files[first][entrylist::kEntriesKey]), entries(rest)); }},
            {"answer", [&] { world.toolkit.choice = std::stoi(first), world.toolkit.savePath = rest; }},
            {"offered", [&] { CHECK_EQ(offered(), all); }},
            {"decide", [&] { decide(all); }},
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
