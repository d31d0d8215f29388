// Text laid out for a terminal, where some characters take two columns and some none. Built without libunistring, each
// character counts as one, and nothing is broken into lines.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace linux {

// How many columns a terminal shows one line of UTF-8 text in.
std::size_t columnsOf(std::string_view text);

// The cells of each row below those of the row above, two blanks apart, each row a line. Every row has as many cells.
// A cell of more than kWidestCell columns does not widen its column: it moves the rest of its own line.
inline constexpr std::size_t kWidestCell = 40;
std::string tableText(const std::vector<std::vector<std::string>>& rows);

// Broken where Unicode's line breaking (UAX #14) allows it, so that no line has more than kHelpColumns if that can be.
// Each line after the first starts with that many blanks, and the first is taken to start as far in.
inline constexpr std::size_t kHelpColumns = 79;
std::string wrapped(std::string_view text, std::size_t indent);

// An item of a program's help, as one or more whole lines: the term, and what it means beside it or, where the term is
// too long for that, below it.
std::string helpItem(std::string_view term, std::string_view meaning);

}  // namespace linux
