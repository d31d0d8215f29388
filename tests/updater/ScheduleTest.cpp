// The schedule's decision, against the rules written down once more with the meaning of each input beside it.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdateSchedule.h"
#include "platform/RunLoop.h"
#include "propertylist/Date.h"
#include "tests/support/Check.h"

#include <limits>

using namespace platform;
using namespace propertylist;
using namespace twvc;

namespace {

const Date kNow = *dateFromISO8601("2026-01-31T12:00:00Z");
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t kSecond = 1'000'000;

Date ago(double seconds) { return dateByAdding(kNow, -seconds); }

struct Host {
    const char* identifier;
    bool isIgnored;
};
const Host kHosts[] = {
    {"", false}, {"COM.apple.dOCK", true}, {"com.tarnwick.installer", true}, {"com.apple.Docks", false}};

struct Switch {
    PropertyList stored;
    bool isOn;
};
const Switch kSwitches[] = {{{}, true}, {true, true},  {false, false},
                            {0, false}, {"No", false}, {PropertyList::array({false}), true}};

struct Login {
    std::optional<Date> date;
    bool isTooRecent;
};
const Login kLogins[] = {{{}, false},     {ago(599.9), true},       {ago(600), false},
                         {ago(-1), true}, {Date{INT64_MIN}, false}, {Date{INT64_MAX}, true}};

// Whether the date rule holds, and for how many microseconds at least the last check must lie back.
struct Interval {
    PropertyList stored;
    bool countsDates;
    std::int64_t least;
};
const Interval kIntervals[] = {
    {0, true, 0},     {0.5, true, kSecond / 2},     {604800, true, 604800 * kSecond}, {-0.5, false, 0},
    {kNaN, false, 0}, {kInfinity, true, INT64_MAX}, {-kInfinity, false, 0},           {true, true, kSecond},
};
struct Version {
    const char* text;
    std::int64_t least;  // without a stored interval
};
const Version kVersions[] = {{"", 604800 * kSecond},
                             {"1.0", 604800 * kSecond},
                             {"1.1b3", 86400 * kSecond},
                             {"2.0fc1", 86400 * kSecond},
                             {"2.0B1 FC f c", 604800 * kSecond}};
const PropertyList kUnusableIntervals[] = {{}, "60", kNow, PropertyList::dictionary({})};

struct Last {
    PropertyList stored;
    std::int64_t microsecondsAgo;  // INT64_MAX: any time is enough
};
const Last kLasts[] = {
    {{}, INT64_MAX},
    {"2026-01-01", INT64_MAX},
    {1, INT64_MAX},
    {kNow, 0},
    {ago(0.499999), 499'999},
    {ago(86399.5), 86'399'500'000},
    {ago(86400), 86400 * kSecond},
    {ago(604800), 604800 * kSecond},
    {ago(-86400), -86400 * kSecond},
    {*dateFromISO8601("0001-01-01T00:00:00Z"), INT64_MAX - 1},
    {*dateFromISO8601("9999-12-31T00:00:00Z"), INT64_MIN},
};

struct System {
    PropertyList stored;
    std::uint32_t current;
    bool isNew;
};
const System kSystems[] = {{{}, 0, false},
                           {{}, 0x120500, true},
                           {0x120500, 0x120500, false},
                           {0x120400, 0x120500, true},
                           {"0x120500", 0x120500, true},
                           {-1, 0xFFFFFFFF, false}};

Rule expected(bool runtime, bool fromModule, const Host& host, const Switch& onOff, const Login& login,
              bool countsDates, std::int64_t least, const Last& last, const System& system) {
    if (runtime) return Rule::Runtime;
    if (fromModule && host.isIgnored) return Rule::Host;
    if (!onOff.isOn) return Rule::Off;
    if (fromModule && login.isTooRecent) return Rule::Login;
    bool isLongAgo = last.microsecondsAgo == INT64_MAX || last.microsecondsAgo >= least;
    if (countsDates && isLongAgo) return Rule::Date;
    return system.isNew ? Rule::System : Rule::None;
}

// Calls the function for every value of the dimensions that are the same for every interval.
template <typename Function>
void forEveryState(Function function) {
    for (bool runtime : {false, true})
        for (bool fromModule : {false, true})
            for (const Host& host : kHosts)
                for (const Switch& onOff : kSwitches)
                    for (const Login& login : kLogins)
                        for (const Last& last : kLasts)
                            for (const System& system : kSystems) {
                                ScheduleState state{runtime, fromModule,  host.identifier, onOff.stored,
                                                    {},      last.stored, system.stored,   "",
                                                    kNow,    login.date,  system.current};
                                function(state, [&](bool countsDates, std::int64_t least) {
                                    return expected(runtime, fromModule, host, onOff, login, countsDates, least, last,
                                                    system);
                                });
                            }
}

void compare(const ScheduleState& state, Rule rule) {
    Decision decision = decide(state);
    const bool isDue = rule == Rule::Date || rule == Rule::System, isRight = decision.rule == rule;
    if (isRight && decision.isDue() == isDue) return;
    CONTEXT(check::show(state.checkForUpdates) + " " + check::show(state.checkInterval) + " " +
            check::show(state.lastCheckDate) + " " + state.hostIdentifier + " " + state.moduleVersion);
    CHECK_EQ(ruleName(decision.rule), ruleName(rule));
    REQUIRE(isRight && decision.isDue() == isDue);  // the first one tells enough
}

}  // namespace

TEST(EveryDecisionIsThatOfTheFirstRuleThatHolds) {
    forEveryState([&](ScheduleState& state, auto expectedFor) {
        for (const Interval& interval : kIntervals) {
            state.checkInterval = interval.stored;
            compare(state, expectedFor(interval.countsDates, interval.least));
        }
        for (const Version& version : kVersions)
            for (const PropertyList& unusable : kUnusableIntervals) {
                state.checkInterval = unusable;
                state.moduleVersion = version.text;
                compare(state, expectedFor(true, version.least));
            }
        state.moduleVersion.clear();
    });
}
