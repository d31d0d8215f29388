#include "linux/processes/LinuxProcesses.h"

#include "linux/files/LinuxFiles.h"
#include "linux/processes/ApplicationUnits.h"
#include "linux/processes/ProcessFiles.h"
#include "linux/processes/ProcessHandle.h"
#include "linux/system/FolderBundle.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <ctime>
#include <map>

namespace linux {

using namespace platform;

namespace {

std::int64_t microseconds(clockid_t clock) {
    struct timespec time = {};
    ::clock_gettime(clock, &time);
    return std::int64_t{time.tv_sec} * 1'000'000 + time.tv_nsec / 1000;
}

bool isBundleFolder(std::string_view folder) { return folder.ends_with(".app") || folder.ends_with(".plinth"); }

}  // namespace

std::optional<std::string> bundleAround(std::string_view program) {
    for (std::size_t end = program.rfind('/'); end != std::string_view::npos && end > 0;
         end = program.rfind('/', end - 1))
        if (isBundleFolder(program.substr(0, end))) return std::string(program.substr(0, end));
    return std::nullopt;
}

std::vector<ProcessID> LinuxProcesses::runningProcesses() {
    std::vector<ProcessID> processes;
    OSStatus status = kNoErr;
    auto folder = LinuxFiles().openFolder("/proc", FolderDetail::Names, status);
    if (!folder) return processes;
    std::vector<FolderEntry> entries;
    for (folder->nextBatch(512, entries); !entries.empty(); folder->nextBatch(512, entries))
        for (const FolderEntry& entry : entries)
            if (auto process = decimal(entry.name)) processes.push_back(*process);
    std::ranges::sort(processes);
    return processes;
}

ProcessID LinuxProcesses::currentProcess() { return ::getpid(); }

// Nothing for processes of others, whose programs are not this user's business.
std::optional<std::string> LinuxProcesses::program(ProcessID process) const {
    std::array<char, PATH_MAX> buffer;
    std::string link = processFolder(process) + "/exe";
    ssize_t length = ::readlink(link.c_str(), buffer.data(), buffer.size());
    if (length <= 0) return std::nullopt;
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

// Root sees the programs of all.
bool LinuxProcesses::isOfThisUser(ProcessID process) const {
    struct stat status;
    return ::stat(processFolder(process).c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

std::optional<ProcessSerialNumber> LinuxProcesses::serialNumber(ProcessID process) {
    auto started = startTicks(process);
    if (!started) return std::nullopt;
    return ProcessSerialNumber{static_cast<std::uint32_t>(*started), static_cast<std::uint32_t>(process)};
}

std::optional<std::string> LinuxProcesses::bundleFolder(ProcessID process) {
    auto executable = program(process);
    auto folder = executable ? bundleAround(*executable) : std::nullopt;
    return folder && isOfThisUser(process) ? folder : std::nullopt;
}

std::optional<std::string> LinuxProcesses::bundlePath(ProcessID process) {
    auto executable = program(process);
    if (!executable) return std::nullopt;
    if (auto folder = bundleAround(*executable)) return folder;
    auto application = applications_.applicationForProgram(*executable);
    return application ? std::optional(application->path) : std::nullopt;
}

std::optional<std::string> LinuxProcesses::bundleIdentifier(ProcessID process) {
    if (!leader_) leader_ = sessionLeader();
    if (*leader_ == process) return std::string(kLoginWindowIdentifier);
    auto executable = program(process);
    if (!executable) return std::nullopt;
    if (auto folder = bundleAround(*executable)) {
        auto bundle = FolderBundle::open(*folder);
        return bundle && !bundle->identifier().empty() ? std::optional(bundle->identifier()) : std::nullopt;
    }
    auto application = applications_.applicationForProgram(*executable);
    return application && !application->identifier.empty() ? std::optional(application->identifier) : std::nullopt;
}

// By what the desktop has started it as, and by its program: a terminal's processes are in the terminal's group.
std::vector<ApplicationRecord> LinuxProcesses::applicationsOf(ProcessID process) {
    std::vector<ApplicationRecord> found;
    if (process == currentProcess() || !isOfThisUser(process)) return found;
    auto add = [&](const std::optional<std::string>& path) {
        auto application = path ? applications_.applicationAtPath(*path) : std::nullopt;
        if (application) found.push_back(std::move(*application));
    };
    auto group = LinuxFiles().readFile(processFolder(process) + "/cgroup");
    add(applications_.findApplication({{}, group ? applicationOfControlGroup(*group) : "", {}}));
    add(bundlePath(process));
    return found;
}

std::vector<ApplicationRecord> LinuxProcesses::runningApplications(const std::vector<WindowOwner>& windows) {
    std::map<std::string, ApplicationRecord> running;
    auto add = [&](const ApplicationRecord& application, bool hasWindow) {
        if (application.isDisplayed || hasWindow) running.emplace(application.path, application);
    };
    for (const WindowOwner& window : windows) {
        if (window.process == currentProcess()) continue;
        if (auto application = applications_.applicationForWindowClass(window.windowClass)) add(*application, true);
        for (const ApplicationRecord& application : applicationsOf(window.process)) add(application, true);
    }
    for (ProcessID process : runningProcesses())
        for (const ApplicationRecord& application : applicationsOf(process)) add(application, false);
    std::vector<ApplicationRecord> applications;
    applications.reserve(running.size());
    for (auto& [path, application] : running) applications.push_back(std::move(application));
    return applications;
}

// What the handle holds is known only after it was opened: its process is asked for again, and an answer that fits is
// this process's, or the process is gone and the signal goes nowhere.
bool LinuxProcesses::postQuitRequest(const ProcessSerialNumber& process, std::string_view identifier) {
    ProcessID id = process.low;
    Descriptor handle = openProcess(id);
    auto folder = bundleFolder(id);
    auto bundle = folder ? FolderBundle::open(*folder) : nullptr;
    if (!bundle || bundle->identifier() != identifier || serialNumber(id) != process) return false;
    if (handle) return signalProcess(handle, SIGTERM);
    // No handles on this kernel, or not in this sandbox.
    return handle.error() != ESRCH && ::kill(static_cast<pid_t>(id), SIGTERM) == 0;
}

// Counted back from now, not on from the machine's start: whoever sets the clock moves both ends.
std::optional<Date> LinuxProcesses::launchDate(ProcessID process) {
    auto started = startTicks(process);
    std::int64_t ticksPerSecond = ::sysconf(_SC_CLK_TCK);
    if (!started || *started < 0 || *started > INT64_MAX / 1'000'000) return std::nullopt;
    std::int64_t sinceStart = *started * 1'000'000 / ticksPerSecond;
    return Date{microseconds(CLOCK_REALTIME) - microseconds(CLOCK_BOOTTIME) + sinceStart};
}

}  // namespace linux
