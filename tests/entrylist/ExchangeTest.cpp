#include "entrylist/Exchange.h"
#include "propertylist/Codec.h"
#include "propertylist/Format.h"
#include "settings/EntryList.h"
#include "tests/support/Check.h"

#include <map>
#include <random>

using namespace entrylist;
using namespace platform;
using propertylist::formatted;
using propertylist::PropertyListFormat;

namespace {

// The text with every {WORD*count} written out.
std::string writtenOut(const std::string& text) {
    const std::size_t begin = text.find('{'), times = text.find('*', begin), end = text.find('}', begin);
    if (begin == text.npos) return text;
    std::string all = text.substr(0, begin);
    for (int i = std::stoi(text.substr(times + 1)); i > 0; --i) all += text.substr(begin + 1, times - begin - 1);
    return all + writtenOut(text.substr(end + 1));
}

std::string english(std::string_view text) { return std::string(text); }

PropertyList entryFrom(const std::string& word) {
    if (word == "x") return "x";
    if (word == "G0") return settings::newGlobalEntry();
    const PropertyList of = PropertyList::dictionary({{"FontSize", word[1] - '0'}});
    if (word[0] == 'G') return PropertyList::dictionary({{"Type", "Global"}, {"Name", "Global"}, {"Settings", of}});
    return PropertyList::dictionary({{"Type", "Path"}, {"Data", word.substr(0, 1)}, {"Settings", of}});
}

List listFrom(const std::string& words) {
    List list;
    std::istringstream in(words);
    for (std::string word; in >> word;) list.push_back(entryFrom(word));
    return list;
}

std::string wordOf(const PropertyList& entry) {
    if (!entry.isDictionary()) return entry.description();
    const bool isGlobal = settings::hasType(entry, "Global");
    return (isGlobal ? "G" : std::string(entry["Data"].stringValue())) +
           std::to_string(entry["Settings"]["FontSize"].integerValue());
}

std::string wordsOf(const List& list) {
    std::string text;
    for (const PropertyList& entry : list) text += wordOf(entry) + " ";
    return text;
}

std::string textOf(const ImportPlan& plan) {
    std::string text;
    for (const ImportItem& item : plan.items) text += "+~="[int(item.action)] + wordOf(item.theirs) + " ";
    for (const PropertyList& entry : plan.removed) text += "-" + wordOf(entry) + " ";
    for (std::size_t place : plan.repeated) text += "*" + std::to_string(place) + " ";
    return text;
}

ImportDecisions decisionsFrom(const std::string& words) {
    ImportDecisions decisions;
    std::istringstream in(words);
    std::string mode;
    in >> mode;
    decisions.mode =
        std::map<std::string, ImportMode>{
            {"mine", ImportMode::KeepMine}, {"theirs", ImportMode::TakeTheirs}, {"replace", ImportMode::ReplaceList}}
            .at(mode);
    for (std::size_t item; in >> item; decisions.otherwise[item] = true) decisions.otherwise.resize(item + 1);
    return decisions;
}

// Entries of every kind, no two alike, with keys and values that nobody here knows.
struct Dice {
    std::mt19937 engine;
    std::size_t below(std::size_t limit) { return engine() % limit; }
    std::string text() {
        std::string bytes(1 + below(6), ' ');
        for (char& c : bytes) c = "ab<&\xC3\n\0z"[below(8)];
        return bytes;
    }
    PropertyList value(int depth = 3) {
        switch (below(depth > 0 ? 8 : 6)) {
            case 0:
                return settings::keptBytes(text());
            case 1:
                return below(2) == 0;
            case 2:
                return static_cast<double>(engine()) / 3;
            case 3:
                return Date{static_cast<std::int64_t>(engine()) * 1'000'000};
            case 4:
                return PropertyList::data(text());
            case 6:
                return PropertyList::array({value(depth - 1), value(depth - 1)});
            case 7:
                return PropertyList::dictionary({{"a", value(depth - 1)}, {"b", value(depth - 1)}});
            default:
                return static_cast<std::int64_t>(engine()) - 5;
        }
    }
    List list() {
        List list{settings::newGlobalEntry()};
        for (std::size_t count = below(12); list.size() <= count;) {
            const char* type =
                std::initializer_list<const char*>{"Identifier", "Creator", "Path", "RegEx"}.begin()[below(4)];
            MutableDictionary entry;
            entry.set("Type", type);
            if (below(9))
                entry.set("Data", *type == 'R' ? PropertyList(std::to_string(below(9))) : settings::keptBytes(text()));
            if (below(3)) entry.set("Name", std::to_string(below(99)));
            if (below(3))
                entry.set("Settings", PropertyList::dictionary({{"FontSize", below(3)}, {"theirs", value()}}));
            if (below(2)) entry.set("Theirs", value());
            const PropertyList made = std::move(entry).freeze();
            if (!settings::EntryIdentity(made, 0).find(list)) list.push_back(made);
        }
        return list;
    }
};

}  // namespace

