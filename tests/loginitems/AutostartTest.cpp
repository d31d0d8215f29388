// Login items as real files in a real autostart folder.
#include "linux/applications/DesktopEntry.h"
#include "linux/loginitems/AutostartMirror.h"
#include "platform/LoginItems.h"
#include "tests/store/StoreSupport.h"
#include "tests/support/FakePlatform.h"

#include <sys/stat.h>

#include <regex>
#include <set>

using namespace platform;
using namespace linux;
namespace fs = std::filesystem;

namespace {

using Names = std::set<std::string>;

struct Session {
    check::TemporaryFolder home;
    check::ScopedEnvironment config{"XDG_CONFIG_HOME", (home / "config").c_str()};
    std::string folder = home / "config/autostart";
    fake::Log log;
    DiskPreferences preferences{preferencesFolder(), log};
    AutostartMirror mirror{preferences, log};

    std::string program(const std::string& name) {
        std::string path = home / name;
        check::writeFile(path, "#!/bin/sh\nprintf '<%s>' \"$0\" \"$@\"\n");
        ::chmod(path.c_str(), 0755);
        return path;
    }
    bool store(const std::vector<std::pair<std::string, bool>>& items) { return store(items, preferences); }
    static bool store(const std::vector<std::pair<std::string, bool>>& items, DiskPreferences& preferences) {
        std::vector<PropertyList> all;
        for (const auto& [path, hide] : items)
            all.push_back(PropertyList::dictionary({{kLoginItemPathKey, path}, {kLoginItemHideKey, hide}}));
        preferences.setValue(kLoginItemsKey, PropertyList::array(std::move(all)), kLoginWindowDomain);
        return preferences.synchronize(kLoginWindowDomain);
    }
    Names names() {
        Names all;
        for (const auto& entry : fs::directory_iterator(folder)) all.insert(entry.path().filename());
        return all;
    }
    std::string content(const std::string& name) { return check::readFile(folder + "/" + name); }
};

std::string outputOf(const std::vector<std::string>& words) {
    std::string command = "exec";
    for (const std::string& word : words) command += " '" + std::regex_replace(word, std::regex("'"), "'\\''") + "'";
    FILE* pipe = ::popen(command.c_str(), "r");
    char text[4096];
    std::string output(text, std::fread(text, 1, sizeof text, pipe));
    ::pclose(pipe);
    return output;
}

}  // namespace

TEST(EntriesFollowTheItemsAndLeaveOthersAlone) {
    Session s;
    CHECK(s.store({}) && !fs::exists(s.folder));
    std::string tool = s.program("tool"), twin = s.program("b/tool");
    std::string first = "login-item-tool-2.desktop", second = "login-item-tool-3.desktop",
                taken = "login-item-tool.desktop",
                theirs = "[Desktop Entry]\nType=Application\nExec=theirs\nX-Typeslate-LoginItems=1\n";
    check::writeFile(s.folder + "/" + taken, theirs);
    check::writeFile(s.folder + "/theirs.desktop", "X-Typeslate-LoginItem=" + tool + "\n");

    CHECK(s.store({{tool, true}, {s.home / "missing", false}, {tool, false}, {twin, true}, {"relative", false}}));
    Names both = {first, second, taken, "theirs.desktop"};
    auto isHidden = [&](auto& name) { return s.content(name).find("StartupNotify=false\n") != std::string::npos; };
    CHECK(s.names() == both && s.log.lines.size() == 2);
    CHECK(!isHidden(first) && isHidden(second));  // the later item's word

    // Switched off by the user's desktop, and while its disk is away: what is there stays.
    check::writeFile(s.folder + "/" + first, s.content(first) + "Hidden=true\n");
    fs::rename(twin, twin + ".away");
    fs::file_time_type written = fs::last_write_time(s.folder + "/" + second);
    CHECK(s.store({{twin, true}, {tool, false}}) && s.names() == both && s.content(first).ends_with("Hidden=true\n"));
    CHECK(fs::last_write_time(s.folder + "/" + second) == written);
    CHECK(s.store({{tool, true}}) && isHidden(first) && s.store({}));
    CHECK_EQ(s.names(), Names{taken, "theirs.desktop"});
    CHECK_EQ(s.content(taken), theirs);

    // What the user switched off or deleted stays so until the item itself changes.
    const std::string viewer = s.home / "view.desktop", entry = "login-item-view.desktop",
                      switchedOff = "Hidden=true\nX-GNOME-Autostart-enabled=false\n";
    auto install = [&](std::string name) {
        check::writeFile(viewer, "[Desktop Entry]\nType=Application\nExec=view\nName=" + name + "\n");
    };
    for (bool isDeleted : {false, true}) {
        install("Old");
        CHECK(s.store({{viewer, false}}) && s.content(entry).ends_with("Hide=false\n"));
        check::writeFile(s.folder + "/" + entry, s.content(entry) + switchedOff + "[X]\nX-Further=1\n");
        if (isDeleted) fs::remove(s.folder + "/" + entry);
        install("New");
        CHECK(s.store({{viewer, false}}) && fs::exists(s.folder + "/" + entry) != isDeleted);
        const std::string kept = s.content(entry);
        CHECK(isDeleted || (kept.find("Name=New\n") != kept.npos && kept.ends_with("Hide=false\n" + switchedOff)));
        CHECK(kept.find("Hide=") == kept.rfind("Hide="));
        CHECK(s.store({{viewer, false}, {viewer, false}}) && s.content(entry).ends_with("Hide=false\n"));
        fs::remove(s.folder + "/" + entry);
        CHECK(s.store({{viewer, false}}) && !fs::exists(s.folder + "/" + entry));
        CHECK(s.store({{viewer, true}}) && fs::exists(s.folder + "/" + entry));
        fs::remove_all(s.folder);
        CHECK(s.store({{viewer, true}}) && fs::exists(s.folder + "/" + entry) && s.store({}));
    }
}

