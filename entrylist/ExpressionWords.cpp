#include "entrylist/ExpressionWords.h"

#include "platform/Localizable.h"
#include "propertylist/Format.h"

#include <algorithm>

using platform::localizable;

namespace entrylist {
namespace {

// As the matcher says them. What it says less often stays in its own words.
const char* const kUsualReasons[] = {
    localizable("\\ at end of pattern"),
    localizable("unrecognized character follows \\"),
    localizable("numbers out of order in {} quantifier"),
    localizable("number too big in {} quantifier"),
    localizable("missing terminating ] for character class"),
    localizable("escape sequence is invalid in character class"),
    localizable("range out of order in character class"),
    localizable("invalid range in character class"),
    localizable("quantifier does not follow a repeatable item"),
    localizable("unrecognized character after (? or (?-"),
    localizable("POSIX named classes are supported only within a class"),
    localizable("unknown POSIX class name"),
    localizable("missing closing parenthesis"),
    localizable("unmatched closing parenthesis"),
    localizable("missing ) after (?# comment"),
    localizable("reference to non-existent subpattern"),
    localizable("lookbehind assertion is not fixed length"),
    localizable("length of lookbehind assertion is not limited"),
    localizable("subpattern name expected"),
    localizable("syntax error in subpattern name (missing terminator?)"),
    localizable("unknown property after \\P or \\p"),
    localizable("malformed \\P or \\p sequence"),
    localizable("using \\C is disabled by the application"),
    localizable("pattern string is longer than the limit set by the application"),
    localizable("regular expression is too large"),
};

bool beginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

}  // namespace

std::size_t characters(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, beginsCharacter));
}

std::string shortened(std::string_view text, std::size_t most) {
    const bool isLong = characters(text) > most;
    std::size_t kept = 0, end = 0;
    while (end < text.size() && (!beginsCharacter(text[end]) || ++kept <= most - isLong)) ++end;
    std::string shown(text.substr(0, isLong ? end : text.size()));
    std::ranges::replace_if(
        shown, [](char c) { return c >= 0 && c < ' '; }, ' ');
    return isLong ? shown + "…" : shown;
}

std::string reasonInWords(const platform::ExpressionProblem& problem, const Localized& localized) {
    const bool isUsual = std::ranges::find(kUsualReasons, problem.reason) != std::end(kUsualReasons);
    return isUsual ? localized(problem.reason) : problem.reason;
}

std::string problemInWords(const platform::ExpressionProblem& problem, std::string_view text,
                           const Localized& localized) {
    const std::size_t place = characters(text.substr(0, std::min(problem.position, text.size()))) + 1;
    return propertylist::formatted(localized("Not an expression, at character %d: %@. It would match nothing."),
                                   {place, reasonInWords(problem, localized)});
}

}  // namespace entrylist
