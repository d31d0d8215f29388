#include "linux/system/FolderBundle.h"
#include "linux/system/LinuxSystem.h"
#include "linux/system/Network.h"
#include "tests/support/Check.h"

using namespace platform;
using namespace linux;

TEST(SystemVersionComesFromOsReleaseAndTheUserFromTheProcess) {
    const std::tuple<const char*, const char*, std::optional<SystemVersion>> cases[] = {
        {"ID=debian\nVERSION_ID=\"12\"\n", "12.11\n", {{12, 11, 0}}},
        {"ID=debian\nVERSION_ID=\"12\"\n", "trixie/sid\n", {{12, 0, 0}}},
        {"ID=ubuntu\nVERSION_ID=\"24.04\"\n", "trixie/sid\n", {{24, 4, 0}}},
        {"NAME=x\nVERSION_ID='5.15.3'", "", {{5, 15, 3}}},
        {"ID=debian\n", "13.1\n", {}},
        {"ID=other\nVERSION_ID=rolling\n", "", {}},
        {"VERSION_ID=\nXVERSION_ID=9\n", "", {}},
        {"VERSION_ID=99999999999999999999", "", {}},
    };
    for (const auto& [release, debian, expected] : cases) {
        CHECK(parseSystemVersion(release, debian) == expected);
    }
    CHECK_EQ(LinuxSystem().gestalt(fourCharCode("sysv")).value_or(0), 0x1049U);
    CHECK(!LinuxSystem().gestalt(fourCharCode("none")));
    // A number, and nothing else, can stand in for the user.
    for (auto [text, isTaken] : {std::pair{"1234", true}, {"", false}, {"12x", false}, {"-1", false}}) {
        check::ScopedEnvironment environment("TYPESLATE_UID", text);
        CHECK_EQ(LinuxSystem().realUserID() == 1234, isTaken);
    }
}

TEST(APageIsOutOfReachWithoutARouteOrBehindAnExamplesName) {
    const std::string head = "Iface Destination Gateway Flags RefCnt Use Metric Mask MTU Window IRTT\n";
    const std::string local = head + "eth0 000200C0 00000000 0001 0 0 0 00FFFFFF 0 0 0\n";
    const std::string all = head + "eth0 00000000 010200C0 0003 0 0 0 00000000 0 0 0\n";
    const std::string half = head + "tun0 00000000 0100000A 0003 0 0 0 00000080 0 0 0\n";
    const std::string zeros(32, '0'), prefix = zeros + " 00 " + zeros + " 00 ";
    const std::string refuses = prefix + zeros + " ffffffff 1 0 00200200 lo\n";
    const std::string all6 = prefix + "fd01 400 3 0 3 eth0\n";
    const std::tuple<std::string, std::string, const char*, bool> cases[] = {
        {all, refuses, "https://a.org/b", true},
        {local, refuses, "https://a.org/b", false},
        {half, "", "https://a.org/b", false},
        {local, refuses + all6, "https://a.org/b", true},
        {head, "x\n\n", "https://a.org/b", false},
        {all, "", "https://a.example/b", false},
        {all, "", "https://a.example:80/b", false},
        {all, "", "https://a.org/b.example", true},
        {all, "", "https://examples.org?a.test", true},
        {all, "", "mailto:a@b.invalid", true},
        {all, "", "https://localhost.localhost/", false},
    };
    check::TemporaryFolder folder;
    CHECK(mayReach("https://a.org/", folder.path()));
    for (const auto& [route, route6, url, isReached] : cases) {
        check::writeFile(folder / "route", route);
        check::writeFile(folder / "ipv6_route", route6);
        CHECK_EQ(std::string(url) + (mayReach(url, folder.path()) ? " reached" : ""),
                 std::string(url) + (isReached ? " reached" : ""));
    }
}

TEST(LanguagesFollowTheEnvironment) {
    const std::tuple<const char*, const char*, const char*, std::vector<std::string>> cases[] = {
        {nullptr, nullptr, "de_AT.UTF-8@euro", {"de_AT", "de", "en"}},
        {"fr:de_CH", nullptr, "ja_JP.UTF-8", {"fr", "de_CH", "de", "en"}},
        {"fr", "C", "ja_JP", {"en"}},
        {nullptr, "../../etc", nullptr, {"en"}},
    };
    for (const auto& [language, lcAll, lang, expected] : cases) {
        check::ScopedEnvironment a("LANGUAGE", language), b("LC_ALL", lcAll), d("LANG", lang),
            e("LC_MESSAGES", nullptr);
        CHECK_EQ(preferredLanguages(), expected);
    }
}

TEST(BundlesGiveTheirResourcesByLanguage) {
    check::TemporaryFolder folder;
    std::string resources = folder / "A.app/Contents/Resources/";
    check::ScopedEnvironment a("LANGUAGE", nullptr), b("LC_ALL", "de_AT.UTF-8");
    CHECK(!FolderBundle::open(folder / "A.app"));
    check::writeFile(folder / "A.app/Contents/Info.plist",
                     "<plist><dict><key>CFBundleIdentifier</key><string>org.test</string></dict></plist>");
    check::writeFile(resources + "de.lproj/Localizable.strings",
                     "<plist><dict><key>Hello</key><string>Servus</string></dict></plist>");
    check::writeFile(resources + "Icon.png", "x");
    auto bundle = FolderBundle::open((folder / "A.app") + "//");
    REQUIRE(bundle && bundle->path() == folder / "A.app" && bundle->identifier() == "org.test");
    CHECK_EQ(bundle->resourcePath("Icon", "png").value_or(""), resources + "Icon.png");
    CHECK_EQ(bundle->resourcePath("Localizable", "strings").value_or(""), resources + "de.lproj/Localizable.strings");
    for (const char* name : {"../Info", "", ".", "none"}) CHECK(!bundle->resourcePath(name, "plist"));
    CHECK_EQ(bundle->localizedString("Hello") + bundle->localizedString("Bye"), "ServusBye");
    CHECK(bundle->functionNamed("none") == nullptr);
}
