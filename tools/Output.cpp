#include "tools/Output.h"

#include "linux/documents/Json.h"
#include "tools/Localized.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <utility>

namespace tools {

void print(std::string_view text) {
    bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    if (!isWritten) throw refused("standard output: %@", std::strerror(errno));
}

void printLine(std::string text) { print(std::move(text) + "\n"); }

void printJson(const platform::PropertyList& value) { printLine(linux::jsonText(value, linux::JsonLayout::Indented)); }

void flushOutput() {
    if (!std::cout.flush() || std::fflush(stdout) != 0 || std::ferror(stdout))
        throw refused("standard output: not all of it could be written");
}

}  // namespace tools
