// Whether an update check is due: a plain function of what is stored, of the machine and of the time.
#pragma once

#include "platform/PlatformTypes.h"
#include "settings/DomainSchema.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace twvc {

// Keys of the module's preference domain.
using settings::kCheckForUpdatesKey;
using settings::kCheckIntervalKey;
using settings::kLastCheckDateKey;
using settings::kLastCheckStatusKey;
using settings::kLastRunSystemVersionKey;

inline constexpr double kWeekly = 604800.0, kDaily = 86400.0;  // seconds
inline constexpr double kLongEnoughAfterLogin = 600.0;         // seconds

// Hosts in which no check is made.
inline constexpr std::array<std::string_view, 6> kTWVCBundleIDsToIgnore{
    "com.apple.Dock",           "com.apple.Finder",     "com.apple.systempreferences",
    "com.apple.systemuiserver", "com.tarnwick.updater", "com.tarnwick.installer",
};

// The rule that decided. Date and System: a check is due; every other: none is.
enum class Rule { Runtime, Host, Off, Login, Date, System, None };
std::string_view ruleName(Rule rule);  // "runtime", "host", ...

// Nothing stands for what is absent. The stored values may be of any type; those of a wrong one count as absent.
struct ScheduleState {
    bool runtimeHasUpdater = false;
    bool isCheckingFromPlinth = false;
    std::string hostIdentifier;  // of the application that asks; empty: it has none
    platform::PropertyList checkForUpdates, checkInterval, lastCheckDate, lastRunSystemVersion;  // as stored
    std::string moduleVersion;
    platform::Date now;
    std::optional<platform::Date> loginDate;
    std::uint32_t systemVersion = 0;  // in decimal nibbles, 10.4.11 as 0x100411; 0: not known
};

struct Decision {
    Rule rule = Rule::None;
    std::string_view ignoredHost;      // the table's entry, with Rule::Host
    bool defaultedToDaily = false;     // no interval is stored, and the version is that of a beta
    std::optional<double> interval{};  // seconds; nothing when an earlier rule decided
    bool isDue() const { return rule == Rule::Date || rule == Rule::System; }
};

// What is stored under kCheckForUpdatesKey; nothing when it is missing or is nothing that reads as a boolean.
std::optional<bool> storedBoolean(const platform::PropertyList& value);
bool isBetaVersion(std::string_view version);                         // holds "b" or "fc"
double secondsBetween(platform::Date earlier, platform::Date later);  // below 0 when the order is the other one

Decision decide(const ScheduleState& state);

}  // namespace twvc
