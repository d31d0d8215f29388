// Locks, launches, processes and dates on the machine itself.
#include "linux/processes/ApplicationUnits.h"
#include "linux/processes/LinuxLauncher.h"
#include "linux/processes/LinuxProcesses.h"
#include "linux/processes/ProcessFiles.h"
#include "linux/system/LinuxDates.h"
#include "propertylist/Date.h"
#include "tests/store/StoreSupport.h"
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
#include <ctime>
#include <filesystem>

using namespace platform;
using namespace propertylist;
using namespace linux;
namespace fs = std::filesystem;

namespace {

// Shared with the processes forked after it was made.
struct Meeting {
    std::atomic<int> ready, inside, locks, wrong;
};

// Takes the lock again and again, and looks who else is between lock and unlock.
bool meet(Meeting& meeting, LinuxLauncher& launcher, const std::string& lock) {
    for (int call = 0; call < 20; ++call) {
        OSStatus status = kNoErr;
        auto created = launcher.createFile(lock, status);
        if (!created) meeting.wrong += status != kDuplicateFile;
        if (!created) continue;
        ++meeting.locks;
        meeting.wrong += ++meeting.inside > 1;
        for (int i = 0; i < 20; ++i) sched_yield();
        --meeting.inside;
        meeting.wrong += created->remove() != kNoErr;
    }
    return true;
}

struct Updater {
    check::TemporaryFolder folder;
    std::string path = folder / "Tarnwick Updater.app";
    LinuxLauncher launcher;

    explicit Updater(const char* program = "updater") {
        check::writeFile(
            path + "/Contents/Info.plist",
            std::string("<plist><dict><key>CFBundleExecutable</key><string>") + program + "</string></dict></plist>");
    }
    void write(std::string_view text, mode_t mode = 0755) {
        const std::string program = path + "/Contents/Linux/updater";
        check::writeFile(program, text);
        ::chmod(program.c_str(), mode);
    }
    OSStatus launch(const std::string& argument = "x") { return launcher.launchApplication(path, argument); }
};

bool hasNoChild() { return ::waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD; }

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
            return meet(meeting, launcher, folder / "x.updater.lock");
        }));
    for (pid_t child : children) CHECK(check::succeeded(child));
    CHECK(meeting.wrong == 0 && meeting.locks > 0 && fs::is_empty(folder.path()));
}

TEST(WhatStandsAtTheLocksPathIsNeitherFollowedNorRemoved) {
    check::TemporaryFolder folder;
    const std::string lock = folder / "m.updater.lock", other = folder / "other";
    const check::ScopedEnvironment path("L", lock.c_str()), elsewhere("O", other.c_str());
    LinuxLauncher launcher;
    OSStatus status = kNoErr;
    for (const char* make :
         {"echo theirs > $L", "touch $L && { [ $(id -u) != 0 ] || chown 12345:12345 $L; }", "mkdir $L",
          "printf kept > $O; ln -s $O $L", "ln -s $O-nowhere $L", "ln -s $L $L", "mkfifo $L"}) {
        CONTEXT(make);
        REQUIRE(std::system(make) == 0);
        const fs::file_type before = fs::symlink_status(lock).type();
        CHECK(!launcher.createFile(lock, status) && status == kDuplicateFile);
        CHECK(fs::symlink_status(lock).type() == before);
        fs::remove(lock);
    }
    CHECK(check::readFile(other) == "kept" && !fs::exists(other + "-nowhere"));

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
    Updater updater;
    const std::string fifo = updater.folder / "answer";
    REQUIRE(::mkfifo(fifo.c_str(), 0600) == 0);
    // The C library keeps two signals to itself, which what starts the test may have ignored and nobody can set back.
    updater.write(
        "#!/bin/sh\nstate=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2 /proc/$$/fd/9; grep SigIgn "
        "/proc/$$/status | sed s/180000000$/000000000/)\n"
        "printf '%s|%s|%s|%s' \"$#\" \"$1\" \"$(cut -d' ' -f6 /proc/$$/stat)\" \"$state\" > '" +
        fifo + "'\n");
    std::signal(SIGUSR1, SIG_IGN);
    int inherited = ::fcntl(::fileno(stderr), F_DUPFD, 9);  // not to be closed by a mere execve
    const std::string argument = updater.folder / "a module; $(exit) \"quoted\"\nline";
    auto reap = +[](int) {
        const int error = errno;
        while (::waitpid(-1, nullptr, WNOHANG) > 0) continue;
        errno = error;
    };
    for (auto handler : {SIG_DFL, SIG_IGN, reap}) {
        auto old = std::signal(SIGCHLD, handler);
        CHECK_EQ(updater.launch(argument), kNoErr);
        const std::string answer = check::readFile(fifo), session = "|" + std::to_string(::getsid(0)) + "|";
        CHECK(answer.starts_with("1|" + argument + "|") && answer.find(session) == answer.npos);
        CHECK(answer.ends_with("|/dev/null\n/dev/null\n/dev/null\nSigIgn:\t0000000000000000"));
        CHECK(hasNoChild());
        std::signal(SIGCHLD, old);
    }
    ::close(inherited);
    std::signal(SIGUSR1, SIG_DFL);
}

