// The argument parser's own texts in the user's language.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace tools {

// Headings and the words of usage lines, of the command and of all that have been added to it.
void localizeUsage(CLI::App& app);

// Takes none but these words.
CLI::Validator oneOf(std::vector<std::string> words);

// What the parser says of a wrong call; as it is when the parser says something that it is not known to say.
std::string localizedUsageError(std::string_view english);

}  // namespace tools
