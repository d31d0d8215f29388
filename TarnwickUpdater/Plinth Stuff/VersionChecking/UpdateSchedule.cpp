#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdateSchedule.h"

#include "propertylist/ASCII.h"

#include <algorithm>

using namespace platform;

namespace twvc {
namespace {

std::optional<std::string_view> ignoredHost(std::string_view identifier) {
    auto found = std::ranges::find_if(kTWVCBundleIDsToIgnore, [identifier](auto entry) {
        return propertylist::equalIgnoringASCIICase(identifier, entry);
    });
    return found == kTWVCBundleIDsToIgnore.end() ? std::nullopt : std::optional(*found);
}

bool isTooSoonAfterLogin(const ScheduleState& state) {
    if (!state.isCheckingFromPlinth || !state.loginDate) return false;
    return !(secondsBetween(*state.loginDate, state.now) >= kLongEnoughAfterLogin);
}

bool isDueByDate(const ScheduleState& state, double interval) {
    if (!(interval >= 0.0)) return false;
    std::optional<Date> last = state.lastCheckDate.dateValue();
    return !last || secondsBetween(*last, state.now) >= interval;
}

// The number is read as one of 32 bits.
bool isSystemNew(const ScheduleState& state) {
    return static_cast<std::uint32_t>(state.lastRunSystemVersion.integerValue()) != state.systemVersion;
}

}  // namespace

std::string_view ruleName(Rule rule) {
    static constexpr std::array<std::string_view, 7> kNames{"runtime", "host",   "off", "login",
                                                            "date",    "system", "none"};
    return kNames[static_cast<std::size_t>(rule)];
}

// Text that means no must be told from text that means nothing.
std::optional<bool> storedBoolean(const PropertyList& value) {
    if (value.isNumber() || propertylist::coercedBoolean(value)) return propertylist::coercedBoolean(value);
    for (std::string_view no : {"false", "no", "0"})
        if (propertylist::equalIgnoringASCIICase(value.stringValue(), no)) return false;
    return std::nullopt;
}

bool isBetaVersion(std::string_view version) {
    return version.find('b') != std::string_view::npos || version.find("fc") != std::string_view::npos;
}

// Dates may be farther apart than a 64-bit number of microseconds can say.
double secondsBetween(Date earlier, Date later) {
    long double distance = static_cast<long double>(later.microseconds) - earlier.microseconds;
    return static_cast<double>(distance / 1e6L);
}

Decision decide(const ScheduleState& state) {
    Decision decision;
    auto by = [&decision](Rule rule) {
        decision.rule = rule;
        return decision;
    };
    if (state.runtimeHasUpdater) return by(Rule::Runtime);
    if (state.isCheckingFromPlinth)
        if (auto host = ignoredHost(state.hostIdentifier)) {
            decision.ignoredHost = *host;
            return by(Rule::Host);
        }
    if (!storedBoolean(state.checkForUpdates).value_or(true)) return by(Rule::Off);
    if (isTooSoonAfterLogin(state)) return by(Rule::Login);

    bool isStored = state.checkInterval.isNumber();
    decision.defaultedToDaily = !isStored && isBetaVersion(state.moduleVersion);
    decision.interval = isStored ? state.checkInterval.realValue() : decision.defaultedToDaily ? kDaily : kWeekly;
    if (isDueByDate(state, *decision.interval)) return by(Rule::Date);
    return by(isSystemNew(state) ? Rule::System : Rule::None);
}

}  // namespace twvc
