// Locks, launches, processes and dates on the machine itself.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdaterLaunch.h"
#include "linux/files/LinuxFiles.h"
#include "linux/processes/LinuxLauncher.h"
#include "linux/processes/LinuxProcesses.h"
#include "linux/processes/ProcessFiles.h"
#include "linux/system/FolderBundle.h"
#include "linux/system/LinuxDates.h"
#include "propertylist/Date.h"
#include "tests/store/StoreSupport.h"
#include "tests/updater/UpdaterFixture.h"
#ifdef HAVE_SYSTEMD
#include "tests/support/FakeLogind.h"
#endif

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>

using namespace platform;
using namespace propertylist;
using namespace linux;
namespace fs = std::filesystem;

namespace {

// Shared with the processes forked after it was made.
struct Meeting {
    std::atomic<int> ready, inside, locks, meetings, odd;
};

// Takes the lock again and again, and looks who else is between lock and unlock.
void meet(Meeting& meeting, LinuxLauncher& launcher, const std::string& lock) {
    for (int call = 0; call < 20; ++call) {
        OSStatus status = kNoErr;
        auto created = launcher.createFile(lock, status);
        if (!created && status != kDuplicateFile) ++meeting.odd;
        if (!created) continue;
        ++meeting.locks;
        if (++meeting.inside > 1) ++meeting.meetings;
        for (int i = 0; i < 20; ++i) sched_yield();
        --meeting.inside;
        if (created->remove() != kNoErr) ++meeting.odd;
    }
}

void makeBundle(const std::string& path, const std::string& identifier, const std::string& executable) {
    check::writeFile(path + "/Contents/Info.plist",
                     "<plist><dict><key>CFBundleIdentifier</key><string>" + identifier +
                         "</string><key>CFBundleName</key><string>M</string><key>CFBundleExecutable</key><string>" +
                         executable + "</string></dict></plist>");
}

struct Machine {
    check::TemporaryFolder folder;
    check::ScopedEnvironment root{"TYPESLATE_ROOT", folder.path().c_str()};
    std::string temporary = folder / "tmp";
    std::string modulePath = folder / "M.plinth";
    std::string updaterPath = modulePath + "/Contents/Resources/Tarnwick Updater.app";
    linux::LinuxFiles files;
    fake::World world;
    std::unique_ptr<FolderBundle> module;

    Machine() {
        makeBundle(modulePath, "m", "m");
        makeBundle(updaterPath, "u", "updater");
        module = FolderBundle::open(modulePath);
    }
    twvc::UpdateServices services(Launcher& launcher) {
        return {world.bundles, world.preferences, files,         world.system, world.processes,
                launcher,      world.dates,       world.runLoop, world.log};
    }
    void writeProgram(std::string_view text, mode_t mode = 0755) {
        std::string program = updaterPath + "/Contents/Linux/updater";
        check::writeFile(program, text);
        ::chmod(program.c_str(), mode);
    }
};

}  // namespace

