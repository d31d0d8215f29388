#include "linux/processes/SessionLeader.h"

#include "linux/files/LinuxFiles.h"
#include "linux/processes/ProcessFiles.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>

namespace linux {

using namespace platform;

namespace {

constexpr std::int64_t kNoAuditSession = 0xFFFFFFFF;

std::string content(const std::string& path) {
    auto bytes = LinuxFiles().readFile(path);
    return bytes ? *bytes : std::string();
}

std::string valueOf(std::string_view assignments, std::string_view key) {
    while (!assignments.empty()) {
        std::string_view line = assignments.substr(0, assignments.find('\n'));
        assignments.remove_prefix(std::min(line.size() + 1, assignments.size()));
        if (line.starts_with(key) && line.substr(key.size(), 1) == "=") return std::string(line.substr(key.size() + 1));
    }
    return {};
}

// The name comes from the environment and becomes a part of a path.
bool isSessionName(std::string_view name) {
    auto isPlain = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    return !name.empty() && name.size() < 64 && std::ranges::all_of(name, isPlain);
}

std::optional<ProcessID> leaderOfSession(const SessionSources& sources, std::string_view name) {
    if (!isSessionName(name)) return std::nullopt;
    std::string session = content(sources.sessions + "/sessions/" + std::string(name));
    auto leader = decimal(valueOf(session, "LEADER"));
    return leader && readProcessStat(sources.processes, *leader) ? leader : std::nullopt;
}

std::optional<ProcessID> leaderByEnvironment(const SessionSources& sources) {
    const char* name = std::getenv("XDG_SESSION_ID");
    return name ? leaderOfSession(sources, name) : std::nullopt;
}

std::optional<ProcessID> leaderByDisplay(const SessionSources& sources, std::uint32_t user) {
    std::string state = content(sources.sessions + "/users/" + std::to_string(user));
    return leaderOfSession(sources, valueOf(state, "DISPLAY"));
}

std::optional<std::int64_t> auditSession(const SessionSources& sources, ProcessID process) {
    auto id = decimal(content(sources.processes + "/" + std::to_string(process) + "/sessionid"));
    return id && *id != kNoAuditSession ? id : std::nullopt;
}

// The uppermost ancestor that was given this process's audit session, which login programs set once.
std::optional<ProcessID> leaderByAudit(const SessionSources& sources, ProcessID self) {
    auto session = auditSession(sources, self);
    if (!session) return std::nullopt;
    ProcessID leader = self;
    for (auto stat = readProcessStat(sources.processes, leader); stat && stat->parent > 1;) {
        if (auditSession(sources, stat->parent) != session) break;
        leader = stat->parent;
        stat = readProcessStat(sources.processes, leader);
    }
    return leader == self ? std::nullopt : std::optional(leader);
}

}  // namespace

std::optional<ProcessID> sessionLeader(const SessionSources& sources, ProcessID self, std::uint32_t user) {
    if (auto leader = leaderByEnvironment(sources)) return leader;
    if (auto leader = leaderByDisplay(sources, user)) return leader;
    return leaderByAudit(sources, self);
}

}  // namespace linux
