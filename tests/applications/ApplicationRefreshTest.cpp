// What the index takes in when the disk changes under it, and what hostile folders cannot do to it.
#include "Machine.h"

#include <sys/stat.h>

using namespace platform;
using namespace linux;

namespace {

constexpr auto kSoon = ApplicationIndex::kFolderInterval;
constexpr auto kLate = ApplicationIndex::kFileInterval;

}  // namespace

TEST(ChangesOnTheDiskAreTakenIn) {
    Machine machine;
    machine.program("bin/prog");
    machine.entry("a.desktop");
    LinuxApplications applications = machine.applications();
    const auto find = [&](const std::string& identifier) {
        return machine.relative(applications.findApplication({{}, identifier, ""}));
    };
    const auto file = [&](std::string_view name) { return machine.path(machine.entryPath(name)); };
    const std::string a = machine.entryPath("a.desktop");
    const auto entryAt = [&](const char* name) { return machine.entryPath(name); };
    const auto describe = [&](const std::string& identifier) {
        machine.bundle("Applications/E.app", "<key>CFBundleIdentifier</key><string>" + identifier + "</string>");
    };
    const auto hide = [&] {
        machine.write("new", "[Desktop Entry]\nHidden=true\n");
        fs::rename(machine.path("new"), file("b.desktop"));
    };
    const auto moveBundle = [&] {
        fs::create_directories(machine.path("home/Applications"));
        fs::rename(machine.path("Applications/E.app"), machine.path("home/Applications/E.app"));
    };
    const struct {
        const char* label;
        std::function<void()> change;
        std::chrono::milliseconds wait;
        const char* identifier;
        std::string path;
    } steps[] = {
        {"the first look", [] {}, {}, "a", a},
        {"a new file, too soon", [&] { machine.entry("b.desktop"); }, kSoon / 2, "b", "none"},
        {"a new file", [] {}, kSoon / 2, "b", entryAt("b.desktop")},
        {"a folder that was not there", [&] { machine.entry("~/a.desktop"); }, kSoon, "a", entryAt("~/a.desktop")},
        {"a file removed", [&] { fs::remove(file("~/a.desktop")); }, kSoon, "a", a},
        {"a subfolder", [&] { machine.entry("sub/c.desktop"); }, kSoon, "sub-c", entryAt("sub/c.desktop")},
        {"a new file in it", [&] { machine.entry("sub/d.desktop"); }, kSoon, "sub-d", entryAt("sub/d.desktop")},
        {"moved, the identifier kept", [&] { fs::rename(file("sub/d.desktop"), file("sub-d.desktop")); }, kSoon,
         "sub-d", entryAt("sub-d.desktop")},
        {"a subfolder removed", [&] { fs::remove_all(file("sub")); }, kSoon, "sub-c", "none"},
        {"replaced by one that is hidden", hide, kSoon, "b", "none"},
        {"a bundle", [&] { describe("e"); }, kSoon, "e", "Applications/E.app"},
        {"a bundle described anew", [&] { describe("f"); }, kLate, "f", "Applications/E.app"},
        {"a bundle moved", moveBundle, kSoon, "f", "home/Applications/E.app"},
        {"a link whose target comes later", [&] { fs::create_symlink(machine.path("target"), file("g.desktop")); },
         kSoon, "g", "none"},
        {"its target", [&] { fs::copy_file(file("a.desktop"), machine.path("target")); }, kLate, "g",
         entryAt("g.desktop")},
        {"a program removed", [&] { fs::remove(machine.path("bin/prog")); }, kSoon, "a", "none"},
        {"a program installed", [&] { machine.program("bin/prog"); }, kSoon, "a", a},
        {"everything removed", [&] { fs::remove_all(machine.path("usr")); }, kSoon, "a", "none"},
    };
    for (const auto& step : steps) {
        CONTEXT(step.label);
        step.change();
        machine.pass(step.wait);
        CHECK_EQ(find(step.identifier), step.path);
    }
}

