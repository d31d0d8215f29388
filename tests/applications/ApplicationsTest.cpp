#include "linux/applications/DesktopEntry.h"
#include "linux/applications/LinuxApplications.h"
#include "linux/applications/Programs.h"
#include "linux/loginitems/AutostartEntry.h"
#include "linux/texts/DisplayText.h"
#include "tests/support/Script.h"

#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <functional>

using namespace platform;
using namespace linux;
namespace fs = std::filesystem;

namespace {

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += word + "|";
    return text;
}

// A machine of its own: a home, data folders and programs.
class Machine {
public:
    Machine() {
        environment.desktopEntryFolders = {folder_ / "home/data/applications", folder_ / "usr/share/applications"};
        environment.bundleFolders = {folder_ / "home/Applications", folder_ / "Applications"};
        environment.programFolders = {folder_ / "bin"};
        fs::create_directories(folder_ / "bin");
    }

    // "~" is the user's folder of entries, ":" the system's.
    std::string path(std::string name) const {
        if (name.starts_with("~/")) name = "home/data/applications" + name.substr(1);
        if (name.starts_with(":/")) name = "usr/share/applications" + name.substr(1);
        return folder_ / name;
    }
    // The way back.
    std::string shortened(const std::optional<std::string>& path) const {
        if (!path) return "none";
        for (const char* name : {"~/", ":/", ""})
            if (path->starts_with(this->path(name))) return name + path->substr(this->path(name).size());
        return *path;
    }
    void write(const std::string& name, std::string_view bytes) const { check::writeFile(path(name), bytes); }
    void entry(const std::string& name, const std::string& keys = "Name=N\nExec=prog\n") const {
        write(name, "[Desktop Entry]\nType=Application\n" + keys);
    }

    linux::ApplicationEnvironment environment;

private:
    check::TemporaryFolder folder_;
};

std::string lines(std::string text) {
    for (std::size_t at; (at = text.find(" | ")) != text.npos;) text.replace(at, 3, "\n");
    return text.empty() ? text : text + "\n";
}

std::string propertyList(const std::string& keys) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>";
    for (const std::string& line : check::linesIn(lines(keys))) {
        std::size_t equals = line.find('=');
        text += "<key>" + line.substr(0, equals) + "</key><string>" + line.substr(equals + 1) + "</string>";
    }
    return text + "</dict></plist>";
}

// One machine and what happens to it: the verbs of machines.txt.
class Story {
public:
    void happens(const std::string& line) {
        std::size_t blank = line.find(' '), sign = line.find(" = ");
        std::string verb = line.substr(0, blank);
        std::string name = blank == line.npos ? "" : line.substr(blank + 1);
        if (auto change = changes_.find(verb); change != changes_.end()) {
            std::size_t colon = name.find(": ");
            return change->second(name.substr(0, colon), colon == name.npos ? "" : name.substr(colon + 2));
        }
        REQUIRE(sign != line.npos);
        if (!applications_) applications_.emplace(machine_.environment, [this] { return now_; });
        name = sign < blank ? "" : name.substr(0, sign - blank - 1);
        CHECK_EQ(questions_.at(verb)(name), line.substr(sign + 3));
    }

private:
    using Change = std::function<void(const std::string&, const std::string&)>;
    using Question = std::function<std::string(const std::string&)>;

    std::string found(const ApplicationQuery& query) {
        return machine_.shortened(applications_->findApplication(query));
    }
    std::string withCreator(const std::string& codeAndIdentifier) {
        ApplicationQuery query{0, codeAndIdentifier.substr(5), "Name.app"};
        for (int i = 0; i < 4; ++i)
            query.creator = *query.creator << 8 | static_cast<unsigned char>(codeAndIdentifier[i]);
        return found(query);
    }
    std::string described(const std::string& path) {
        ItemInformation information;
        OSStatus status = applications_->itemInformation(path, information);
        return std::to_string(status) +
               (information.flags == ItemInformation::kIsNativeApplication ? " native " : " - ") +
               applications_->bundleIdentifier(path).value_or("none") + " " + applications_->displayName(path);
    }
    std::string listed() {
        std::string text;
        for (const ApplicationRecord& application : applications_->installedApplications())
            text += (text.empty() ? "" : ", ") + application.name;
        return text;
    }
    static std::string nameOf(const std::optional<ApplicationRecord>& application) {
        return application ? application->name : "none";
    }
    std::string icon(const std::string& path) {
        auto application = applications_->applicationAtPath(path);
        return application ? machine_.shortened(application->iconName) : "none";
    }
    std::string texts(const std::string& path) {
        auto application = applications_->applicationAtPath(path);
        return application->genericName + ": " + joined(check::linesIn(application->searchTexts));
    }
    std::string start(const std::string& path) {
        auto start = startDescription(path, machine_.environment);
        return start ? machine_.shortened(joined(start->words)) : "none";
    }
    std::string folder(const std::string& name) { return machine_.path(name); }
    void makeProgram(const std::string& name, fs::perms permissions) {
        machine_.write(name, "#!/bin/sh\n");
        fs::permissions(folder(name), permissions);
    }

