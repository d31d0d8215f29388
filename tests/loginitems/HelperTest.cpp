// The real helper, as the pane starts and stops it. It is copied into the test's folder, and only what runs from there
// is seen: the machine may have helpers of its own.
#include "platform/linux/FolderBundle.h"
#include "platform/linux/LinuxProcesses.h"
#include "tests/pane/PaneFixture.h"

#include "platform/linux/DiskPreferences.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

using namespace platform;
using namespace platform::posix;
namespace fs = std::filesystem;

namespace {

class OwnProcesses final : public ProcessServices {
public:
    OwnProcesses(LinuxApplications& applications, std::string folder)
        : all_(applications), folder_(std::move(folder)) {}
    std::vector<ProcessID> runningProcesses() override {
        std::vector<ProcessID> own = all_.runningProcesses();
        std::erase_if(own, [this](ProcessID p) { return !all_.bundleFolder(p).value_or("").starts_with(folder_); });
        return own;
    }
    ProcessID currentProcess() override { return all_.currentProcess(); }
    std::optional<ProcessSerialNumber> serialNumber(ProcessID p) override { return all_.serialNumber(p); }
    std::optional<std::string> bundleFolder(ProcessID p) override { return all_.bundleFolder(p); }
    std::optional<std::string> bundlePath(ProcessID p) override { return all_.bundlePath(p); }
    std::optional<std::string> bundleIdentifier(ProcessID p) override { return all_.bundleIdentifier(p); }
    std::optional<Date> launchDate(ProcessID p) override { return all_.launchDate(p); }
    bool postQuitRequest(const ProcessSerialNumber& p, std::string_view identifier) override {
        return all_.postQuitRequest(p, identifier);
    }

private:
    LinuxProcesses all_;
    const std::string folder_;
};

struct HelperFixture {
    check::TemporaryFolder home;
    check::ScopedEnvironment config{"XDG_CONFIG_HOME", (home / "config").c_str()},
        runtime{"XDG_RUNTIME_DIR", home.path().c_str()}, root{"TYPESLATE_ROOT", home.path().c_str()},
        session{"XDG_SESSION_ID", "t1"}, log{"TYPESLATE_LOG", "stderr"};
    fake::World world;
    LinuxApplications applications;
    OwnProcesses processes{applications, fs::canonical(home.path())};
    std::unique_ptr<FolderBundle> bundle;
    std::optional<TSPreferencePane> pane;
    DiskPreferences preferences{preferencesFolder(), world.log};
    std::string output;  // of helpers
    int reading = -1;

    HelperFixture() {
        std::string resources = home / "Pane.prefPane/Contents/Resources";
        fs::create_directories(resources);
        fs::copy(HELPER_BUNDLE, resources + "/TS.app", fs::copy_options::recursive);
        check::writeFile(home / "Pane.prefPane/Contents/Info.plist", "<plist><dict/></plist>");
        bundle = FolderBundle::open(home / "Pane.prefPane");
        world.platform();
        static FolderBundles sBundles;
        pane.emplace(Platform{*bundle, world.host, world.preferences, world.notifications, sBundles, world.files,
                              applications, world.system, world.runLoop, world.toolkit, world.log, processes,
                              world.launcher, world.dates});
    }
    ~HelperFixture() {
        for (ProcessID helper : processes.runningProcesses()) ::kill(static_cast<pid_t>(helper), SIGKILL);
        if (reading >= 0) ::close(reading);
    }
    // Runs with standard error, which helpers inherit, led into a pipe.
    void listening(const std::function<void()>& start) {
        int ends[2], own = ::dup(STDERR_FILENO);
        REQUIRE(::pipe2(ends, O_CLOEXEC) == 0);
        ::dup2(ends[1], STDERR_FILENO);
        start();
        ::dup2(own, STDERR_FILENO);
        for (int end : {own, ends[1]}) ::close(end);
        reading = ends[0];
    }
    // Waits for a further line of the helper's; empty when it has left.
    std::string line() {
        char c = 0;
        for (output.clear(); ::read(reading, &c, 1) == 1 && c != '\n';) output += c;
        return output;
    }
    void set(std::string_view key, const PropertyList& value) {
        preferences.setValue(key, value, settings::kSettingsDomain);
        CHECK(preferences.synchronize(settings::kSettingsDomain));
    }
};

// A process of this test that sleeps until it is killed.
pid_t sleeper(const char* program) {
    pid_t child = ::fork();
    if (child == 0) {
        ::execl(program, "sleep", "1000", nullptr);
        ::_exit(1);
    }
    return child;
}

}  // namespace

