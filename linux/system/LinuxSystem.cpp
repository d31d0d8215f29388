#include "linux/system/LinuxSystem.h"

#include "linux/files/LinuxFiles.h"

#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <string>

namespace linux {

using namespace platform;

namespace {

constexpr std::uint32_t kFeatureLevel = 0x1049;

std::optional<std::uint32_t> takeNumber(std::string_view& text) {
    std::uint32_t number = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

std::optional<SystemVersion> parseDotted(std::string_view text) {
    std::optional<std::uint32_t> major = takeNumber(text);
    if (!major) return std::nullopt;
    SystemVersion version{*major};
    for (std::uint32_t* number : {&version.minor, &version.bugFix}) {
        if (!text.starts_with('.')) break;
        text.remove_prefix(1);
        *number = takeNumber(text).value_or(0);
    }
    return version;
}

std::string_view valueOf(std::string_view osRelease, std::string_view key) {
    while (!osRelease.empty()) {
        std::string_view line = osRelease.substr(0, osRelease.find('\n'));
        osRelease.remove_prefix(std::min(line.size() + 1, osRelease.size()));
        if (!line.starts_with(key) || line.substr(key.size(), 1) != "=") continue;
        line.remove_prefix(key.size() + 1);
        if (line.size() >= 2 && (line.front() == '"' || line.front() == '\'')) line = line.substr(1, line.size() - 2);
        return line;
    }
    return {};
}

std::string contents(LinuxFiles& files, std::string_view path) {
    const char* root = std::getenv("TYPESLATE_ROOT");
    auto bytes = files.readFile((root ? std::string(root) : "") + std::string(path));
    return bytes ? *bytes : std::string();
}

const std::optional<SystemVersion>& systemVersion() {
    static const std::optional<SystemVersion> kVersion = [] {
        LinuxFiles files;
        std::string osRelease = contents(files, "/etc/os-release");
        if (osRelease.empty()) osRelease = contents(files, "/usr/lib/os-release");
        return parseSystemVersion(osRelease, contents(files, "/etc/debian_version"));
    }();
    return kVersion;
}

}  // namespace

std::optional<SystemVersion> parseSystemVersion(std::string_view osRelease, std::string_view debianVersion) {
    std::optional<SystemVersion> version = parseDotted(valueOf(osRelease, "VERSION_ID"));
    std::optional<SystemVersion> debian = parseDotted(debianVersion);
    bool isDebian = valueOf(osRelease, "ID") == "debian";
    bool isFiner = version && debian && version->minor == 0 && debian->major == version->major;
    return isDebian && isFiner ? debian : version;
}

std::optional<std::uint32_t> LinuxSystem::gestalt(FourCharCode selector) {
    auto part = [](std::uint32_t SystemVersion::*number) {
        const std::optional<SystemVersion>& version = systemVersion();
        return version ? std::optional(*version.*number) : std::nullopt;
    };
    switch (selector) {
        case fourCharCode("sysv"):
            return kFeatureLevel;
        case fourCharCode("sys1"):
            return part(&SystemVersion::major);
        case fourCharCode("sys2"):
            return part(&SystemVersion::minor);
        case fourCharCode("sys3"):
            return part(&SystemVersion::bugFix);
        default:
            return std::nullopt;
    }
}

std::uint32_t LinuxSystem::realUserID() {
    if (const char* text = std::getenv("TYPESLATE_UID")) {
        std::string_view rest = text;
        std::optional<std::uint32_t> id = takeNumber(rest);
        if (id && rest.empty()) return *id;
    }
    return getuid();
}

}  // namespace linux