    Machine machine_;
    std::chrono::steady_clock::time_point now_{};
    std::optional<LinuxApplications> applications_;
    const std::map<std::string, Change> changes_ = {
        {"program", [&](auto& name, auto&) { makeProgram(name, fs::perms::owner_all); }},
        {"data", [&](auto& name, auto&) { makeProgram(name, fs::perms::owner_read); }},
        {"folder", [&](auto& name, auto&) { fs::create_directories(folder(name)); }},
        {"fifo", [&](auto& name, auto&) { ::mkfifo(folder(name).c_str(), 0600); }},
        {"link", [&](auto& name, auto& to) { fs::create_symlink(to[0] == '/' ? to : folder(to), folder(name)); }},
        {"grow", [&](auto& name, auto& size) { fs::resize_file(folder(name), std::stoul(size)); }},
        {"move", [&](auto& name, auto& to) { fs::rename(folder(name), folder(to)); }},
        {"remove", [&](auto& name, auto&) { fs::remove_all(folder(name)); }},
        {"file", [&](auto& name, auto& text) { machine_.write(name, lines(text)); }},
        {"entry",
         [&](auto& name, auto& keys) { machine_.entry(name, lines(keys.empty() ? "Name=N | Exec=prog" : keys)); }},
        {"bundle", [&](auto& name, auto& keys) { machine_.write(name + "/Contents/Info.plist", propertyList(keys)); }},
        {"desktop", [&](auto& name, auto&) { machine_.environment.currentDesktops.push_back(name); }},
        {"root", [&](auto&, auto&) { machine_.environment.testRoot = folder(""); }},
        {"untranslated", [&](auto&, auto&) { machine_.environment.isTranslated = false; }},
        {"pass", [&](auto& milliseconds, auto&) { now_ += std::chrono::milliseconds(std::stoi(milliseconds)); }},
    };
    const std::map<std::string, Question> questions_ = {
        {"find",
         [&](auto& identifier) {
             return found({{}, identifier, ""});
         }},
        {"named",
         [&](auto& name) {
             return found({{}, "", name});
         }},
        {"creator", [&](auto& codeAndIdentifier) { return withCreator(codeAndIdentifier); }},
        {"item", [&](auto& name) { return described(folder(name)); }},
        {"list", [&](auto&) { return listed(); }},
        {"icon", [&](auto& name) { return icon(folder(name)); }},
        {"runs", [&](auto& name) { return nameOf(applications_->applicationForProgram(folder(name))); }},
        {"texts", [&](auto& name) { return texts(folder(name)); }},
        {"window", [&](auto& name) { return nameOf(applications_->applicationForWindowClass(name)); }},
        {"start", [&](auto& name) { return start(folder(name)); }},
        {"open", [&](auto& name) { return std::to_string(applications_->openApplication(folder(name))); }},
    };
};

std::string described(const std::string& text) {
    auto record = desktopEntryRecord("/x.desktop", "x", text, ApplicationEnvironment());
    if (!record) return "malformed";
    std::string result = record->isApplication ? "Application" : "other";
    const std::pair<const char*, std::string> values[] = {
        {"name", record->name},      {"plain", record->searchName},    {"icon", record->iconName},
        {"try", record->tryProgram}, {"words", joined(record->words)}, {"folder", record->workingFolder},
    };
    for (const auto& [key, value] : values)
        if (!value.empty()) result.append(" ").append(key).append("=").append(value);
    const std::pair<const char*, bool> flags[] = {{" undisplayed", !record->isDisplayed},
                                                  {" terminal", record->isInTerminal},
                                                  {" dbus", record->isDBusActivatable}};
    for (const auto& [name, isSet] : flags)
        if (isSet) result += name;
    return result;
}

std::string programOf(const std::string& exec) {
    std::string entry = "[Desktop Entry]\nType=Application\nName=N\nExec=" + escapedDesktopEntryValue(exec);
    auto record = desktopEntryRecord("/x.desktop", "x", entry, ApplicationEnvironment());
    return record->program + (isWineProgram(record->program) ? " (Wine)" : "") +
           (isLauncherProgram(record->program) ? " (launcher)" : "");
}