TEST(TwoStartsMakeOneHelperWhichLeavesWhenAsked) {
    HelperFixture f;
    f.listening([&] {
        f.pane->launchTSDaemon();
        f.pane->launchTSDaemon();
        CHECK_EQ(f.processes.runningProcesses().size(), std::size_t{1});
        CHECK(::waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD);
    });
    ProcessSerialNumber first, other;
    REQUIRE(f.pane->findProcessByID_withPSN(settings::kSettingsDomain, first));
    // A start that has not seen the first helper. The lock is taken before the first look at the settings.
    f.set(settings::kLogStuffKey, true);
    CHECK_EQ(f.line(), "[Typeslate] Took in the settings: 0 entries, enabled");
    int waiting = f.reading;
    f.listening([&] { f.applications.openApplication(*f.bundle->resourcePath("TS", "app")); });
    CHECK_EQ(f.line(), "");  // it has left
    ::close(std::exchange(f.reading, waiting));
    CHECK(f.pane->findProcessByID_withPSN(settings::kSettingsDomain, other) && other == first);
    f.pane->killTSDaemon();
    CHECK_EQ(f.line(), "");
}

TEST(TheHelperTakesInChangesUntilItsSessionEnds) {
    HelperFixture f;
    fs::create_directories(f.home / "run/systemd/sessions");
    fs::create_directories(f.home / "dotfiles");
    fs::create_directories(preferencesFolder());
    fs::create_symlink(f.home / "dotfiles/t.plist", preferencesFolder() + "/com.tarnwick.typeslate.plist");
    f.set(settings::kLogStuffKey, true);
    pid_t leader = sleeper("/bin/sleep");
    check::writeFile(f.home / "run/systemd/sessions/t1", "LEADER=" + std::to_string(leader) + "\n");
    f.listening([&] { f.pane->launchTSDaemon(); });
    CHECK_EQ(f.line(), "[Typeslate] Took in the settings: 0 entries, enabled");
    f.set(settings::kEntryListKey, PropertyList::array({1, 2, 3}));
    CHECK_EQ(f.line(), "[Typeslate] Took in the settings: 3 entries, enabled");
    f.set(settings::kDisabledKey, true);
    CHECK_EQ(f.line(), "[Typeslate] Took in the settings: 3 entries, disabled");
    ::kill(leader, SIGKILL);
    CHECK_EQ(f.line(), "");
    ::waitpid(leader, nullptr, 0);
}

TEST(AQuitRequestReachesNobodyElse) {
    check::TemporaryFolder folder;
    fs::create_directories(folder / "S.app/Contents/Linux");
    fs::copy("/bin/sleep", folder / "S.app/Contents/Linux/sleep");
    check::writeFile(folder / "S.app/Contents/Info.plist",
                     "<plist><dict><key>CFBundleIdentifier</key><string>s</string></dict></plist>");
    LinuxApplications applications;
    LinuxProcesses processes(applications);
    pid_t child = sleeper((folder / "S.app/Contents/Linux/sleep").c_str());
    while (!processes.bundleFolder(child)) sched_yield();
    auto number = processes.serialNumber(child);
    REQUIRE(number);
    CHECK(!processes.postQuitRequest({number->high + 1, number->low}, "s"));  // its id is another's by now
    CHECK(!processes.postQuitRequest(*number, "S"));
    CHECK(::waitpid(child, nullptr, WNOHANG) == 0);
    CHECK(processes.postQuitRequest(*number, "s"));
    int status = 0;
    CHECK(::waitpid(child, &status, 0) == child && WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    CHECK(!processes.postQuitRequest(*number, "s") && !processes.serialNumber(child));
}
