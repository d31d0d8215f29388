#include "Machine.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

using namespace platform;
using namespace linux;

namespace {

std::string names(const std::vector<InstalledApplication>& applications) {
    std::string text;
    for (const InstalledApplication& application : applications) text += application.name + "|";
    return text;
}

std::string found(const Machine& machine, LinuxApplications& applications, const std::string& identifier) {
    return machine.relative(applications.findApplication({{}, identifier, ""}));
}

}  // namespace

TEST(FoldersComeFromTheEnvironment) {
    // XDG_DATA_HOME, XDG_DATA_DIRS, the test root; the folders of entries and of bundles.
    const std::tuple<const char*, const char*, const char*, const char*, const char*> cases[] = {
        {nullptr, nullptr, nullptr,
         "/h/me/.local/share/applications|/usr/local/share/applications|/usr/share/applications|",
         "/h/me/Applications|/Applications|"},
        {"/d", "/a/:relative::/b:/d:/a", "/r", "/d/applications|/a/applications|/b/applications|",
         "/h/me/Applications|/r/Applications|"},
        {"relative", "", "/r",
         "/h/me/.local/share/applications|/r/usr/local/share/applications|/r/usr/share/applications|",
         "/h/me/Applications|/r/Applications|"},
    };
    const check::ScopedEnvironment home("HOME", "/h/me"), all("LC_ALL", ""), messages("LC_MESSAGES", "de_CH.UTF-8"),
        language("LANG", "fr_FR"), desktop("XDG_CURRENT_DESKTOP", "ubuntu:GNOME"), path("PATH", "/p:bin::/q/");
    for (const auto& [dataHome, dataDirs, root, entries, bundles] : cases) {
        const check::ScopedEnvironment setHome("XDG_DATA_HOME", dataHome), setDirs("XDG_DATA_DIRS", dataDirs),
            setRoot("TYPESLATE_ROOT", root);
        const ApplicationEnvironment environment = ApplicationEnvironment::current();
        CHECK_EQ(joined(environment.desktopEntryFolders), entries);
        CHECK_EQ(joined(environment.bundleFolders), bundles);
        CHECK_EQ(joined(environment.locale) + joined(environment.currentDesktops), "de_CH|de|ubuntu|GNOME|");
        CHECK_EQ(joined(environment.programFolders), "/p|/q|");
    }
}

TEST(TheFirstFileHasTheIdentifier) {
    Machine machine;
    machine.program("bin/prog");
    for (const char* name : {"both.desktop", "hidden.desktop", "broken.desktop", "link.desktop", "a/b/deep.desktop",
                             "silent.desktop", "not-an-entry.txt", ".desktop", "program-missing.desktop"})
        machine.entry(name);
    machine.entry("~/both.desktop");
    machine.entry("~/silent.desktop", "Name=N\nExec=prog\nNoDisplay=true\n");
    machine.entry("~/program-missing.desktop", "Name=N\nExec=missing\n");
    machine.write(machine.entryPath("~/hidden.desktop"), "[Desktop Entry]\nHidden=true\n");
    machine.write(machine.entryPath("~/broken.desktop"), "[Desktop Entry]\nrubbish\n");
    machine.write(machine.entryPath("~/link.desktop"), "[Desktop Entry]\nType=Link\nName=L\n");
    machine.bundle("Applications/Both.app", "<key>CFBundleIdentifier</key><string>both</string>");
    machine.bundle("home/Applications/Hidden.app", "<key>CFBundleIdentifier</key><string>hidden</string>");
    LinuxApplications applications = machine.applications();
    const std::string user = "home/data/applications/", system = "usr/share/applications/";
    const std::pair<const char*, std::string> cases[] = {
        {"both", user + "both.desktop"},
        {"hidden", "home/Applications/Hidden.app"},  // the desktop entries with this identifier do not exist
        {"broken", system + "broken.desktop"},
        {"link", "none"},
        {"a-b-deep", system + "a/b/deep.desktop"},
        {"deep", "none"},
        {"silent", user + "silent.desktop"},
        {"not-an-entry", "none"},
        {"program-missing", "none"},
        {"BOTH", "none"},
    };
    for (const auto& [identifier, path] : cases) {
        CONTEXT(identifier);
        CHECK_EQ(found(machine, applications, identifier), path);
    }
    CHECK_EQ(names(applications.installedApplications()), "N|N|N|");
}

