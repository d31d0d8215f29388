// The helper: its watch in this process, itself in a session of the test's own; and the request to quit.
#include "host/helper/HelperLock.h"
#include "linux/preferences/DomainWatch.h"
#include "linux/processes/LinuxProcesses.h"
#include "settings/EntryList.h"
#include "tests/store/StoreSupport.h"
#include "tests/support/FakeLogind.h"

#include <fcntl.h>
#include <poll.h>

#include <csignal>
#include <fstream>

using namespace platform;
using namespace linux;
namespace fs = std::filesystem;

namespace {

// A program, and what it writes to standard error.
struct Child {
    explicit Child(const std::string& program) {
        int ends[2];
        REQUIRE(::pipe2(ends, O_CLOEXEC) == 0);
        process = check::start([&] {
            for (int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(ends[1], stream);
            return ::execl(program.c_str(), "sleep", "1000", nullptr) == 0;
        });
        ::close(ends[1]);
        errors = ends[0];
    }
    ~Child() {
        if (process > 0) end(SIGKILL);
        ::close(errors);
    }
    int end(int signal) {
        int status = 0;
        ::kill(process, signal);
        ::waitpid(std::exchange(process, -1), &status, 0);
        return status;
    }
    // The next line; empty when it has ended, or says nothing for far too long.
    std::string line() {
        std::string text;
        pollfd wait = {errors, POLLIN, 0};
        for (char c = 0; ::poll(&wait, 1, 10'000) == 1 && ::read(errors, &c, 1) == 1 && c != '\n';) text += c;
        return text;
    }
    pid_t process = -1;
    int errors = -1;
};

struct Home {
    check::TemporaryFolder home;
    check::ScopedEnvironment config{"XDG_CONFIG_HOME", (home / "config").c_str()},
        root{"TYPESLATE_ROOT", home.path().c_str()}, watched{"TYPESLATE_LOG", "stderr"};
    check::RecordingLog log;
    DiskPreferences preferences{preferencesFolder(), log};
    std::string file = preferencesFolder() + "/com.tarnwick.typeslate.plist";

    void set(std::string_view key, const PropertyList& value) {
        preferences.setValue(key, value, settings::kSettingsDomain);
        CHECK(preferences.synchronize(settings::kSettingsDomain));
    }
};

}  // namespace

TEST(TheWatchMissesNothing) {
    for (const char* link : {"", "../../dotfiles/t", "hop"}) {
        CONTEXT(link);
        Home h;
        fs::create_directories(h.home / "dotfiles");
        fs::create_directories(preferencesFolder());
        fs::create_symlink("../../dotfiles/t", preferencesFolder() + "/hop");
        if (*link) fs::create_symlink(link, h.file);  // it leads nowhere yet
        DiskPreferences own(preferencesFolder(), h.log);
        DomainWatch watch(own, std::string(settings::kSettingsDomain));
        using Outcome = DomainWatch::Outcome;
        auto entriesAfter = [&](Outcome outcome) {
            CHECK(watch.takeIn() == outcome);
            return watch.values()[settings::kEntryListKey].size();
        };
        // Another file's changes are no news, a change of the settings is, and is told once.
        h.preferences.setValue("key", 1, "another");
        CHECK(h.preferences.synchronize("another") && watch.takeIn() == Outcome::Same);
        h.set(settings::kLogStuffKey, true);
        CHECK(watch.takeIn() == Outcome::Changed && watch.takeIn() == Outcome::Same);
        h.set(settings::kEntryListKey, PropertyList::array({1, 2, 3}));
        CHECK_EQ(entriesAfter(Outcome::Changed), 3u);
        // Far more events than the kernel keeps: the one about the settings is not among those that are kept.
        std::size_t most = 0;
        std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> most;
        for (std::size_t i = 0; i <= most; ++i) std::ofstream(preferencesFolder() + "/" + std::to_string(i % 2));
        h.set(settings::kDisabledKey, true);
        CHECK_EQ(entriesAfter(Outcome::Changed), 3u);
        fs::remove(h.file);
        fs::create_symlink("../../dotfiles/u", h.file);
        CHECK_EQ(entriesAfter(Outcome::Changed), 0u);
        DiskPreferences other(preferencesFolder(), h.log);  // which has nothing open whose closing would be an event
        other.setValue(settings::kLogStuffKey, true, settings::kSettingsDomain);
        CHECK(other.synchronize(settings::kSettingsDomain) && watch.takeIn() == Outcome::Changed);
        fs::rename(preferencesFolder(), h.home / "gone");
        CHECK(watch.takeIn() == Outcome::Gone);
    }
}

TEST(OneHelperRunsUntilItsSessionEnds) {
    for (const char* ending : {"session", "signal", "folder"}) {
        CONTEXT(ending);
        Home h;
        bool isFolder = ending == std::string_view("folder"), isSession = ending == std::string_view("session");
        check::ScopedEnvironment runtime{"XDG_RUNTIME_DIR", (isFolder ? h.home.path() : h.home / "none").c_str()};
        Child leader("/bin/sleep");
        check::FakeLogind logind(static_cast<std::uint32_t>(leader.process));
        h.set(settings::kLogStuffKey, true);
        Child helper(HELPER_PROGRAM);
        CHECK_EQ(helper.line(), "[Typeslate] Took in the settings: 0 entries, enabled");
        CHECK_EQ(Child(HELPER_PROGRAM).line(), "");  // a second one leaves without a word
        h.set(settings::kDisabledKey, true);
        CHECK_EQ(helper.line(), "[Typeslate] Took in the settings: 0 entries, disabled");
        for (auto [own, place] : {std::pair{"cwd", "/"}, {"fd/0", "/dev/null"}, {"fd/1", "/dev/null"}})
            CHECK_EQ(fs::read_symlink("/proc/" + std::to_string(helper.process) + "/" + own).string(), place);
        CHECK(fs::exists((isFolder ? h.home.path() : preferencesFolder()) + "/.com.tarnwick.typeslate.helper.lock"));
        CHECK_EQ(helper::takeHelperLock().error(), EWOULDBLOCK);
        if (isSession) leader.end(SIGKILL);
        if (isFolder) fs::remove_all(preferencesFolder());
        CHECK_EQ(helper.end(isSession || isFolder ? 0 : SIGHUP), 0);
        CHECK(helper::takeHelperLock() && helper.line().empty());
    }
}

TEST(AnUpgradedHelperGoesOnAsTheNewProgram) {
    Home h;
    h.set(settings::kLogStuffKey, true);
    const std::string program = h.home / "TS", next = h.home / "next";
    fs::copy(HELPER_PROGRAM, program);
    Child helper(program);
    CHECK_EQ(helper.line(), "[Typeslate] Took in the settings: 0 entries, enabled");
    fs::copy(HELPER_PROGRAM, next);
    check::writeFile(h.home / "beside", "");  // is nothing to begin anew for
    fs::permissions(next, fs::perms::owner_read);
    fs::rename(next, program);  // and becomes executable when it has been seen
    h.set(settings::kDisabledKey, true);
    CHECK_EQ(helper.line(), "[Typeslate] Took in the settings: 0 entries, disabled");
    fs::permissions(program, fs::perms::owner_all);
    CHECK_EQ(helper.line(), "[Typeslate] Took in the settings: 0 entries, disabled");
    CHECK(fs::equivalent("/proc/" + std::to_string(helper.process) + "/exe", program));
    CHECK_EQ(helper::takeHelperLock().error(), EWOULDBLOCK);
    check::writeFile(next, "no program");  // which leaves it as it is
    fs::permissions(next, fs::perms::owner_all);
    fs::rename(next, program);
    h.set(settings::kDisabledKey, false);
    CHECK_EQ(helper.line(), "[Typeslate] Took in the settings: 0 entries, enabled");
    CHECK_EQ(helper.end(SIGTERM), 0);
}

TEST(AQuitRequestReachesNobodyElse) {
    check::TemporaryFolder folder;
    fs::create_directories(folder / "S.app/Contents/Linux");
    fs::copy("/bin/sleep", folder / "S.app/Contents/Linux/sleep");
    check::writeFile(folder / "S.app/Contents/Info.plist",
                     "<plist><dict><key>CFBundleIdentifier</key><string>s</string></dict></plist>");
    LinuxApplications applications;
    LinuxProcesses processes(applications);
    Child sleeper(folder / "S.app/Contents/Linux/sleep");
    while (!processes.bundleFolder(sleeper.process)) sched_yield();
    auto number = processes.serialNumber(sleeper.process);
    REQUIRE(number);
    CHECK(!processes.postQuitRequest({number->high + 1, number->low}, "s"));  // its id is another's by now
    CHECK(!processes.postQuitRequest(*number, "S") && ::waitpid(sleeper.process, nullptr, WNOHANG) == 0);
    CHECK(processes.postQuitRequest(*number, "s"));
    pid_t process = sleeper.process;
    CHECK_EQ(sleeper.end(0), SIGTERM);
    CHECK(!processes.postQuitRequest(*number, "s") && !processes.serialNumber(process));
}