TEST(FilesWrittenInPlaceAreNoticedLaterOrByTheChooser) {
    Machine machine;
    machine.program("bin/prog");
    machine.entry("a.desktop", "Name=Old\nExec=prog\n");
    LinuxApplications applications = machine.applications();
    const std::string path = machine.path(machine.entryPath("a.desktop"));
    CHECK_EQ(applications.displayName(path), "Old");
    machine.entry("a.desktop", "Name=Renamed\nExec=prog\n");
    machine.pass(kLate);
    CHECK_EQ(applications.displayName(path), "Renamed");
    machine.entry("a.desktop", "Name=Again renamed\nExec=prog\n");
    CHECK_EQ(applications.installedApplications().at(0).name, "Again renamed");
    CHECK_EQ(machine.relative(applications.findApplication({{}, "", "Again renamed.app"})),
             machine.entryPath("a.desktop"));
}

TEST(HostileFoldersAreSurvived) {
    Machine machine;
    machine.program("bin/prog");
    const std::string folder = machine.path("usr/share/applications");
    machine.entry("sub/good.desktop", "Name=Good\nExec=prog\n");
    for (const char* loop : {"up", "sub/up", "sub/round", "sub/self"}) fs::create_symlink(folder, folder + "/" + loop);
    fs::create_symlink("loop.desktop", folder + "/loop.desktop");
    ::mkfifo((folder + "/fifo.desktop").c_str(), 0600);
    fs::create_symlink("/dev/zero", folder + "/zero.desktop");
    fs::create_symlink("fifo.desktop", folder + "/fifolink.desktop");
    fs::create_directories(folder + "/folder.desktop");
    machine.write("usr/share/applications/huge.desktop", "[Desktop Entry]\nType=Application\nName=Huge\nExec=prog\n");
    fs::resize_file(folder + "/huge.desktop", 100'000'000);
    machine.write("usr/share/applications/line.desktop", "[Desktop Entry]\n" + std::string(1 << 20, 'x'));
    machine.write("usr/share/applications/binary.desktop", std::string("\177ELF\0\0\xFF\xFE", 8));
    machine.entry("new\nline\u202E.desktop", "Name=\\n\nExec=prog\n");
    machine.entry("bytes\xFF.desktop", "Name=Bytes\nExec=prog\n");
    std::string deep;
    for (int i = 0; i < 40; ++i) deep += "d/";
    machine.entry(deep + "deep.desktop");
    fs::create_directories(machine.path("Applications"));
    fs::create_symlink(".", machine.path("Applications/Self.app"));
    machine.bundle("Applications/Big.app", std::string(2 << 20, ' '));

    LinuxApplications applications = machine.applications();
    std::string shown;
    for (const InstalledApplication& application : applications.installedApplications())
        shown += application.name + "=" + machine.relative(application.path) + "|";
    CHECK_EQ(shown,
             "Bytes=usr/share/applications/bytes\xFF.desktop|Good=usr/share/applications/sub/good.desktop|"
             "new line.desktop=usr/share/applications/new\nline\u202E.desktop|");
}

TEST(OnlySoManyFoldersAreWatched) {
    Machine machine;
    machine.program("bin/prog");
    for (std::size_t i = 0; i < ApplicationScan::kMaximumFolders + 50; ++i)
        fs::create_directories(machine.path("usr/share/applications/") + std::to_string(i));
    machine.entry("top.desktop");
    ApplicationScan scan(machine.environment);
    CHECK(scan.refresh(false));
    CHECK_EQ(scan.folders().size(), ApplicationScan::kMaximumFolders);
    LinuxApplications applications = machine.applications();
    CHECK(applications.findApplication({{}, "top", ""}).has_value());
}

TEST(OnlyWhatChangedIsReadAgain) {
    Machine machine;
    machine.entry("kept.desktop");
    machine.entry("sub/also.desktop");
    ApplicationScan scan(machine.environment);
    const auto record = [&](std::size_t folder, std::size_t file) {
        return scan.folders()[folder].files.at(file).record;
    };
    scan.refresh(false);
    const auto kept = record(1, 0), also = record(2, 0);
    CHECK(!scan.refresh(false));
    CHECK(!scan.refresh(true));
    machine.entry("new.desktop");
    CHECK(scan.refresh(false));
    CHECK(record(1, 0) == kept && record(1, 1) != nullptr && record(2, 0) == also);
    machine.entry("kept.desktop", "Name=Changed\n");
    CHECK(scan.refresh(true));
    CHECK(record(1, 0) != kept && record(2, 0) == also);
}
