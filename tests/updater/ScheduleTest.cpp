// The schedule's decision: schedule.txt has a line for each state.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdateSchedule.h"
#include "tests/support/Script.h"

using namespace platform;
using namespace twvc;

namespace {

const Date kNow = *propertylist::dateFromISO8601("2026-01-31T12:00:00Z");

void set(ScheduleState& state, const std::string& name, Words words) {
    if (name == "runtime") state.runtimeHasUpdater = words.value().boolValue();
    if (name == "from") state.isCheckingFromPlinth = words.next() == "module";
    if (name == "host") state.hostIdentifier = words.next();
    if (name == "on") state.checkForUpdates = words.value();
    if (name == "login") state.loginDate = words.value(kNow).dateValue();
    if (name == "interval") state.checkInterval = words.value(kNow);
    if (name == "version") state.moduleVersion = words.next();
    if (name == "last") state.lastCheckDate = words.value(kNow);
    if (name == "recorded") state.lastRunSystemVersion = words.value();
    if (name == "running") state.systemVersion = static_cast<std::uint32_t>(words.value().integerValue());
}

std::string shown(const Decision& decision) {
    std::string text(ruleName(decision.rule));
    if (decision.isDue()) text += ", due";
    if (decision.interval) text += ", every " + check::show(*decision.interval);
    if (decision.defaultedToDaily) text += " by default";
    return decision.ignoredHost.empty() ? text : text + " " + std::string(decision.ignoredHost);
}

}  // namespace

TEST(TheFirstRuleThatHoldsDecides) {
    for (const std::string& line : check::linesOf(TEST_DATA "/schedule.txt")) {
        CONTEXT(line);
        ScheduleState state;
        state.now = kNow;
        std::istringstream words(line);
        for (std::string word; words >> word && word != "->";) {
            const std::size_t sign = word.find('=');
            set(state, word.substr(0, sign), Words(word.substr(sign + 1)));
        }
        std::string expected;
        std::getline(words >> std::ws, expected);
        CHECK_EQ(shown(decide(state)), expected);
    }
}
