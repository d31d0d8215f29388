// The real helper in a session of the test's own, and the request to quit.
#include "linux/preferences/DiskPreferences.h"
#include "linux/processes/DetachedProcess.h"
#include "linux/processes/LinuxProcesses.h"
#include "settings/EntryList.h"
#include "tests/support/Check.h"
#include "tests/support/FakeLogind.h"
#include "tests/support/FakePlatform.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

using namespace platform;
using namespace linux;
namespace fs = std::filesystem;

namespace {

// Sleeps until it is killed.
struct Sleeper {
    explicit Sleeper(const std::string& program) : process(::fork()) {
        if (process > 0) return;
        ::execl(program.c_str(), "sleep", "1000", nullptr);
        ::_exit(1);
    }
    ~Sleeper() {
        if (!hasEnded) end(SIGKILL);
    }
    int end(int signal) {
        int status = 0;
        hasEnded = true;
        ::kill(process, signal);
        ::waitpid(process, &status, 0);
        return status;
    }
    const pid_t process;
    bool hasEnded = false;
};

// A helper whose log is read line by line.
class Helper {
public:
    Helper() {
        int ends[2], own = ::dup(STDERR_FILENO);
        REQUIRE(::pipe2(ends, O_CLOEXEC) == 0);
        ::dup2(ends[1], STDERR_FILENO);
        CHECK_EQ(startDetached({HELPER_PROGRAM}), kNoErr);
        ::dup2(own, STDERR_FILENO);
        for (int end : {own, ends[1]}) ::close(end);
        reading_ = ends[0];
    }
    ~Helper() { ::close(reading_); }
    // The next line; empty when the helper has left.
    std::string line() {
        std::string text;
        for (char c = 0; ::read(reading_, &c, 1) == 1 && c != '\n';) text += c;
        return text;
    }

private:
    int reading_ = -1;
};

}  // namespace

TEST(OneHelperTakesInChangesUntilItsSessionEnds) {
    check::TemporaryFolder home;
    const check::ScopedEnvironment config("XDG_CONFIG_HOME", (home / "config").c_str()),
        runtime("XDG_RUNTIME_DIR", home.path().c_str()), root("TYPESLATE_ROOT", home.path().c_str()),
        watched("TYPESLATE_LOG", "stderr");
    for (const std::string& folder : {home / "dotfiles", preferencesFolder()}) fs::create_directories(folder);
    fs::create_symlink(home / "dotfiles/t.plist", preferencesFolder() + "/com.tarnwick.typeslate.plist");
    fake::Log log;
    DiskPreferences preferences(preferencesFolder(), log);
    auto set = [&](std::string_view key, const PropertyList& value) {
        preferences.setValue(key, value, settings::kSettingsDomain);
        CHECK(preferences.synchronize(settings::kSettingsDomain));
    };
    set(settings::kLogStuffKey, true);
    Sleeper leader("/bin/sleep");
    check::FakeLogind logind(static_cast<std::uint32_t>(leader.process));

    Helper helper;
    CHECK_EQ(helper.line(), "[Typeslate] Took in the settings: 0 entries, enabled");
    CHECK_EQ(Helper().line(), "");  // a second one leaves without a word
    set(settings::kEntryListKey, PropertyList::array({1, 2, 3}));
    CHECK_EQ(helper.line(), "[Typeslate] Took in the settings: 3 entries, enabled");
    set(settings::kDisabledKey, true);
    CHECK_EQ(helper.line(), "[Typeslate] Took in the settings: 3 entries, disabled");
    leader.end(SIGKILL);
    CHECK_EQ(helper.line(), "");
}

TEST(AQuitRequestReachesNobodyElse) {
    check::TemporaryFolder folder;
    fs::create_directories(folder / "S.app/Contents/Linux");
    fs::copy("/bin/sleep", folder / "S.app/Contents/Linux/sleep");
    check::writeFile(folder / "S.app/Contents/Info.plist",
                     "<plist><dict><key>CFBundleIdentifier</key><string>s</string></dict></plist>");
    LinuxApplications applications;
    LinuxProcesses processes(applications);
    Sleeper sleeper(folder / "S.app/Contents/Linux/sleep");
    while (!processes.bundleFolder(sleeper.process)) sched_yield();
    auto number = processes.serialNumber(sleeper.process);
    REQUIRE(number);
    CHECK(!processes.postQuitRequest({number->high + 1, number->low}, "s"));  // its id is another's by now
    CHECK(!processes.postQuitRequest(*number, "S"));
    CHECK(::waitpid(sleeper.process, nullptr, WNOHANG) == 0);
    CHECK(processes.postQuitRequest(*number, "s"));
    int status = sleeper.end(0);
    CHECK(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    CHECK(!processes.postQuitRequest(*number, "s") && !processes.serialNumber(sleeper.process));
}
