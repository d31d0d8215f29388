// The command line of a desktop entry (its Exec key). Nothing here starts a program.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace linux {

// The words of a command, quotes resolved, field codes untouched. Besides the double quotes of the rules, single quotes
// and a backslash before any character are taken as a shell takes them, since entries in use rely on it. Empty when
// there is no word or a quote is left open.
std::vector<std::string> splitCommand(std::string_view exec);

// What field codes stand for.
struct CommandFields {
    std::vector<std::string> files;  // absolute paths
    std::string icon;
    std::string name;  // in the user's language
    std::string path;  // of the desktop file
};
// The words with field codes replaced: %f and %u by the first file, %F and %U (which must stand alone) by all of them,
// %u and %U in the form file://..., %i by "--icon" and the icon, %% by "%", the deprecated ones by nothing. Empty when
// a word holds an unknown code: such a command must not be run.
std::vector<std::string> expandCommand(const std::vector<std::string>& words, const CommandFields& fields);

// The command that splitCommand() and expandCommand() turn back into these words: each in double quotes.
std::string joinCommand(const std::vector<std::string>& words);

// Where the program stands in the words, behind "env", its options and its assignments; words.size() when there is
// none.
std::size_t programIndex(const std::vector<std::string>& words);

// Whether a program (a name or a path) is Wine, or a Windows program that only Wine can run.
bool isWineProgram(std::string_view program);

// Whether a program starts other programs by their arguments (a shell, an interpreter, a sandbox): that it runs tells
// nothing about which application does.
bool isLauncherProgram(std::string_view program);

}  // namespace linux
