// Login items as real files in a real autostart folder.
#include "linux/applications/DesktopEntry.h"
#include "linux/loginitems/AutostartMirror.h"
#include "platform/LoginItems.h"
#include "tests/support/Check.h"
#include "tests/support/FakePlatform.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <regex>

using namespace platform;
using namespace linux;
namespace fs = std::filesystem;

namespace {

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
    std::vector<std::string> names() {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder)) all.push_back(entry.path().filename());
        std::ranges::sort(all);
        return all;
    }
    std::string content(const std::string& name) { return check::readFile(folder + "/" + name); }
};

std::string outputOf(const std::vector<std::string>& words) {
    std::string command = "exec";
    for (const std::string& word : words) {
        command += " '";
        for (char c : word) command += c == '\'' ? "'\\''" : std::string(1, c);
        command += "'";
    }
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
    const std::string tool = s.program("tool"), twin = s.program("b/tool");
    check::writeFile(s.folder + "/login-item-tool.desktop",
                     "[Desktop Entry]\nType=Application\nExec=theirs\nX-Typeslate-LoginItems=1\n");
    check::writeFile(s.folder + "/theirs.desktop", "X-Typeslate-LoginItem=" + tool + "\n");

    CHECK(s.store({{tool, true}, {s.home / "missing", false}, {tool, false}, {twin, true}, {"relative", false}}));
    const std::vector<std::string> both = {"login-item-tool-2.desktop", "login-item-tool-3.desktop",
                                           "login-item-tool.desktop", "theirs.desktop"};
    CHECK_EQ(s.names(), both);
    CHECK_EQ(s.log.lines.size(), std::size_t{2});
    CHECK(s.content(both[0]).find("StartupNotify") == std::string::npos);  // the later item's word
    CHECK(s.content(both[1]).find("StartupNotify=false\n") != std::string::npos);

    // Switched off by the user's desktop, and while its disk is away: what is there stays.
    check::writeFile(s.folder + "/" + both[0], s.content(both[0]) + "Hidden=true\n");
    fs::rename(twin, twin + ".away");
    fs::file_time_type written = fs::last_write_time(s.folder + "/" + both[1]);
    CHECK(s.store({{twin, true}, {tool, false}}));
    CHECK_EQ(s.names(), both);
    CHECK(s.content(both[0]).ends_with("Hidden=true\n"));
    CHECK(fs::last_write_time(s.folder + "/" + both[1]) == written);
    CHECK(s.store({{tool, true}}));
    CHECK(s.content(both[0]).find("StartupNotify=false\n") != std::string::npos);
    CHECK(s.store({}));
    CHECK_EQ(s.names(), (std::vector<std::string>{"login-item-tool.desktop", "theirs.desktop"}));
    CHECK_EQ(s.content("login-item-tool.desktop"),
             "[Desktop Entry]\nType=Application\nExec=theirs\nX-Typeslate-LoginItems=1\n");
}

TEST(WhatIsStoredWhileTheLockIsWaitedForCounts) {
    struct Overtaken : FileAccess {
        std::function<void()> atLock;
        int intercept(Call call, std::size_t&) override {
            if (call == Call::Lock && atLock) std::exchange(atLock, nullptr)();
            return 0;
        }
    } files;
    Session s;
    DiskPreferences own(preferencesFolder(), s.log), other(preferencesFolder(), s.log);
    AutostartMirror mirror(own, s.log, files);
    files.atLock = [&] { CHECK(Session::store({{s.program("later"), false}}, other)); };
    CHECK(Session::store({{s.program("tool"), false}}, own));
    CHECK_EQ(s.names(), std::vector<std::string>{"login-item-later.desktop"});
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
        bool isMisread = c == '\\' || c == '$' || c == '`';
        std::string odd = s.program(text);
        cases.push_back({odd, {odd}, c != ' ' && c != ';' && c != '&'});
        std::string caller = s.home / ("caller" + std::to_string(cases.size()) + ".desktop");
        check::writeFile(caller, "[Desktop Entry]\nType=Application\nName=O\nExec=" +
                                     escapedDesktopEntryValue(plain + " \"a" + escape + c + "b\"") + "\n");
        cases.push_back({caller, {plain, text}, isMisread});
    }
    for (const auto& [path, words, isOdd] : cases) {
        CONTEXT(path);
        REQUIRE(s.store({{path, false}}));
        REQUIRE(s.names().size() == 1);
        CHECK(std::regex_match(s.names().front(), std::regex("login-item-[-._A-Za-z0-9]{1,100}\\.desktop")));
        auto read = desktopEntryRecord(path, "", s.content(s.names().front()), ApplicationEnvironment());
        REQUIRE(read);
        const std::vector<std::string>& started = read->words;
        CHECK_EQ(started.front() == "awk", isOdd);
        for (const std::string& word : started) CHECK(word.find_first_of("\\$`") == word.npos);
        std::string expected;
        for (const std::string& word : words) expected += "<" + word + ">";
        if (path == entry)
            CHECK_EQ(started, words);
        else
            CHECK_EQ(outputOf(started), expected);
        CHECK_EQ(read->isInTerminal, path == entry);
        CHECK_EQ(read->workingFolder, path == entry ? "/tmp" : "");
        CHECK_EQ(read->iconName, path == entry ? "eye" : "");
    }
}

TEST(AnAutostartFolderThatCannotBeUsedCostsNothing) {
    Session s;
    const std::string tool = s.program("tool"), other = s.home / "other";
    fs::create_directories(s.home / "config");
    for (bool isLink : {false, true}) {
        if (isLink)
            fs::create_symlink(other, s.folder);
        else
            check::writeFile(s.folder, "a file");
        CHECK(s.store({{tool, isLink}}) && s.store({{tool, isLink}}) && s.mirror.hasFailed());
        CHECK(s.log.lines.size() == 1 && s.log.lines.back().find("cannot") != std::string::npos);
        CHECK_EQ(DiskPreferences(preferencesFolder(), s.log).copyValue(kLoginItemsKey, kLoginWindowDomain).size(), 1U);
        s.log.lines.clear();
        if (!isLink) fs::remove(s.folder);
    }
    fs::create_directory(other);
    CHECK(s.preferences.synchronize(kLoginWindowDomain) && !s.mirror.hasFailed());
    CHECK_EQ(s.names(), std::vector<std::string>{"login-item-tool.desktop"});
}
