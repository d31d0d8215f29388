// Several processes change the list of entries and the login items at once, some of them killed on the way, while the
// settings window opens, stays for a while and is killed: what each was told is done must be there in the end, once and
// whole. TYPESLATE_LONG_TESTS=1 makes more than 20,000 changes of it.
#include "platform/LoginItems.h"
#include "settings/EntryList.h"
#include "tests/support/Check.h"
#include "tools/Refusal.h"
#include "tools/headless/HeadlessPane.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <random>
#include <set>

using namespace platform;
using namespace settings;

namespace {

constexpr int kWriters = 6, kObjects = 5, kChangesForAKill = 20;
constexpr const char* kOwnOptions[kWriters] = {"Enabled",    "ShowSets",      "ShowIcons",
                                               "ScriptSort", "AllFontsGroup", "HierarchicalMenu"};
constexpr const char* kWindow = BINARY_DIR "/bin/panehost";

struct Home {
    check::TemporaryFolder folder;
    check::ScopedEnvironment home{"HOME", folder.path().c_str()}, root{"TYPESLATE_ROOT", folder.path().c_str()},
        configuration{"XDG_CONFIG_HOME", nullptr}, bus{"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
        bundle{"TYPESLATE_PREFPANE", BINARY_DIR "/Typeslate.prefPane"}, log{"TYPESLATE_LOG", nullptr};
};

// Entries for applications and for expressions take turns.
bool isApplication(const std::string& name) { return (name.back() - '0') % 2 == 0; }
std::string applicationPath(const std::string& name) { return std::getenv("HOME") + ("/" + name) + ".desktop"; }

// What a writer does to an object of its own: "entry", "login" or "size" (of an entry), a blank and a name, or "option"
// (of the Global entry) and its key.
struct Change {
    std::string kind, name;
    int value;  // 0: it is not there
};

class Writer {
public:
    Writer(int number, unsigned seed) : number_(number), random_(seed) {}

    // Says on the pipe what it is about to do ("?") and what is done ("!"), until it is killed.
    [[noreturn]] void run(int pipe) {
        for (;;) {
            // A window that has been open for a while knows an old list.
            if (!pane_ || random_() % 4 == 0) pane_.emplace();
            Change change = next();
            say(pipe, '?', change);
            make(change);
            if (isSaved()) say(pipe, '!', change);
        }
    }

private:
    void say(int pipe, char mark, const Change& change) {
        std::string line = mark + change.kind + " " + change.name + " " + std::to_string(change.value) + "\n";
        if (::write(pipe, line.data(), line.size()) != std::ssize(line)) _exit(1);
    }
    PropertyList list() { return pane_->preferences().copyValue(kEntryListKey, kSettingsDomain); }
    int rowOf(const std::string& data) {
        PropertyList all = list();
        auto found = std::ranges::find_if(all.elements(), [&](auto& entry) { return entry[kDataKey] == data; });
        return found == all.elements().end() ? -1 : static_cast<int>(found - all.elements().begin());
    }
    entrylist::EntryAddress at(const std::string& data) { return {.row = rowOf(data)}; }
    Change next() {
        std::string name = "w" + std::to_string(number_) + "-" + std::to_string(random_() % kObjects);
        int coin = static_cast<int>(random_() % 2), kind = static_cast<int>(random_() % 4);
        if (kind == 0) return {"option", kOwnOptions[number_], coin};
        if (kind == 1) return {"login", name, coin};
        bool isThere = rowOf(name) >= 0;
        if (isThere && coin) return {"size", name, static_cast<int>(1 + random_() % 200)};
        return {"entry", name, isThere ? 0 : 1};
    }
    void make(const Change& change) {
        domain_ = change.kind == "login" ? kLoginWindowDomain : kSettingsDomain;
        if (change.kind == "option") {
            pane_->setOption({}, *optionForKey(change.name), change.value);
        } else if (change.kind == "size") {
            pane_->setOption(at(change.name), *optionForKey("FontSize"), change.value);
        } else if (change.kind == "login") {
            pane_->operations().removeLoginItemWithPath("/" + change.name);
            if (change.value) pane_->operations().addLoginItem_hide("/" + change.name, true);
        } else if (!change.value) {
            pane_->removeEntry(at(change.name));
        } else if (isApplication(change.name)) {
            CHECK(pane_->addApplications({applicationPath(change.name)}).alreadyListed.empty());
        } else {
            pane_->addRegex(change.name, change.name, 1);
        }
    }
    bool isSaved() { return pane_->preferences().problem(domain_).empty(); }

    const int number_;
    std::minstd_rand random_;
    std::optional<tools::HeadlessPane> pane_;
    std::string_view domain_;
};

// What may be stored of each object, from what the writers said: one value, or several where one was killed.
struct Model {
    std::map<std::string, std::set<int>> values;
    int tried = 0, acknowledged = 0;

