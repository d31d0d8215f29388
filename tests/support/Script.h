// Tests as scripts: what is done and what is seen then, line by line in a text file.
//
//     == what the script shows
//     > a command and its words
//     everything that it brought about,
//     a line for each
//
// Each script has a stage of its own: a class with perform(command, words) and news(), the lines since the last call.
// Lines that begin with "#" are comments.
#pragma once

#include "propertylist/Date.h"
#include "tests/support/Check.h"

#include <cstdint>
#include <iomanip>
#include <map>
#include <optional>
#include <sstream>
#include <string>

// Words and the values that they stand for: - nothing, true, false, numbers (nan, inf and 0x10 too), "text", [] an
// empty array, @5 a date five seconds before that given, @first and @last the ends of the calendar.
class Words {
public:
    explicit Words(const std::string& line) : line_(line) {}
    std::string next(const char* otherwise = "") {  // a word, or several in quotes
        std::string word;
        return line_ >> std::quoted(word) ? word : otherwise;
    }
    propertylist::PropertyList value(propertylist::Date now = {}) {
        using propertylist::PropertyList;
        const bool isText = (line_ >> std::ws).peek() == '"';
        const std::string word = next("-");
        if (isText) return word;
        if (word == "-") return {};
        if (word == "[]") return PropertyList::array({});
        if (word == "true" || word == "false") return word == "true";
        if (word == "@first") return propertylist::Date{INT64_MIN};
        if (word == "@last") return propertylist::Date{INT64_MAX};
        if (word[0] == '@') return propertylist::dateByAdding(now, -std::stod(word.substr(1)));
        if (word.starts_with("0x")) return static_cast<std::int64_t>(std::stoll(word, nullptr, 16));
        if (word.find_first_not_of("-0123456789") == word.npos) return static_cast<std::int64_t>(std::stoll(word));
        return std::stod(word);
    }

    int number() { return static_cast<int>(value().integerValue()); }

private:
    std::istringstream line_;
};

namespace check {

// Every line but the empty ones and those that begin with "#".
inline std::vector<std::string> linesOf(const std::string& path) {
    std::vector<std::string> lines = linesIn(readFile(path));
    std::erase_if(lines, [](const std::string& line) { return line.empty() || line[0] == '#'; });
    return lines;
}

// A line for each value that is another one than before.
inline std::string changes(std::map<std::string, std::string>& seen, std::map<std::string, std::string> now) {
    std::string text;
    for (const auto& [name, value] : now)
        if (seen[name] != value) text.append(name).append(": ").append(value).append("\n");
    seen = std::move(now);
    return text;
}

template <typename Stage>
void play(const std::string& path) {
    std::string label, expected, found;
    std::optional<Stage> stage;
    auto compare = [&] {
        CONTEXT(label);
        CHECK_EQ(found, expected);
        found = expected = "\n";
    };
    for (const std::string& line : linesOf(path)) {
        if (line.starts_with("== ")) {
            compare();
            label = line;
            stage.emplace();
            continue;
        }
        expected += line + "\n";
        if (!line.starts_with("> ")) continue;
        CONTEXT(line);
        Words words(line.substr(2));
        const std::string command = words.next();
        stage->perform(command, words);
        found += line + "\n" + stage->news();
    }
    compare();
}

}  // namespace check
