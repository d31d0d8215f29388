#include "linux/system/FolderBundle.h"
#include "linux/system/LinuxSystem.h"
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