TEST(WhatIsNoDocumentOfEntriesIsRefusedWithItsPlace) {
    for (const check::Case& c : check::casesIn(TEST_DATA "/exchange-problems.txt")) {
        CONTEXT(c.label);
        const bool isWhole = !c.argument.empty();
        const std::string text = isWhole ? c.text : "<array>" + writtenOut(c.text) + "</array>";
        const PropertyList value = propertylist::decodePropertyList("<plist>" + text + "</plist>");
        CHECK(value || c.label.starts_with("nothing at all"));
        const PropertyList document = isWhole ? value : exchangeDocument(value.elements());
        CHECK_EQ(problemOf(document).text(english), c.expected);
        const ImportPlan plan = planImport(document, {});
        CHECK_EQ(plan.problem.text(english), c.expected);
        CHECK(!plan.problem || plan.items.empty());
    }
}

TEST(APlanIsMadeByIdentityAndAppliedToWhatIsThereThen) {
    for (const check::Case& c : check::casesIn(TEST_DATA "/exchange-plans.txt")) {
        CONTEXT(c.label);
        const std::size_t arrow = c.text.find("<-"), later = std::min(c.text.find("=>"), c.text.size());
        List list = listFrom(c.text.substr(0, arrow));
        const PropertyList document = exchangeDocument(listFrom(c.text.substr(arrow + 2, later - arrow - 2)));
        const ImportPlan plan = planImport(document, list);
        if (later < c.text.size()) list = listFrom(c.text.substr(later + 2));
        const ImportOutcome did = applyImport(plan, decisionsFrom(c.argument), list);
        CHECK_EQ(textOf(plan) + "| " + wordsOf(list) +
                     formatted("| %d added, %d replaced, %d left, %d removed",
                               {did.added, did.replaced, did.left, did.removed}),
                 c.expected);
    }
}

TEST(WhatIsExportedGivesAnEqualListElsewhere) {
    Dice dice{std::mt19937(17)};
    for (int round = 0; round < 300; ++round) {
        const List list = dice.list(), other = dice.list();
        const PropertyList made = exchangeDocument(list);
        const auto format = round % 2 ? PropertyListFormat::Binary : PropertyListFormat::XML;
        const PropertyList read = propertylist::decodePropertyList(propertylist::encodePropertyList(made, format));
        const PropertyList document = read ? read : made;  // not every text can be XML
        const ImportPlan plan = planImport(document, other);
        CHECK_EQ(plan.problem.text(english), "");
        List replaced = other, merged = other;
        applyImport(plan, {ImportMode::ReplaceList}, replaced);
        CHECK(replaced == list);
        const ImportOutcome did = applyImport(plan, {ImportMode::TakeTheirs}, merged);
        CHECK_EQ(merged.size(), other.size() + plan.count(ImportAction::Added));
        CHECK_EQ(did.replaced, plan.count(ImportAction::Replaced));
        for (const ImportItem& item : plan.items) {
            const auto row = settings::EntryIdentity(item.theirs, 0).find(other);
            CHECK_EQ(row.has_value(), item.action != ImportAction::Added);
            if (row) CHECK(other[*row] == item.mine);
            CHECK(merged[*settings::EntryIdentity(item.theirs, 0).find(merged)] == item.theirs);
        }
        const ImportOutcome again = applyImport(plan, {ImportMode::TakeTheirs}, merged);
        CHECK(again == ImportOutcome{.left = plan.items.size()});
    }
    const std::size_t rows[] = {2, 0, 3};
    const List few{"a", "b", "c"};
    CHECK_EQ(exchangeDocument(few, rows)["Entries"], PropertyList::array({"c", "a"}));
}
