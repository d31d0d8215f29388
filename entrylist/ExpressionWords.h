// Why a text is no expression, in words for people.
#pragma once

#include "platform/Expressions.h"

#include <functional>
#include <string>
#include <string_view>

namespace entrylist {

std::size_t characters(std::string_view text);  // of UTF-8; a byte that is none counts as a part of the one before it
// At most so many characters, the last one an ellipsis where some are left out. What would begin a new line is a blank.
std::string shortened(std::string_view text, std::size_t most);

using Localized = std::function<std::string(std::string_view key)>;

// The reason in the user's language where it is one of the usual ones, else in English.
std::string reasonInWords(const platform::ExpressionProblem& problem, const Localized& localized);
// A sentence with the place, in characters of the text and counted from 1: the place behind the last one is one, too.
std::string problemInWords(const platform::ExpressionProblem& problem, std::string_view text,
                           const Localized& localized);

}  // namespace entrylist