void checkCases(const char* file, const std::function<std::string(const std::string&)>& result, std::size_t count) {
    auto cases = check::casesIn(file);
    for (const check::Case& c : cases) {
        CONTEXT(c.label);
        check::ScopedEnvironment language("LANGUAGE", c.argument.c_str()), all("LC_ALL", "en_GB.UTF-8");
        CHECK_EQ(result(c.text), c.expected);
    }
    CHECK(cases.size() >= count);
}

}  // namespace

TEST(MachinesAndWhatIsFoundOnThem) {
    check::ScopedEnvironment language("LANGUAGE", "de"), all("LC_ALL", "C.UTF-8");
    auto stories = check::casesIn(TEST_DATA "/machines.txt");
    for (const check::Case& c : stories) {
        CONTEXT(c.label);
        Story story;
        for (const std::string& line : check::linesIn(c.text)) {
            CONTEXT(line);
            if (!line.empty() && line[0] != '#') story.happens(line);
        }
    }
    CHECK(stories.size() >= 10);
}

TEST(DesktopEntriesAreRead) { checkCases(TEST_DATA "/desktop-entries.txt", described, 20); }
TEST(ProgramsAreTold) { checkCases(TEST_DATA "/programs.txt", programOf, 10); }
TEST(ForeignTextsAreMadeSafeToShow) { checkCases(TEST_DATA "/texts.txt", displayText, 8); }

TEST(LongValuesAreIgnored) {
    for (std::size_t size : {kMaximumDesktopEntryValue, kMaximumDesktopEntryValue + 1}) {
        std::string entry = "[Desktop Entry]\nType=Application\nName=N\nIcon=" + std::string(size, 'x');
        auto record = desktopEntryRecord("/x.desktop", "x", entry, ApplicationEnvironment());
        CHECK(record && record->iconName.empty() == (size > kMaximumDesktopEntryValue));
    }
}

TEST(FoldersComeFromTheEnvironment) {
    const check::ScopedEnvironment home("HOME", "/h/me"), desktop("XDG_CURRENT_DESKTOP", "ubuntu:GNOME"),
        path("PATH", "/p:bin::/q/");
    for (const check::Case& c : check::casesIn(TEST_DATA "/environments.txt")) {
        CONTEXT(c.text);
        Words words(c.text);
        const std::string values[] = {words.next(), words.next(), words.next()};
        const auto setting = [&](int i) { return values[i] == "-" ? nullptr : values[i].c_str(); };
        const check::ScopedEnvironment setHome("XDG_DATA_HOME", setting(0)), setDirs("XDG_DATA_DIRS", setting(1)),
            setRoot("TYPESLATE_ROOT", setting(2));
        const ApplicationEnvironment environment = ApplicationEnvironment::current();
        CHECK_EQ(joined(environment.desktopEntryFolders) + " " + joined(environment.bundleFolders), c.expected);
        CHECK_EQ(joined(environment.currentDesktops) + joined(environment.programFolders), "ubuntu|GNOME|/p|/q|");
        CHECK_EQ(environment.testRoot, values[2] == "-" ? "" : values[2]);
    }
}

TEST(OnlySoManyFoldersAreWatched) {
    Machine machine;
    for (std::size_t i = 0; i < ApplicationIndex::kMaximumFolders + 50; ++i)
        fs::create_directories(machine.path(":/" + std::to_string(i)));
    machine.entry(":/top.desktop");
    ApplicationIndex index(machine.environment, std::chrono::steady_clock::now);
    CHECK(index.refresh());
    CHECK_EQ(index.folderCount(), ApplicationIndex::kMaximumFolders);
    CHECK_EQ(index.withIdentifier("top").size(), 1u);
}

TEST(OnlyWhatChangedIsReadAgain) {
    using std::chrono::operator""ms;
    Machine machine;
    for (const char* name : {":/kept.desktop", ":/sub/also.desktop"}) machine.entry(name);
    std::chrono::steady_clock::time_point now;
    ApplicationIndex index(
        machine.environment, [&] { return now; }, 0ms);
    auto record = [&](const char* name) { return index.atPath(machine.path(name)); };
    CHECK(index.refresh() && !index.refresh());
    const ApplicationRecord *kept = record(":/kept.desktop"), *also = record(":/sub/also.desktop");
    machine.entry(":/new.desktop");
    index.refreshFully();
    CHECK(kept && record(":/kept.desktop") == kept && record(":/sub/also.desktop") == also);
    machine.entry(":/kept.desktop", "Name=Changed\n");
    // The folder does not show it.
    for (auto [wait, name] : {std::pair{9'999ms, "N"}, {1ms + ApplicationIndex::kFolderInterval, "Changed"}}) {
        now += wait;
        CHECK(index.refresh());
        CHECK_EQ(record(":/kept.desktop")->name, name);
    }
    CHECK(record(":/sub/also.desktop") == also);
}
