// What is done to the list as a whole: taking changes back, and finding entries.
#include "entrylist/Differences.h"
#include "entrylist/EntryIndex.h"
#include "entrylist/ExpressionPreview.h"
#include "entrylist/ExpressionWords.h"
#include "entrylist/History.h"
#include "entrylist/ListEdits.h"
#include "entrylist/Unreachable.h"
#include "tests/pane/PaneFixture.h"

#include <random>

using namespace platform;
using namespace entrylist;

namespace {

std::string inWords(const std::vector<Conflict>& conflicts) {
    std::string text;
    for (const Conflict& conflict : conflicts) {
        const char* kinds[] = {"gone ", "back ", "changed "};
        text += (text.empty() ? "" : ", ") + std::string(kinds[static_cast<int>(conflict.kind)]);
        text += conflict.entry["Name"].stringValue();
    }
    return text;
}

// A list of up to six of nine entries, each with one of three values of each of two options.
List anyList(std::mt19937& random) {
    List list;
    for (unsigned i = random() % 7; i > 0; --i) {
        const std::string name(1, static_cast<char>('a' + random() % 9));
        const PropertyList made = entry("Path " + name + " " + name + " x=" + std::to_string(random() % 3) +
                                        " y=" + std::to_string(random() % 3));
        if (EntryIndex(list).find(made, 0)) continue;
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(random() % (list.size() + 1)), made);
    }
    return list;
}

}  // namespace

TEST(AnExpressionIsTriedOnAnyNumberOfApplications) {
    fake::Expressions expressions;
    std::vector<ApplicationFacts> applications(13'000, {"i", 0, "/p", "n"});
    applications[1].identifier.clear();
    const ExpressionMatches matches = matchesOf(expressions, "", 1, applications);
    CHECK(matches.found.size() == applications.size() - 1 && matches.found[1] == &applications[2] && !matches.costly);
    CHECK(!matches.isCutShort);
    // But only with so much effort.
    expressions.most = 4000;
    CHECK(matchesOf(expressions, "", 0, applications).isCutShort == false);
    expressions.most = 2000;
    const ExpressionMatches cut = matchesOf(expressions, "", 0, applications);
    CHECK(cut.isCutShort && !cut.costly && cut.found.size() == 10'000);
    CHECK(matchesOf(expressions, "$n", 0, applications).costly == &applications[0]);
    for (int kind : {-1, 3}) CHECK(matchesOf(expressions, "n", kind, applications).found.empty());
}

// Of names that are longer than the line there is the first in any case; of the tool tip's lines not too many.
TEST(LongNamesAndReasonsAreCutBetweenCharacters) {
    PaneFixture f;
    const std::string longName = "é\n" + std::string(200, 'x'), shown = "é " + std::string(57, 'x') + "…";
    for (int i = 0; i < 21; ++i)
        f.world.applications.items.push_back({"/p", i ? "y" + longName : longName, kUnknownCreator, ""});
    f.open();
    f.field("regex").text = "x";
    f.act("previewExpression:", "regex");
    CHECK_EQ(f.field("regexMatches").text, "Matches 21 of 21 applications: " + shown + ", …");
    const std::string tip = f.field("regexMatches").toolTip;
    CHECK(std::ranges::count(tip, '\n') == 20 && tip.ends_with("x…\n…") && tip.starts_with("é x"));
    CHECK_EQ(characters("aé…😀"), 4U);
    CHECK_EQ(shortened("aé…😀", 4), "aé…😀");
    CHECK_EQ(shortened("aé…😀b", 4), "aé……");
    // The reasons that are usual are said in the user's language.
    auto localized = [](std::string_view key) { return "<" + std::string(key) + ">"; };
    CHECK_EQ(problemInWords({9, "missing closing parenthesis"}, "é(", localized),
             "<Not an expression, at character 3: <missing closing parenthesis>. It would match nothing.>");
    CHECK_EQ(reasonInWords({0, "odd"}, localized), "odd");
}

TEST(WhatCanNeverApplyIsToldWithItsReason) {
    fake::Expressions expressions;
    UnreachableEntries unreachable(expressions);
    auto english = [](std::string_view key) { return std::string(key); };
    auto told = [&](const PropertyList& list) {
        std::string text;
        for (std::size_t row = list.size(); row-- > 0;)  // in any order
            if (const Unreachable& what = unreachable.at(list, row))
                text = std::to_string(row) + " " + unreachableInWords(what, list, row, english) +
                       (text.empty() ? "" : "; " + text);
        return text;
    };
    for (const auto& [text, expected] : cells<2>("../entrylist/unreachable.txt")) {
        CONTEXT(text);
        const PropertyList list = PropertyList::array(entries(text));
        CHECK_EQ(told(list), expected);
        const int compiled = expressions.compiled;
        CHECK_EQ(told(PropertyList::array(entries(text))), expected);
        CHECK_EQ(expressions.compiled, compiled);
        CHECK(!unreachable.at(list, list.size()));
    }
    expressions.available = false;
    CHECK_EQ(told(PropertyList::array(entries("Global; RegEx A ?b"))), "");
}

TEST(ChangesAreTakenBackAndWhatOthersDidStays) {
    for (const auto& [before, after, meanwhile, expected, conflicts] : cells<5>("../entrylist/edits.txt")) {
        CONTEXT(before + " | " + after + " | " + meanwhile);
        const List from = entries(before), to = entries(after);
        List list = meanwhile == "=" ? to : entries(meanwhile);
        CHECK_EQ(inWords(revert(difference(from, to), list)), conflicts);
        CHECK_EQ(list, entries(expected));
    }
}

TEST(WhateverWasDoneIsUndoneAndRedone) {
    std::mt19937 random(17);
    for (int round = 0; round < 3000; ++round) {
        std::vector<List> lists{anyList(random)};
        History history;
        for (int step = 0; step < 4; ++step) {
            lists.push_back(anyList(random));
            history.record(std::make_shared<ListEdits>(difference(lists[lists.size() - 2], lists.back())));
            if (lists.back() == lists[lists.size() - 2]) lists.pop_back();
        }
        List list = lists.back();
        auto go = [&](History::Direction direction, const List& expected) {
            SharedEdits edits = history.take(direction);
            REQUIRE(edits);
            const List now = list;
            CHECK(revert(*edits, list).empty());
            history.recordOpposite(direction, std::make_shared<ListEdits>(difference(now, list)));
            CHECK_EQ(list, expected);
        };
        for (std::size_t i = lists.size() - 1; i > 0; --i) go(History::Direction::Undo, lists[i - 1]);
        CHECK(!history.has(History::Direction::Undo));
        for (std::size_t i = 1; i < lists.size(); ++i) go(History::Direction::Redo, lists[i]);
        CHECK(!history.take(History::Direction::Redo));
        if (check::failures()) return;
    }
}