TEST(QueriesTryCreatorThenIdentifierThenName) {
    Machine machine;
    machine.program("bin/prog");
    machine.bundle("Applications/Sub/Font Agent.app",
                   "<key>CFBundleIdentifier</key><string>org.agent</string>"
                   "<key>CFBundleSignature</key><string>FApM</string>");
    machine.bundle("Applications/Sub/Deep/Too Deep.app", "<key>CFBundleIdentifier</key><string>deep</string>");
    machine.bundle("Applications/Long.app", "<key>CFBundleSignature</key><string>FApMx</string>");
    machine.entry("a.desktop", "Name=Plain Name\nName[de]=Name auf Deutsch\nExec=prog\n");
    machine.entry("b.desktop", "Name=Font Agent\nExec=prog\n");
    machine.entry("org.kde.ksystemlog.desktop");
    machine.entry("org.kde.kfontview.desktop");
    machine.entry("kcm_fontinst.desktop", "Name=F\nNoDisplay=true\nExec=prog\n");
    machine.environment.locale = desktopEntryLocale("de_DE");
    LinuxApplications applications = machine.applications();
    constexpr FourCharCode agent = fourCharCode("FApM"), other = fourCharCode("LFEX");
    const std::pair<ApplicationQuery, const char*> cases[] = {
        {{agent, "a", "Plain Name.app"}, "Applications/Sub/Font Agent.app"},
        {{other, "a", "Font Agent.app"}, "usr/share/applications/a.desktop"},
        {{other, "x", "Font Agent.app"}, "Applications/Sub/Font Agent.app"},
        {{other, "x", "Plain Name.app"}, "usr/share/applications/a.desktop"},
        {{{}, "", "Name auf Deutsch.app"}, "none"},
        {{{}, "", "Plain Name"}, "none"},
        {{kUnknownCreator, "", ""}, "none"},
        {{{}, "deep", ""}, "none"},
        {{{}, "com.apple.Console", ""}, "usr/share/applications/org.kde.ksystemlog.desktop"},
        {{{}, "com.apple.FontBook", ""}, "usr/share/applications/kcm_fontinst.desktop"},
    };
    for (const auto& [query, path] : cases) {
        CONTEXT(query.identifier + "/" + query.name);
        CHECK_EQ(machine.relative(applications.findApplication(query)), path);
    }
}

TEST(ProgramsDecideWhatIsInstalledAndNative) {
    Machine machine;
    machine.program("bin/prog");
    machine.program("bin/wine");
    machine.program("bin/data", false);
    machine.program("opt/prog");
    fs::create_directories(machine.path("bin/folder"));
    machine.environment.testRoot = machine.path("");
    const std::tuple<const char*, bool, bool> cases[] = {
        {"Exec=prog %U\n", true, true},
        {"Exec=/opt/prog\n", true, true},
        {"Exec=/bin/sh\n", true, true},
        {"Exec=sh\n", false, false},
        {"Exec=./prog\n", false, false},
        {"Exec=missing\n", false, false},
        {"Exec=data\n", false, false},
        {"Exec=folder\n", false, false},
        {"Exec=prog\nTryExec=missing\n", false, false},
        {"Exec=prog\nTryExec=/opt/prog\n", true, true},
        {"Exec=env A=b wine x\n", true, false},
        {"Exec=env A=b prog x\n", true, true},
        {"DBusActivatable=true\n", true, true},
        {"DBusActivatable=true\nTryExec=missing\n", false, false},
        {"", false, false},
        {"Exec=prog \"open\n", false, false},
        {"Exec=prog %!\n", false, false},
        {"Exec=prog\nHidden=true\n", false, false},
    };
    LinuxApplications applications = machine.applications();
    for (const auto& [keys, isInstalled, isNative] : cases) {
        CONTEXT(keys);
        machine.entry("x.desktop", std::string("Name=N\n") + keys);
        machine.pass(ApplicationIndex::kFolderInterval);
        applications.installedApplications();
        ItemInformation information;
        CHECK_EQ(applications.itemInformation(machine.path(machine.entryPath("x.desktop")), information), kNoErr);
        CHECK_EQ(found(machine, applications, "x") != "none", isInstalled);
        CHECK_EQ(information.flags, isNative ? ItemInformation::kIsNativeApplication : 0u);
    }
}

