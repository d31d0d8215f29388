#include "tools/commands/Commands.h"

#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdaterLaunch.h"
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/VersionChecking.h"
#include "TarnwickUpdater/PrefPane Stuff/TWVCUpdateViewController/TWVCUpdateViewController.h"
#include "linux/LinuxMachine.h"
#include "settings/EntryList.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/StoredDomain.h"
#include "tools/UsageTexts.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>

using namespace platform;
using settings::kSettingsDomain;

namespace tools {
namespace {

constexpr double kShortestInterval = 1.0;  // seconds; the pane takes a shorter one for a week
constexpr double kLongestInterval = 1e9;

struct Arguments {
    bool json = false, now = false, fromModule = false;
    std::string onOrOff;
    double seconds = 0;
};

struct Updates : linux::LinuxMachine {
    twvc::UpdateServices services = twvc::UpdateServices::of(*this);
    std::unique_ptr<Bundle> module;

    Updates() {
        preferences.setLongestWait(lockWait());
        requireReadable(preferences, kSettingsDomain);
        module = TWVCUpdateViewController_V100::findPlinth(services, kSettingsDomain);
    }
    Bundle& requireModule() {
        if (!module) throw refused("the module is not installed");
        return *module;
    }
    PropertyList stored(std::string_view key) { return preferences.copyValue(key, kSettingsDomain); }
};

PropertyList statusOf(Updates& updates, bool fromModule) {
    std::string version(updates.module ? updates.module->infoValue("CFBundleShortVersionString").stringValue() : "");
    twvc::ScheduleState state = twvc::scheduleState(updates.services, kSettingsDomain, version, fromModule);
    twvc::Decision decision = twvc::decide(state);
    MutableDictionary status;
    if (updates.module) {
        status.set("module", updates.module->path());
        auto updater = twvc::updaterOf(*updates.module);
        status.set("updater", updater ? *updater : "missing");
    }
    for (std::string_view key : {twvc::kCheckForUpdatesKey, twvc::kCheckIntervalKey, twvc::kLastCheckDateKey,
                                 twvc::kLastRunSystemVersionKey, twvc::kLastCheckStatusKey})
        status.set(key, updates.stored(key));
    if (decision.interval) status.set("interval", *decision.interval);
    status.set("systemVersion", state.systemVersion);
    status.set("due", decision.isDue());
    status.set("rule", twvc::ruleName(decision.rule));
    return std::move(status).freeze();
}

// As docs/updates.md writes them.
std::string shownValue(std::string_view key, const PropertyList& value) {
    if (value.isBoolean()) return value.boolValue() ? "yes" : "no";
    bool isVersion = key == "systemVersion" || key == twvc::kLastRunSystemVersionKey;
    if (isVersion && value.isNumber()) return formatted("0x%X", {static_cast<std::uint32_t>(value.integerValue())});
    return formatted("%@", {value});
}

void status(const Arguments& arguments) {
    Updates updates;
    PropertyList all = statusOf(updates, arguments.fromModule);
    if (arguments.json) return printJson(all);
    std::string lines;
    for (const PropertyList::Entry& entry : all.entries())
        lines += linux::withVisibleControls(
                     formatted("%@: %@", {entry.key, shownValue(entry.key.stringValue(), entry.value)})) +
                 "\n";
    print(lines);
}

OSStatus launchNow(Updates& updates, FSRef& launched) {
    OSStatus result = twvc::runUpdater(updates.services, &updates.requireModule(), kSettingsDomain, &launched);
    if (!launched.path.empty())
        updates.preferences.setValue(twvc::kLastCheckDateKey, updates.clock.now(), kSettingsDomain);
    return result;
}

std::string ageOf(std::time_t seconds) {
    struct Unit {
        std::time_t seconds;
        const char* symbol;
    };
    constexpr Unit kUnits[] = {{86400, "d"}, {3600, "h"}, {60, "min"}};
    for (const Unit& unit : kUnits)
        if (seconds >= 2 * unit.seconds) return std::to_string(seconds / unit.seconds) + " " + unit.symbol;
    return std::to_string(std::max<std::time_t>(seconds, 0)) + " s";
}

std::string nameOfUser(uid_t user) {
    const passwd* found = ::getpwuid(user);
    return found ? linux::withVisibleControls(found->pw_name) : std::to_string(user);
}

// What went wrong, and for a lock that is in the way, whose it is and what can be done about it.
Refusal failed(Updates& updates, OSStatus status) {
    const auto lock = twvc::updaterLockPath(updates.services, kSettingsDomain);
    struct stat facts;
    const std::string error = localizedFormat("error %d: %@", status, localized(statusText(status)));
    if (status != kDuplicateFile || !lock || ::lstat(lock->c_str(), &facts) != 0) return Refusal(error);
    const std::string owner = nameOfUser(facts.st_uid), path = linux::withVisibleControls(*lock);
    const bool isOurs = facts.st_uid == ::geteuid() || ::geteuid() == 0;
    return Refusal(std::vector{
        error,
        localizedFormat("the lock %@ belongs to %@ and is %@ old", path, owner,
                        ageOf(::time(nullptr) - facts.st_mtime)),
        isOurs
            ? localized("it is there while an updater is started; one that stays was left behind, and can be deleted")
            : localizedFormat("it is there while an updater is started; ask %@ to delete one that stays", owner)});
}

void check(const Arguments& arguments) {
    Updates updates;
    Bundle& module = updates.requireModule();
    PropertyList before = statusOf(updates, arguments.fromModule);
    FSRef launched;
    OSStatus result = arguments.now ? launchNow(updates, launched)
                                    : twvc::checkForUpdate(updates.services, &module, arguments.fromModule, &launched);
    save(updates.preferences, kSettingsDomain);
    if (result != kNoErr) throw failed(updates, result);
    if (!launched.path.empty())
        return printLine(localizedFormat("launched %@", linux::withVisibleControls(launched.path)));
    const bool isDue = arguments.now || before["due"].boolValue();
    if (isDue && !twvc::updaterOf(module))
        throw refused("the module %@ has no updater", linux::withVisibleControls(module.path()));
    if (isDue) throw refused("the updater could not be launched; the log says why");
    printLine(localizedFormat("nothing is due (rule: %@)", before["rule"]));
    throw CLI::RuntimeError(kNothingDue);
}

void schedule(const Arguments& arguments) {
    Updates updates;
    updates.preferences.setValue(twvc::kCheckForUpdatesKey, arguments.onOrOff == "on", kSettingsDomain);
    save(updates.preferences, kSettingsDomain);
}

void interval(const Arguments& arguments) {
    Updates updates;
    updates.preferences.setValue(twvc::kCheckIntervalKey, arguments.seconds, kSettingsDomain);
    save(updates.preferences, kSettingsDomain);
}

}  // namespace

void addUpdateCommands(CLI::App& app) {
    CommandGroup<Arguments> update(app, "update",
                                   localized("Read and change the schedule of update checks, and check"));
    auto takeFromModule = [&](CLI::App* command) {
        command->add_flag(
            "--from-module", update->fromModule,
            localized("As the module asks from within an application: soon after the login nothing is due"));
    };

    auto* showing = update.add(
        "status", localized("Print the schedule, whether a check is due, and the rule that decides"), status);
    showing->add_flag("--json", update->json, localized("As JSON"));
    takeFromModule(showing);
    auto* checking =
        update.add("check", localized("Launch the updater if a check is due; status 3: nothing is due"), check);
    checking->add_flag("--now", update->now, localized("Whether or not one is due"));
    takeFromModule(checking);
    update.add("schedule", localized("Switch automatic checks on or off"), schedule)
        ->add_option("STATE", update->onOrOff, localized("on or off"))
        ->required()
        ->check(oneOf({"on", "off"}));
    update.add("interval", localized("Set the time between two checks"), interval)
        ->add_option("SECONDS", update->seconds, localized("At least 1; a day has 86400"))
        ->required()
        ->check(secondsWithin(kShortestInterval, kLongestInterval));
}

}  // namespace tools
