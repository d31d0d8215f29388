// Of the check and the launch what no script shows: the runtime's part, and the C functions.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/TWVC.h"
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdaterLaunch.h"
#include "propertylist/Date.h"
#include "tests/updater/UpdaterFixture.h"

#include <limits>

using namespace platform;
using namespace twvc;

TEST(TheRuntimeMayHaveItsOwnUpdaterAndLog) {
    static std::string sPrinted;
    UpdaterFixture f;
    fake::Bundle& runtime = f.world.bundles.loaded["com.tarnwick.plinth"];
    auto hasNone = +[]() -> std::int32_t { return 0; };
    auto hasOne = +[]() -> std::int32_t { return 1; };
    runtime.functions["PlinthHasUpdater"] = reinterpret_cast<void*>(hasOne);
    CHECK_EQ(checkForUpdate(f.services, nullptr, true, nullptr), kNoErr);
    runtime.functions["PlinthHasUpdater"] = reinterpret_cast<void*>(hasNone);
    auto print = +[](const char* format, const char* line) { sPrinted += std::string(format) + "|" + line; };
    runtime.functions["plinthprintf"] = reinterpret_cast<void*>(print);
    CHECK_EQ(f.check(false), kNoErr);
    CHECK_EQ(sPrinted, formatted("%%s|[Typeslate] Checking for updated versions of Typeslate (com.tarnwick.typeslate)\n"
                                 "%%s|[Typeslate] Launched the updater at %s\n",
                                 {kUpdater}));
    CHECK_EQ(f.takeLog(), std::vector<std::string>{});
    gBundleName = "First";
    runUpdater(f.services, f.world.bundles.openBundle(kModule).get(), kDomain, nullptr);
    CHECK(sPrinted.find("[First] Checking for updated versions of First (") != sPrinted.npos);
}

TEST(ForeignCallersReachTheSameThroughC) {
    UpdaterFixture f;
    TWVC_SetServices(nullptr);
    CHECK_EQ(TWVC_RunUpdater(kModule, kDomain, nullptr), kParamErr);
    CHECK_EQ(TWVC_GetSystemVersion(), 0U);
    TWVC_SetVersionDatePreferences(kDomain);
    char text[12];
    CHECK_EQ(GetNSStringFromDate(0, 1, 1, text, sizeof text), -1);

    TWVC_SetServices(reinterpret_cast<const TWVCServices*>(&f.services));
    TWVCFileReference launched{};
    CHECK_EQ(TWVC_CheckForUpdate(nullptr, 0, &launched), kParamErr);
    CHECK_EQ(TWVC_CheckForUpdate("/nowhere", 0, &launched), kParamErr);
    CHECK_EQ(TWVC_RunUpdater(kModule, "\xFF", &launched), kParamErr);
    CHECK_EQ(TWVC_RunUpdater(kModule, nullptr, &launched), kParamErr);
    CHECK_EQ(runUpdater(f.services, f.world.bundles.openBundle(kModule).get(), std::string_view("a\0b", 3), nullptr),
             kBadName);
    CHECK_EQ(launched.path[0], '\0');
    CHECK_EQ(TWVC_GetSystemVersion(), 0x100409U);

    double login = 0;
    CHECK_EQ(TWVC_CopyLoginWindowLaunchDate(&login), 0);
    f.world.processes.items = {{"", "com.apple.LoginWindow", Date{1}}, {"", "com.apple.loginwindow", Date{2'500'000}}};
    CHECK_EQ(TWVC_CopyLoginWindowLaunchDate(&login), 1);
    CHECK_EQ(login, 2.5);

    CHECK_EQ(GetNSStringFromDate(0, 1, 2, text, sizeof text), 33);
    CHECK_EQ(std::string(text), "1970-01-01T");
    f.world.dates.month = "M\u00E4rz";
    for (const auto& [size, cut] : {std::pair{1U, ""}, {2U, "M"}, {3U, "M"}, {4U, "M\u00E4"}, {6U, "M\u00E4rz"}})
        CHECK(GetNSStringFromDate(0, 1, 2, text, size) > 11 && std::string(text) == cut);
    CHECK_EQ(GetNSStringFromDate(0, 1, 5, text, sizeof text), -1);
    CHECK_EQ(GetNSStringFromDate(std::numeric_limits<double>::quiet_NaN(), 1, 1, text, sizeof text), -1);
    CHECK(GetNSStringFromDate(-1e30, 1, 1, nullptr, 0) > 0);
    CHECK(!stringFromDate(f.services, "text", DateStyle::Short, DateStyle::Short));
    f.world.dates.fails = true;
    CHECK_EQ(GetNSStringFromDate(0, 1, 1, text, sizeof text), -1);
    TWVC_SetServices(nullptr);
}
