#include "TarnwickUpdater/Plinth Stuff/VersionChecking/VersionChecking.h"

#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdaterLaunch.h"
#include "platform/PlinthRuntime.h"

using namespace platform;

namespace twvc {

std::string gBundleName;
bool gLogStuff = false;
std::uint32_t sBCDSystemVersion = 0;

namespace {

constexpr std::string_view kRuntimeIdentifier = "com.tarnwick.plinth";

template <typename Function>
Function runtimeFunction(const UpdateServices& services, const char* name) {
    Bundle* runtime = services.bundles.loadedBundle(kRuntimeIdentifier);
    return runtime ? reinterpret_cast<Function>(runtime->functionNamed(name)) : nullptr;
}

bool runtimeHasUpdater(const UpdateServices& services) {
    auto hasUpdater = runtimeFunction<PlinthHasUpdaterFunction>(services, "PlinthHasUpdater");
    return hasUpdater && hasUpdater() != 0;
}

// The part of the state that is known before the module is looked at.
ScheduleState hostState(const UpdateServices& services, bool isCheckingFromPlinth) {
    ScheduleState state;
    state.runtimeHasUpdater = runtimeHasUpdater(services);
    state.isCheckingFromPlinth = isCheckingFromPlinth;
    if (!isCheckingFromPlinth) return state;
    ProcessServices& processes = services.processes;
    state.hostIdentifier = processes.bundleIdentifier(processes.currentProcess()).value_or("");
    return state;
}

void logIgnoredHost(const UpdateServices& services, std::string_view entry) {
    if (!gLogStuff) return;
    auto host = services.processes.bundlePath(services.processes.currentProcess());
    log(services, "[TWVC] Bundle ID of %@ is equal to %@ so not checking for updates.\n",
        host ? FormatArgument(*host) : FormatArgument(nullptr), entry);
}

void logDailyDefault(const UpdateServices& services, std::string_view version) {
    log(services,
        "[%@] Because the version stirng of \"%@\" contains an indicator it is a beta release, we are defaulting to "
        "checking for updates daily. If you wish to change it to a longer time, open the %@ prefpane in System "
        "Preferences.\n",
        gBundleName, version, gBundleName);
}

void logNewSystem(const UpdateServices& services, const ScheduleState& state) {
    log(services,
        "[%@] An update check for %@ needs to be performed. You have updated Mac OS X since the last %@ update check. "
        "Updates were last checked on 0x%X but you're now running 0x%X\n",
        gBundleName, gBundleName, gBundleName, static_cast<std::uint32_t>(state.lastRunSystemVersion.integerValue()),
        state.systemVersion);
}

void logDecision(const UpdateServices& services, const ScheduleState& state, const Decision& decision) {
    bool looksAtLogin = state.isCheckingFromPlinth && decision.rule != Rule::Off;
    if (gLogStuff && looksAtLogin && !state.loginDate) log(services, "[%@] Can't get login date.\n", gBundleName);
    if (gLogStuff && decision.rule == Rule::Login)
        log(services, "[%@] It has not been nearly long enough since you logged in to check for updates.\n",
            gBundleName);
    if (decision.defaultedToDaily) logDailyDefault(services, state.moduleVersion);
    if (decision.rule == Rule::System) logNewSystem(services, state);
}

std::optional<ProcessID> loginWindow(ProcessServices& processes) {
    for (ProcessID process : processes.runningProcesses())
        if (processes.bundleIdentifier(process) == kLoginWindowIdentifier) return process;
    return std::nullopt;
}

constexpr std::uint32_t inNibbles(std::uint32_t number) { return number / 10 << 4 | number % 10; }

}  // namespace

void writeLog(const UpdateServices& services, const std::string& line) {
    if (auto print = runtimeFunction<PlinthPrintfFunction>(services, "plinthprintf")) return print("%s", line.c_str());
    std::string_view text = line;
    if (text.ends_with('\n')) text.remove_suffix(1);  // the system's log ends its lines itself
    services.log.write(text);
}

std::string moduleIdentifier(const Bundle& bundle) {
    PropertyList identifier = bundle.infoValue("PlinthModuleID");
    return identifier.isString() ? std::string(identifier.stringValue()) : bundle.identifier();
}

PropertyList moduleName(const Bundle& bundle) {
    PropertyList name = bundle.infoValue("CFBundleName");
    bool isMissing = !name || (name.isString() && name.stringValue().empty());
    return isMissing ? bundle.infoValue("CFBundleExecutable") : name;
}

ScheduleState scheduleState(const UpdateServices& services, std::string_view identifier, std::string_view moduleVersion,
                            bool isCheckingFromPlinth) {
    ScheduleState state = hostState(services, isCheckingFromPlinth);
    auto stored = [&](std::string_view key) { return services.preferences.copyValue(key, identifier); };
    state.checkForUpdates = stored(kCheckForUpdatesKey);
    state.checkInterval = stored(kCheckIntervalKey);
    state.lastCheckDate = stored(kLastCheckDateKey);
    state.lastRunSystemVersion = stored(kLastRunSystemVersionKey);
    state.moduleVersion = moduleVersion;
    state.now = services.clock.now();
    state.systemVersion = systemVersion(services);
    // The walk through all processes is spared where its answer is not asked for.
    bool isOn = storedBoolean(state.checkForUpdates).value_or(true);
    if (isCheckingFromPlinth && isOn) state.loginDate = loginWindowLaunchDate(services);
    return state;
}

OSStatus checkForUpdate(const UpdateServices& services, const Bundle* bundle, bool isCheckingFromPlinth,
                        FSRef* outLaunchedUpdater) {
    Decision byHost = decide(hostState(services, isCheckingFromPlinth));
    if (byHost.rule == Rule::Host) logIgnoredHost(services, byHost.ignoredHost);
    if (byHost.rule == Rule::Runtime || byHost.rule == Rule::Host) return kNoErr;

    if (!bundle) return kParamErr;
    std::string identifier = moduleIdentifier(*bundle);
    PropertyList name = moduleName(*bundle);
    if (identifier.empty() || !name.isString()) return kNoErr;
    gBundleName = name.stringValue();

    if (!storedBoolean(services.preferences.copyValue(kCheckForUpdatesKey, identifier)))
        services.preferences.setValue(kCheckForUpdatesKey, true, identifier);
    PropertyList version = bundle->infoValue("CFBundleShortVersionString");
    ScheduleState state = scheduleState(services, identifier, version.stringValue(), isCheckingFromPlinth);
    Decision decision = decide(state);
    logDecision(services, state, decision);
    if (!decision.isDue()) return kNoErr;
    setVersionDatePreferences(services, identifier);
    return runUpdater(services, bundle, identifier, outLaunchedUpdater);
}

std::uint32_t systemVersion(const UpdateServices& services) {
    if (sBCDSystemVersion != 0) return sBCDSystemVersion;
    SystemServices& system = services.system;
    auto major = system.gestalt(fourCharCode("sys1"));
    auto minor = system.gestalt(fourCharCode("sys2"));
    auto bugFix = system.gestalt(fourCharCode("sys3"));
    if (major && minor && bugFix)
        return sBCDSystemVersion = inNibbles(*major) << 16 | inNibbles(*minor) << 8 | inNibbles(*bugFix);
    auto narrow = system.gestalt(fourCharCode("sysv"));
    if (!narrow) return 0;
    return sBCDSystemVersion = (*narrow & 0xFF00) << 8 | (*narrow & 0xF0) << 4 | (*narrow & 0xF);
}

std::optional<Date> loginWindowLaunchDate(const UpdateServices& services) {
    auto process = loginWindow(services.processes);
    auto date = process ? services.processes.launchDate(*process) : std::nullopt;
    if (date && gLogStuff)
        log(services, "[%@] The date the loginwindow was launched: %@\n", gBundleName,
            stringFromDate(services, *date, DateStyle::Full, DateStyle::Full).value_or("(null)"));
    return date;
}

void setVersionDatePreferences(const UpdateServices& services, std::string_view identifier) {
    services.preferences.setValue(kLastCheckDateKey, services.clock.now(), identifier);
    services.preferences.setValue(kLastRunSystemVersionKey, static_cast<std::int32_t>(systemVersion(services)),
                                  identifier);
}

std::optional<std::string> stringFromDate(const UpdateServices& services, const PropertyList& date, DateStyle dateStyle,
                                          DateStyle timeStyle) {
    auto value = date.dateValue();
    return value ? services.dates.string(*value, dateStyle, timeStyle) : std::nullopt;
}

}  // namespace twvc
