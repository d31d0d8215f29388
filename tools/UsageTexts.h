// The argument parser's own texts in the user's language.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace tools {

// Headings and the words of usage lines, of the command and of all that have been added to it.
void localizeUsage(CLI::App& app);

// What an argument may be. The parser itself would refuse any other in English.
CLI::Validator oneOf(std::vector<std::string> words);
CLI::Validator wholeNumber();
CLI::Validator entryName();  // what entrylist::entryAddress() takes
CLI::Validator secondsWithin(double shortest, double longest);

// One line, with its end, that says what is wrong with the call that this parser has just read, and where help is. It
// tells from the kind of the error and the state of the parser. What no command here should cause stays in the parser's
// English words. The arguments are the program's.
std::string usageProblem(const CLI::App& app, const CLI::Error& error, const std::vector<std::string>& arguments);

}  // namespace tools
