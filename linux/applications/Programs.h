// Programs that commands name: whether they are installed, and what kind they are.
#pragma once

#include "linux/applications/ApplicationEnvironment.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace linux {

bool isExecutableFile(const std::string& path);

// The path of an executable file: a name is looked for in the program folders, an absolute path below the test root
// first and then as it stands, so that a test tree need not hold copies of the system's programs. Empty when there is
// none.
std::string findProgram(const std::string& program, const ApplicationEnvironment& environment);

// Where the program stands in the words of a command, behind "env", its options and its assignments; words.size() when
// there is none.
std::size_t programIndex(const std::vector<std::string>& words);

// Whether a program (a name or a path) is Wine, or a Windows program that only Wine can run.
bool isWineProgram(std::string_view program);

// Whether a program starts other programs by their arguments (a shell, an interpreter, a sandbox): that it runs tells
// nothing about which application does.
bool isLauncherProgram(std::string_view program);

}  // namespace linux