TEST(WhatIsStoredWhileTheLockIsWaitedForCounts) {
    Session s;
    check::FaultyFileAccess files;
    DiskPreferences own(preferencesFolder(), s.log), other(preferencesFolder(), s.log);
    AutostartMirror mirror(own, s.log, files);
    files.hook = [&, waits = 0](check::Call call, std::size_t&, int) mutable {
        if (call == check::Call::Lock && !waits++) CHECK(Session::store({{s.program("later"), false}}, other));
        return 0;
    };
    CHECK(Session::store({{s.program("tool"), false}}, own));
    CHECK_EQ(s.names(), Names{"login-item-later.desktop"});
}

TEST(ApplicationsOfEachKindGetTheirCommand) {
    Session s;
    check::ScopedEnvironment language("LC_ALL", "de_DE.UTF-8");  // of whoever comes by: no reason to write anew
    struct Case {
        std::string path;
        std::vector<std::string> words;
        bool isOdd;  // some session would read the words themselves in another way
    };
    const std::string editor = s.home / "Editor.app", entry = s.home / "view.desktop";
    s.program("Editor.app/Contents/Linux/run");
    check::writeFile(editor + "/Contents/Info.plist",
                     "<plist><dict><key>CFBundleExecutable</key><string>run</string></dict></plist>");
    check::writeFile(entry,
                     "[Desktop Entry]\nType=Application\nName=V\nName[de]=Wer\nTerminal=true\nPath=/tmp\nIcon=eye\n"
                     "Exec=view --name %c \"a 'b\" %U\n");
    std::vector<Case> cases = {{editor + "/", {editor + "/Contents/Linux/run"}, false},
                               {entry, {"view", "--name", "V", "a 'b"}, false}};
    std::string longest = s.program(std::string(200, 'l'));
    cases.push_back({longest, {longest}, false});
    for (char c : std::string("\\$`=%\"'\n\t\x7F ;&")) {
        std::string text = std::string("a") + c + "b", plain = s.program("plain");
        std::string escape = c == '%' ? "%" : std::string("\"`$\\").find(c) != std::string::npos ? "\\" : "";
        std::string odd = s.program(text);
        cases.push_back({odd, {odd}, c != ' ' && c != ';' && c != '&'});
        std::string caller = s.home / ("caller" + std::to_string(cases.size()) + ".desktop");
        check::writeFile(caller, "[Desktop Entry]\nType=Application\nName=O\nExec=" +
                                     escapedDesktopEntryValue(plain + " \"a" + escape + c + "b\"") + "\n");
        cases.push_back({caller, {plain, text}, c == '\\' || c == '$' || c == '`'});
    }
    for (const auto& [path, words, isOdd] : cases) {
        CONTEXT(path);
        REQUIRE(s.store({{path, false}}) && s.names().size() == 1);
        std::string name = *s.names().begin(), expected;
        CHECK(std::regex_match(name, std::regex("login-item-[-._A-Za-z0-9]{1,100}\\.desktop")));
        auto read = desktopEntryRecord(path, "", s.content(name), ApplicationEnvironment());
        REQUIRE(read);
        CHECK_EQ(read->words.front() == "awk", isOdd);
        for (const std::string& word : read->words) CHECK(word.find_first_of("\\$`") == word.npos);
        for (const std::string& word : words) expected += "<" + word + ">";
        CHECK(path == entry ? read->words == words : outputOf(read->words) == expected);
        CHECK_EQ(read->isInTerminal, path == entry);
        CHECK_EQ(read->workingFolder + " " + read->iconName, path == entry ? "/tmp eye" : " ");
    }
}

TEST(AnAutostartFolderThatCannotBeUsedCostsNothing) {
    Session s;
    const std::string tool = s.program("tool"), other = s.home / "other";
    fs::create_directories(s.home / "config");
    for (bool isLink : {false, true}) {
        isLink ? fs::create_symlink(other, s.folder) : void(check::writeFile(s.folder, "a file"));
        CHECK(s.store({{tool, isLink}}) && s.store({{tool, isLink}}) && s.mirror.hasFailed());
        CHECK(s.log.lines.size() == 1 && s.log.lines.back().find("cannot") != std::string::npos);
        CHECK_EQ(DiskPreferences(preferencesFolder(), s.log).copyValue(kLoginItemsKey, kLoginWindowDomain).size(), 1U);
        s.log.lines.clear();
        if (!isLink) fs::remove(s.folder);
    }
    fs::create_directory(other);
    CHECK(s.preferences.synchronize(kLoginWindowDomain) && !s.mirror.hasFailed());
    CHECK_EQ(s.names(), Names{"login-item-tool.desktop"});
}
