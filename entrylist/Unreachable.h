// Entries that can apply to no application, whichever that is: those in whose place an earlier one always applies, and
// those that name nothing. docs/reading.md has the rules that this follows from.
#pragma once

#include "entrylist/ExpressionWords.h"
#include "platform/Expressions.h"
#include "platform/PlatformTypes.h"

#include <cstddef>
#include <string>
#include <vector>

namespace entrylist {

struct Unreachable {
    enum class Reason { None, SecondGlobal, SameApplication, SameExpression, NoExpression, UnknownKind, NamesNothing };

    Reason reason = Reason::None;
    std::size_t earlier = 0;                   // the row of the entry that applies instead: of the first three reasons
    platform::ExpressionProblem problem = {};  // NoExpression
    explicit operator bool() const { return reason != Reason::None; }
};

// Answers for single rows of a list, which is gone through once as long as it stays the same value. An expression is
// compiled when its row is asked for first: 10,000 entries cost some milliseconds at the first question, and every
// later one next to nothing. Where expressions cannot be read, none counts as wrong.
class UnreachableEntries {
public:
    explicit UnreachableEntries(platform::ExpressionServices& expressions) : expressions_(expressions) {}

    // `list` is the array of entries; nothing is wrong with a row outside it.
    const Unreachable& at(const platform::PropertyList& list, std::size_t row);

private:
    struct Known {
        bool isCompiled = false;
        Unreachable what = {};
    };

    void goThrough(const platform::PropertyList& list);

    platform::ExpressionServices& expressions_;
    platform::PropertyList list_;
    std::vector<Known> rows_;
};

// The reason as a sentence.
std::string unreachableInWords(const Unreachable& what, const platform::PropertyList& list, std::size_t row,
                               const Localized& localized);

}  // namespace entrylist