    Model() {
        for (const char* key : kOwnOptions) values["option " + std::string(key)] = {0, 1};
    }
    void hear(const std::string& line) {
        bool isDone = line[0] == '!';
        ++(isDone ? acknowledged : tried);
        auto blank = line.rfind(' ');
        std::string object = line.substr(1, blank - 1);
        note(object, std::stoi(line.substr(blank + 1)), isDone);
        // An entry that comes has no size yet; a login item goes before it comes again.
        if (object.starts_with("entry ")) note("size " + object.substr(6), 0, isDone);
        if (object.starts_with("login ") && !isDone) note(object, 0, false);
    }

private:
    void note(const std::string& object, int value, bool isDone) {
        std::set<int>& possible = values.try_emplace(object, std::set{0}).first->second;
        if (isDone) possible.clear();
        possible.insert(value);
    }
};

pid_t start(int number, unsigned seed, int pipe) {
    pid_t process = ::fork();
    if (process != 0) return process;
    try {
        Writer(number, seed).run(pipe);
    } catch (const tools::Refusal& refused) {
        for (const std::string& line : refused.lines) std::cerr << line << '\n';
    }
    _exit(1);
}

pid_t openWindow() {
    pid_t process = ::fork();
    if (process == 0) {
        ::execl(kWindow, kWindow, "-platform", "offscreen", nullptr);
        _exit(127);
    }
    return process;
}

void stop(pid_t process) {
    int status = 0;
    CHECK(::kill(process, SIGKILL) == 0 && ::waitpid(process, &status, 0) == process && !WIFEXITED(status));
}

std::map<std::string, int> stored() {
    std::map<std::string, int> all;
    linux::LinuxStore store;
    PropertyList settings = store.preferences.copyDomain(kSettingsDomain);
    PropertyList items = store.preferences.copyValue(kLoginItemsKey, kLoginWindowDomain);
    for (const char* key : kOwnOptions)
        all["option " + std::string(key)] = settings[kEntryListKey][0][kSettingsKey][key].boolValue();
    for (const PropertyList& entry : settings[kEntryListKey].elements()) {
        std::string data(entry[kDataKey].stringValue());
        if (!data.starts_with("w")) continue;  // a shipped one
        bool isWhole = isApplication(data) ? entry[kPathKey] == applicationPath(data) : entry[kRegExTypeKey] == 1;
        CHECK(++all["entry " + data] == 1 && isWhole && entry.size() == (isApplication(data) ? 6u : 5u));
        CHECK(entry[kNameKey] == entry[kDataKey] && entry[kSettingsKey].size() >= 8);
        all["size " + data] = static_cast<int>(entry[kSettingsKey]["FontSize"].integerValue());
    }
    for (const PropertyList& item : items.elements()) {
        CHECK(item.size() == 2 && item[kLoginItemHideKey].boolValue());
        CHECK_EQ(++all["login " + std::string(item[kLoginItemPathKey].stringValue().substr(1))], 1);
    }
    return all;
}

}  // namespace

TEST(NothingThatWasSaidToBeDoneIsLost) {
    const int wanted = std::getenv("TYPESLATE_LONG_TESTS") ? 20'000 : 600;
    Home home;
    for (int i = 0; i < kWriters * kObjects; ++i) {
        std::string name = "w" + std::to_string(i / kObjects) + "-" + std::to_string(i % kObjects);
        check::writeFile(applicationPath(name),
                         "[Desktop Entry]\nType=Application\nExec=/bin/true\nName=" + name + "\n");
    }
    std::minstd_rand random(7);
    Model model;
    int ends[2];  // all writers share the pipe: a line is written in one piece
    REQUIRE(::pipe(ends) == 0);
    std::unique_ptr<FILE, int (*)(FILE*)> said(::fdopen(ends[0], "r"), std::fclose);
    pid_t writers[kWriters];
    for (int number = 0; number < kWriters; ++number) writers[number] = start(number, random(), ends[1]);
    bool hasWindow = ::access(kWindow, X_OK) == 0;
    pid_t window = hasWindow ? openWindow() : -1;
    char line[100];
    for (int kills = 0; model.acknowledged < wanted && std::fgets(line, sizeof line, said.get());) {
        model.hear(line);
        if (model.acknowledged / kChangesForAKill <= kills) continue;
        ++kills;
        int victim = static_cast<int>(random() % kWriters);
        stop(writers[victim]);
        writers[victim] = start(victim, random(), ends[1]);
        if (!hasWindow || kills % 8) continue;
        stop(window);
        window = openWindow();
    }
    for (pid_t writer : writers) stop(writer);
    if (hasWindow) stop(window);
    ::close(ends[1]);
    while (std::fgets(line, sizeof line, said.get())) model.hear(line);

    std::map<std::string, int> found = stored();
    int lost = 0;
    for (const auto& [object, possible] : model.values) {
        if (object.starts_with("size ") && !found["entry " + object.substr(5)]) continue;
        CONTEXT(object);
        lost += !possible.contains(found[object]);
        CHECK(possible.contains(found[object]));
    }
    std::cout << model.tried << " tried, " << model.acknowledged << " acknowledged, " << lost << " lost\n";
}
