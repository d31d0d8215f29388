// The rules of the font list, the name database and the escaped names once more, with every step as slow and plain as
// it can be, to hold the real readers against.
#pragma once

#include "pane/fontcatalog/FontListReader.h"
#include "pane/fontcatalog/TextEncoding.h"
#include "platform/Log.h"

#include <string>
#include <string_view>
#include <vector>

namespace reference {

struct RecordingLog : platform::Log {
    void write(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

void readFontList(std::string_view text, std::string_view path, const fontcatalog::FontFileFinder& find,
                  fontcatalog::NamesCollection& names, platform::Log& log);
void readNameDatabase(std::string_view text, fontcatalog::NamesCollection& names);
std::string escapedName(std::string_view text, bool isUnicode);

}  // namespace reference