TEST(ItemsAreDescribedWhereverTheyAre) {
    Machine machine;
    machine.program("bin/prog");
    const std::string entry = "[Desktop Entry]\nType=Application\nName=Dropped\nExec=prog\n";
    machine.write("Desktop/ünï code.desktop", entry);
    machine.entry("kde/installed.desktop", "Name=Installed\nIcon=theicon\nExec=prog\n");
    machine.entry("~/masked.desktop");
    machine.entry("masked.desktop", "Name=Masked\nExec=prog\n");
    fs::create_symlink(machine.path("usr/share/applications/kde/installed.desktop"), machine.path("Desktop/l.desktop"));
    fs::create_symlink(machine.path("Desktop/loop.desktop"), machine.path("Desktop/loop.desktop"));
    machine.write("Desktop/link.desktop", "[Desktop Entry]\nType=Link\nName=Home page\n");
    machine.write("Desktop/broken.desktop", "rubbish");
    machine.write("Desktop/entry.txt", entry);
    machine.write("Desktop/evil\n\u202E.txt", "");
    fs::create_directories(machine.path("Desktop/folder.desktop"));
    fs::create_directories(machine.path("Desktop/empty.app"));
    ::mkfifo(machine.path("Desktop/fifo.desktop").c_str(), 0600);
    machine.write("Desktop/huge.desktop", entry);
    fs::resize_file(machine.path("Desktop/huge.desktop"), 100'000'000);
    machine.bundle("Desktop/Full.app",
                   "<key>CFBundleIdentifier</key><string>org.full</string><key>CFBundleName</key><string>Full "
                   "Name</string><key>CFBundleSignature</key><string>TSlt</string>"
                   "<key>CFBundleExecutable</key><string>full</string><key>CFBundleIconFile</key><string>pic</string>");
    machine.program("Desktop/Full.app/Contents/Linux/full");
    machine.write("Desktop/Full.app/Contents/Resources/pic.png", "");
    machine.bundle("Desktop/Outside.app", "<key>CFBundleExecutable</key><string>../../../../bin/prog</string>");
    const std::tuple<const char*, OSStatus, bool, const char*, const char*> cases[] = {
        {"Desktop/ünï code.desktop", kNoErr, true, "ünï code", "Dropped"},
        {"Desktop/l.desktop", kNoErr, true, "kde-installed", "Installed"},
        {"usr/share/applications/kde/installed.desktop", kNoErr, true, "kde-installed", "Installed"},
        {"usr/share/applications/masked.desktop", kNoErr, true, "masked", "Masked"},
        {"Desktop/Full.app", kNoErr, true, "org.full", "Full Name"},
        {"Desktop/Full.app//", kNoErr, true, "org.full", "Full Name"},
        {"Desktop/Outside.app", kNoErr, false, "none", "Outside"},
        {"Desktop/empty.app", kNoErr, false, "none", "empty.app"},
        {"Desktop/link.desktop", kNoErr, false, "link", "Home page"},
        {"Desktop/broken.desktop", kNoErr, false, "none", "broken.desktop"},
        {"Desktop/entry.txt", kNoErr, false, "none", "entry.txt"},
        {"Desktop/evil\n\u202E.txt", kNoErr, false, "none", "evil .txt"},
        {"Desktop/folder.desktop", kNoErr, false, "none", "folder.desktop"},
        {"Desktop/fifo.desktop", kNoErr, false, "none", "fifo.desktop"},
        {"Desktop/huge.desktop", kNoErr, false, "none", "huge.desktop"},
        {"Desktop", kNoErr, false, "none", "Desktop"},
        {"Desktop/loop.desktop", kIOErr, false, "none", "loop.desktop"},
        {"Desktop/missing.desktop", kFileNotFound, false, "none", "missing.desktop"},
        {"Desktop/entry.txt/x.desktop", kNotAFolder, false, "none", "x.desktop"},
    };
    LinuxApplications applications = machine.applications();
    for (const auto& [path, status, isNative, identifier, name] : cases) {
        CONTEXT(path);
        ItemInformation information;
        CHECK_EQ(applications.itemInformation(machine.path(path), information), status);
        CHECK_EQ(information.flags, isNative ? ItemInformation::kIsNativeApplication : 0u);
        CHECK_EQ(applications.bundleIdentifier(machine.path(path)).value_or("none"), identifier);
        CHECK_EQ(applications.displayName(machine.path(path)), name);
    }
    ItemInformation information;
    CHECK_EQ(applications.itemInformation("bin/prog", information), kParamErr);
    CHECK_EQ(applications.itemInformation("", information), kParamErr);
    CHECK_EQ(applications.displayName("/"), "/");
    fs::permissions(machine.path("Desktop/broken.desktop"), fs::perms::none);
    if (::geteuid() != 0)  // root reads everything
        CHECK_EQ(applications.itemInformation(machine.path("Desktop/broken.desktop"), information), kPermissionErr);
    applications.itemInformation(machine.path("Desktop/Full.app"), information);
    CHECK_EQ(information.creator, fourCharCode("TSlt"));
    const auto icon = [&](const char* path) {
        const auto application = applications.applicationAtPath(machine.path(path));
        return application ? application->iconName : "none";
    };
    CHECK_EQ(icon("Desktop/l.desktop"), "theicon");
    CHECK_EQ(icon("Desktop/Full.app"), machine.path("Desktop/Full.app/Contents/Resources/pic.png"));
    CHECK_EQ(icon("Desktop/link.desktop"), "none");
}

