#include "settings/CFPreferencesWrapper.h"
#include "tests/support/Check.h"
#include "tests/support/FakePlatform.h"

using namespace platform;

namespace {

struct Fixture {
    fake::Journal journal;
    fake::Preferences service{journal};
    std::unique_ptr<CFPreferencesWrapper_Typeslate> prefs =
        CFPreferencesWrapper_Typeslate::preferencesWithApplication(service, "com.example.test");
};

}  // namespace

TEST(EachGetterTakesOnlyItsOwnType) {
    const PropertyList strings = PropertyList::array({"a", "b"});
    const PropertyList mixed = PropertyList::array({"a", 1});
    const PropertyList empty = PropertyList::array({});
    const PropertyList dictionary = PropertyList::dictionary({{"k", 1}});
    const PropertyList data = PropertyList::data("bytes");
    struct Case {
        PropertyList stored;
        const char* accepted;  // a A s d t: array, string array, string, dictionary, data
        float real;
        bool boolean;
        std::int64_t integer;
    };
    const Case cases[] = {
        {strings, "aA", 0, false, 0},    {mixed, "a", 0, false, 0},
        {empty, "aA", 0, false, 0},      {dictionary, "d", 0, false, 0},
        {data, "t", 0, false, 0},        {Date{1}, "", 0, false, 0},
        {"text", "s", 0, false, 0},      {"TRUE", "s", 0, true, 1},
        {"yEs", "s", 0, true, 1},        {"1", "s", 0, true, 1},
        {"No", "s", 0, false, 0},        {"0", "s", 0, false, 0},
        {"-42", "s", 0, false, -42},     {"+7", "s", 0, false, 7},
        {"12 apples", "s", 0, false, 0}, {"99999999999999999999", "s", 0, false, 0},
        {"maybe", "s", 0, false, 0},     {"False", "s", 0, false, 0},
        {"", "s", 0, false, 0},          {2.75, "", 2.75F, true, 2},
        {-3, "", -3, true, -3},          {true, "", 1, true, 1},
        {false, "", 0, false, 0},        {PropertyList(), "", 0, false, 0},
    };
    for (const Case& c : cases) {
        CONTEXT(check::show(c.stored));
        Fixture f;
        f.service.setValue("key", c.stored, "com.example.test");
        auto given = [&](char mark) {
            return std::string_view(c.accepted).find(mark) != std::string_view::npos ? c.stored : PropertyList();
        };
        CHECK_EQ(f.prefs->objectForKey("key"), c.stored);
        CHECK_EQ(f.prefs->keyExist("key"), bool(c.stored));
        CHECK_EQ(f.prefs->arrayForKey("key"), given('a'));
        CHECK_EQ(f.prefs->stringArrayForKey("key"), given('A'));
        CHECK_EQ(f.prefs->stringForKey("key"), given('s'));
        CHECK_EQ(f.prefs->dictionaryForKey("key"), given('d'));
        CHECK_EQ(f.prefs->dataForKey("key"), given('t'));
        CHECK_EQ(f.prefs->floatForKey("key"), c.real);
        CHECK_EQ(f.prefs->boolForKey("key"), c.boolean);
        CHECK_EQ(f.prefs->integerForKey("key"), c.integer);
    }
}

TEST(SettersStoreTheirTypeAndNothingIsNoValue) {
    Fixture f;
    f.prefs->setBool_forKey(true, "b");
    f.prefs->setFloat_forKey(0.1F, "f");
    f.prefs->setInteger_forKey(-5, "i");
    f.prefs->setObject_forKey("old", "o");
    f.prefs->setObject_forKey({}, "o");
    CHECK_EQ(f.prefs->objectForKey("b"), PropertyList(true));
    CHECK_EQ(f.prefs->objectForKey("f"), PropertyList(static_cast<double>(0.1F)));
    CHECK_EQ(f.prefs->objectForKey("i"), PropertyList(-5));
    CHECK_EQ(f.prefs->objectForKey("o"), PropertyList("old"));
    f.prefs->removeObjectForKey("o");
    CHECK(!f.prefs->keyExist("o"));
    CHECK(!CFPreferencesWrapper_Typeslate::preferencesWithApplication(f.service, std::nullopt));
}