TEST(AHundredProcessesNeverMeetUnderOneLock) {
    constexpr int kProcesses = 100;
    check::TemporaryFolder folder;
    LinuxLauncher launcher;
    void* memory = mmap(nullptr, sizeof(Meeting), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    Meeting& meeting = *new (memory) Meeting();
    std::vector<pid_t> children;
    for (int i = 0; i < kProcesses; ++i)
        children.push_back(check::start([&] {
            for (++meeting.ready; meeting.ready < kProcesses;) sched_yield();
            meet(meeting, launcher, folder / "x.updater.lock");
            return true;
        }));
    for (pid_t child : children) CHECK(check::succeeded(child));
    CHECK_EQ(meeting.meetings.load(), 0);
    CHECK_EQ(meeting.odd.load(), 0);
    CHECK(meeting.locks > 0 && fs::is_empty(folder.path()));
}

TEST(WhatStandsAtTheLocksPathIsNeitherFollowedNorRemoved) {
    Machine machine;
    fs::create_directories(machine.temporary);
    const std::string lock = machine.temporary + "/m.updater.lock", other = machine.folder / "other";
    const check::ScopedEnvironment path("L", lock.c_str()), elsewhere("O", other.c_str());
    LinuxLauncher launcher;
    twvc::UpdateServices services = machine.services(launcher);
    for (const char* make :
         {"echo theirs > $L", "touch $L && { [ $(id -u) != 0 ] || chown 12345:12345 $L; }", "mkdir $L",
          "printf kept > $O; ln -s $O $L", "ln -s $O-nowhere $L", "ln -s $L $L", "mkfifo $L"}) {
        CONTEXT(make);
        REQUIRE(std::system(make) == 0);
        fs::file_type before = fs::symlink_status(lock).type();
        CHECK_EQ(twvc::runUpdater(services, machine.module.get(), "m", nullptr), kDuplicateFile);
        CHECK(fs::symlink_status(lock).type() == before);
        CHECK_EQ(twvc::runUpdater(services, machine.module.get(), "another", nullptr), kNoErr);
        fs::remove(lock);
    }
    CHECK_EQ(check::readFile(other), "kept");
    CHECK(!fs::exists(other + "-nowhere"));

    OSStatus status = kNoErr;
    auto created = launcher.createFile(lock, status);
    REQUIRE(created);
    struct stat made;
    CHECK(::stat(lock.c_str(), &made) == 0 && (made.st_mode & 0777) == 0600 && made.st_size == 0);
    fs::rename(lock, other);
    CHECK_EQ(created->remove(), kFileNotFound);
    check::writeFile(lock, "theirs");
    CHECK_EQ(created->remove(), kFileNotFound);
    CHECK_EQ(check::readFile(lock), "theirs");
    CHECK(!launcher.createFile(lock + "/below", status) && status == kNotAFolder);
    CHECK(!launcher.createFile("relative", status) && status == kParamErr);
    CHECK_EQ(launcher.makeFolder(lock), kNotAFolder);
}

TEST(AnUpdaterGetsThePathAndIsNobodysChild) {
    Machine machine;
    const std::string fifo = machine.folder / "answer";
    REQUIRE(::mkfifo(fifo.c_str(), 0600) == 0);
    machine.writeProgram(
        "#!/bin/sh\nstate=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/9; grep SigIgn /proc/$$/status)\n"
        "printf '%s|%s|%s|%s' \"$#\" \"$1\" \"$(cut -d' ' -f6 /proc/$$/stat)\" \"$state\" > '" + fifo + "'\n");
    int inherited = ::fcntl(::fileno(stderr), F_DUPFD, 9);  // not to be closed by a mere execve
    const std::string argument = machine.folder / "a module; $(exit) \"quoted\"\nline";
    LinuxLauncher launcher;
    for (auto handler : {SIG_DFL, SIG_IGN, +[](int) {
                             const int error = errno;
                             while (::waitpid(-1, nullptr, WNOHANG) > 0) {
                             }
                             errno = error;
                         }}) {
        auto old = std::signal(SIGCHLD, handler);
        CHECK_EQ(launcher.launchApplication(machine.updaterPath, argument), kNoErr);
        std::string answer = check::readFile(fifo);
        std::string session = "|" + std::to_string(::getsid(0)) + "|";
        CHECK(answer.starts_with("1|" + argument + "|") && answer.find(session) == answer.npos);
        CHECK(answer.ends_with("|/dev/null\n/dev/null\nSigIgn:\t0000000000000000"));
        CHECK(::waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD);
        std::signal(SIGCHLD, old);
    }
    ::close(inherited);
}

TEST(UpdatersThatCannotRun) {
    Machine machine;
    LinuxLauncher launcher;
    auto launch = [&] { return launcher.launchApplication(machine.updaterPath, "x"); };
    CHECK_EQ(launch(), kFileNotFound);
    machine.writeProgram("#!/nowhere/interpreter\n");
    CHECK_EQ(launch(), kFileNotFound);
    machine.writeProgram("touch '" + machine.folder / "shell" + "'\n");  // no shell may take it for a script
    CHECK_EQ(launch(), kIOErr);
    machine.writeProgram("#!/bin/sh\n", 0600);
    CHECK_EQ(launch(), kPermissionErr);
    makeBundle(machine.updaterPath, "u", "../../updater");
    CHECK_EQ(launch(), kFileNotFound);
    CHECK_EQ(launcher.launchApplication(machine.folder / "none.app", "x"), kFileNotFound);
    CHECK(!fs::exists(machine.folder / "shell"));
    CHECK(::waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD);
}

TEST(ProcessesTheirBundlesAndTheirAge) {
    LinuxApplications applications;
    LinuxProcesses processes(applications);
    std::vector<ProcessID> all = processes.runningProcesses();
    CHECK(std::ranges::binary_search(all, processes.currentProcess()));
    struct timespec now;
    ::clock_gettime(CLOCK_REALTIME, &now);
    auto launched = processes.launchDate(processes.currentProcess());
    REQUIRE(launched);
    double age = static_cast<double>(now.tv_sec) + 1 - static_cast<double>(launched->microseconds) / 1e6;
    CHECK(age > 0 && age < 3600);
    CHECK(!processes.launchDate(-1) && !processes.bundlePath(-1) && !processes.bundleIdentifier(-1));

    for (auto [program, bundle] : {std::pair{"/a/B.app/Contents/Linux/b", "/a/B.app"},
                                   {"/M.plinth/R/U.app/x", "/M.plinth/R/U.app"},
                                   {"/usr/bin/app", ""},
                                   {"", ""},
                                   {"/x.app", ""}})
        CHECK_EQ(bundleAround(program).value_or(""), bundle);

    CHECK_EQ(startTicksIn("7 (a) b) S 3 7 7 0 -1 4194560 1 0 0 0 0 0 0 0 20 0 1 0 4711 1 2").value_or(0), 4711);
    for (const char* bad : {"", "7 (a", "7 (a) S", "7 (a) S 3 7 7 0 -1 4194560 1 0 0 0 0 0 0 0 20 0 1 0 x 1 2"})
        CHECK(!startTicksIn(bad));
}

#ifdef HAVE_SYSTEMD
TEST(TheSessionsLeaderIsTheLoginWindow) {
    LinuxApplications applications;
    auto identifier = [&](ProcessID process) { return LinuxProcesses(applications).bundleIdentifier(process); };
    for (std::uint32_t leader : {static_cast<std::uint32_t>(::getppid()), 0U}) {
        check::FakeLogind logind(leader);
        CHECK_EQ(sessionLeader().value_or(0), leader);
        CHECK_EQ(identifier(::getppid()) == kLoginWindowIdentifier, leader != 0);
        CHECK(identifier(::getpid()) != kLoginWindowIdentifier);
    }
    check::ScopedEnvironment nobody("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere");
    CHECK(!sessionLeader());
}
#endif

TEST(DatesInTheUsersLanguage) {
    check::ScopedEnvironment zone("TZ", "UTC");
    LinuxDates dates;
    const Date date = *dateFromISO8601("2026-01-31T15:04:05Z");
    auto text = [&](const char* language, DateStyle day, DateStyle time) {
        check::ScopedEnvironment all("LC_ALL", language);
        return dates.string(date, day, time).value_or("(nothing)");
    };
    CHECK_EQ(text("de_DE.UTF-8", DateStyle::None, DateStyle::None), "");
    for (const char* language : {"C", "nonsense", "", "de_DE@euro", "../../x"})
        CHECK(text(language, DateStyle::Medium, DateStyle::None).find("2026") != std::string::npos);
    for (Date far : {Date{INT64_MIN}, Date{INT64_MAX}}) CHECK(dates.string(far, DateStyle::Full, DateStyle::Full));
#ifdef HAVE_ICU
    CHECK_EQ(text("de_DE.UTF-8", DateStyle::Full, DateStyle::None), "Samstag, 31. Januar 2026");
    CHECK_EQ(text("de_DE.UTF-8", DateStyle::Short, DateStyle::Short), "31.01.26, 15:04");
    CHECK_EQ(text("C", DateStyle::Long, DateStyle::None), "January 31, 2026");
    CHECK_EQ(text("C", DateStyle::Short, DateStyle::None), "1/31/26");
#endif
}