TEST(UpdatersThatCannotRun) {
    Updater updater, outside("../../updater");
    CHECK(updater.launch() == kFileNotFound && outside.launch() == kFileNotFound);
    CHECK_EQ(updater.launcher.launchApplication(updater.folder / "none.app", "x"), kFileNotFound);
    const std::string shell = updater.folder / "shell";
    updater.write("#!/nowhere/interpreter\n");
    CHECK_EQ(updater.launch(), kFileNotFound);
    updater.write("touch '" + shell + "'\n");  // no shell may take it for a script
    CHECK_EQ(updater.launch(), kIOErr);
    updater.write("#!/bin/sh\n", 0600);
    CHECK_EQ(updater.launch(), kPermissionErr);
    CHECK(!fs::exists(shell) && hasNoChild());
}

TEST(ProcessesTheirBundlesAndTheirAge) {
    LinuxApplications applications;
    LinuxProcesses processes(applications);
    std::vector<ProcessID> all = processes.runningProcesses();
    CHECK(std::ranges::binary_search(all, processes.currentProcess()));
    auto launched = processes.launchDate(processes.currentProcess());
    REQUIRE(launched);
    const double age = std::difftime(std::time(nullptr), launched->microseconds / 1'000'000);
    CHECK(age > -2 && age < 3600);
    CHECK(!processes.launchDate(-1) && !processes.bundlePath(-1) && !processes.bundleIdentifier(-1));

    for (auto [program, bundle] : {std::pair{"/a/B.app/Contents/Linux/b", "/a/B.app"},
                                   {"/M.plinth/R/U.app/x", "/M.plinth/R/U.app"},
                                   {"/usr/bin/app", ""},
                                   {"", ""},
                                   {"/x.app", ""}})
        CHECK_EQ(bundleAround(program).value_or(""), bundle);

    for (auto [group, identifier] :
         {std::pair{"0::/user.slice/app.slice/app-gnome-org.gnome.Files-1234.scope\n", "org.gnome.Files"},
          {"0::/app-org.kde.kate-7.scope", "org.kde.kate"},
          {"0::/a/app-gnome-firefox\\x2desr-9.scope", "firefox-esr"},
          {"0::/a/app-org.kde.konsole@0f3a.service", "org.kde.konsole"},
          {"0::/a/app-flatpak-org.x.Y.service", "org.x.Y"},
          {"0::/a/app-cut\\x2-9.scope", "cut\\x2"},
          {"0::/a/snap.code-x.code-5b2f0c39-0e6c-4a1f-8f5d-1d0a7c9b3e11.scope", "code-x_code"},
          {"0::/a/snap.short.scope", ""},
          {"0::/a/app.slice", ""},
          {"0::/a/app-x.slice", ""},
          {"", ""}})
        CHECK_EQ(applicationOfControlGroup(group), identifier);

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
    using enum DateStyle;
    check::ScopedEnvironment zone("TZ", "UTC");
    LinuxDates dates;
    const Date date = *dateFromISO8601("2026-01-31T15:04:05Z");
    auto text = [&](const char* language, DateStyle day, DateStyle time) {
        check::ScopedEnvironment all("LC_ALL", language);
        return dates.string(date, day, time).value_or("(nothing)");
    };
    CHECK_EQ(text("de_DE.UTF-8", None, None), "");
    for (const char* language : {"C", "nonsense", "", "de_DE@euro", "../../x"})
        CHECK(text(language, Medium, None).find("2026") != std::string::npos);
    for (Date far : {Date{INT64_MIN}, Date{INT64_MAX}}) CHECK(dates.string(far, Full, Full));
#ifdef HAVE_ICU
    CHECK_EQ(text("de_DE.UTF-8", Full, None), "Samstag, 31. Januar 2026");
    CHECK_EQ(text("de_DE.UTF-8", Short, Short), "31.01.26, 15:04");
    CHECK_EQ(text("C", Long, None), "January 31, 2026");
    CHECK_EQ(text("C", Short, None), "1/31/26");
#endif
}
