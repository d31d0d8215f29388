#include "propertylist/Codec.h"
#include "settings/CFPreferencesWrapper.h"
#include "tests/support/FakePlatform.h"

using namespace platform;
using Wrapper = CFPreferencesWrapper_Typeslate;

constexpr const char* kDomain = "com.example.test";

TEST(EachGetterTakesOnlyItsOwnType) {
    const std::pair<const char*, PropertyList (Wrapper::*)(std::string_view) const> getters[] = {
        {"array", &Wrapper::arrayForKey},
        {"strings", &Wrapper::stringArrayForKey},
        {"text", &Wrapper::stringForKey},
        {"dictionary", &Wrapper::dictionaryForKey},
        {"data", &Wrapper::dataForKey}};
    std::vector<check::Case> cases = check::casesIn(TEST_DATA "/getters.txt");
    CHECK_EQ(cases.size(), 25U);
    for (const check::Case& c : cases) {
        CONTEXT(c.text);
        PropertyList stored = propertylist::decodePropertyList("<plist>" + c.text + "</plist>");
        CHECK_EQ(bool(stored), !c.text.empty());
        fake::Journal journal;
        fake::Preferences service{journal};
        auto prefs = Wrapper::preferencesWithApplication(service, kDomain);
        service.setValue("key", stored, kDomain);
        CHECK_EQ(prefs->objectForKey("key"), stored);
        CHECK_EQ(prefs->keyExist("key"), bool(stored));
        for (const auto& [kind, getter] : getters)
            CHECK_EQ((*prefs.*getter)("key"), c.label.find(kind) == c.label.npos ? PropertyList() : stored);
        std::ostringstream numbers;
        numbers << prefs->floatForKey("key") << (prefs->boolForKey("key") ? " yes " : " no ")
                << prefs->integerForKey("key");
        CHECK_EQ(numbers.str(), c.expected);
    }
}

TEST(SettersStoreTheirTypeAndNothingIsNoValue) {
    fake::Journal journal;
    fake::Preferences service{journal};
    auto prefs = Wrapper::preferencesWithApplication(service, kDomain);
    prefs->setBool_forKey(true, "b");
    prefs->setFloat_forKey(0.1F, "f");
    prefs->setInteger_forKey(-5, "i");
    prefs->setObject_forKey("old", "o");
    prefs->setObject_forKey({}, "o");
    CHECK_EQ(service.copyDomain(kDomain),
             PropertyList::dictionary({{"b", true}, {"f", static_cast<double>(0.1F)}, {"i", -5}, {"o", "old"}}));
    prefs->removeObjectForKey("o");
    CHECK(!prefs->keyExist("o"));
    service.readable = false;
    CHECK(!prefs->synchronize() && !prefs->isReadable());
    CHECK(!Wrapper::preferencesWithApplication(service, std::nullopt));
    CHECK(!Wrapper::initWithApplication(service, std::nullopt) && Wrapper::initWithApplication(service, kDomain));
}