TEST(TheChooserOffersWhatCanBeAdded) {
    Machine machine;
    machine.program("bin/prog");
    machine.program("bin/wine");
    const std::string exec = "Exec=prog\n";
    machine.entry("1.desktop", "Name=zeta\n" + exec);
    machine.entry("2.desktop", "Name=Alpha\n" + exec);
    machine.entry("3.desktop", "Name=be\\nta\u202E\n" + exec);
    machine.entry("4.desktop", "Name=Wine\nExec=wine x\n");
    machine.entry("5.desktop", "Name=Silent\nNoDisplay=true\n" + exec);
    machine.entry("6.desktop", "Name=Here\nOnlyShowIn=GNOME;\n" + exec);
    machine.entry("7.desktop", "Name=Elsewhere\nOnlyShowIn=KDE;\n" + exec);
    machine.entry("9.desktop", "Name=Not here\nOnlyShowIn=GNOME;KDE;\nNotShowIn=ubuntu;\n" + exec);
    machine.entry("8.desktop", "Name=\\s\n" + exec);
    machine.bundle("home/Applications/Old.app", "<key>CFBundleName</key><string>Old</string>");
    machine.environment.currentDesktops = {"ubuntu", "GNOME"};
    const check::ScopedEnvironment locale("LC_ALL", "C");
    LinuxApplications applications = machine.applications();
    CHECK_EQ(names(applications.installedApplications()), "8.desktop|Alpha|be ta|Here|zeta|");
}

TEST(ProcessesBelongToTheEntryThatStartsThem) {
    Machine machine;
    for (const char* name : {"bin/office", "bin/python3", "opt/real"}) machine.program(name);
    fs::create_symlink(machine.path("opt/real"), machine.path("bin/alias"));
    machine.entry("a-writer.desktop", "Name=Writer\nExec=office --writer %U\n");
    machine.entry("b-start.desktop", "Name=Start\nExec=office %U\n");
    machine.entry("c-silent.desktop", "Name=Silent\nNoDisplay=true\nExec=office\n");
    machine.entry("d.desktop", "Name=Script\nExec=python3 script.py\n");
    machine.entry("e.desktop", "Name=Alias\nExec=env A=b alias\n");
    machine.bundle("Applications/Own.app", "<key>CFBundleExecutable</key><string>own</string>");
    machine.program("Applications/Own.app/Contents/Linux/own");
    LinuxApplications applications = machine.applications();
    const std::pair<const char*, const char*> cases[] = {
        {"bin/office", "Start"}, {"opt/real", "Alias"}, {"bin/python3", "none"},
        {"bin/missing", "none"}, {"bin/alias", "none"}, {"Applications/Own.app/Contents/Linux/own", "Own"},
    };
    for (const auto& [program, name] : cases) {
        const auto application = applications.applicationForProgram(machine.path(program));
        CHECK_EQ(application ? application->name : "none", name);
    }
}
