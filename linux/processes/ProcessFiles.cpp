#include "linux/processes/ProcessFiles.h"

#include "linux/files/LinuxFiles.h"

#include <charconv>

namespace linux {

using namespace platform;

namespace {

// Fields as proc(5) numbers them; the first after the program's name is 3.
constexpr int kFirstField = 3, kStartField = 22;

std::string_view takeField(std::string_view& rest) {
    std::string_view field = rest.substr(0, rest.find(' '));
    rest.remove_prefix(std::min(field.size() + 1, rest.size()));
    return field;
}

}  // namespace

std::optional<std::int64_t> decimal(std::string_view text) {
    while (text.ends_with('\n')) text.remove_suffix(1);
    std::int64_t number = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

std::string processFolder(ProcessID process) { return "/proc/" + std::to_string(process); }

std::optional<std::int64_t> startTicks(ProcessID process) {
    auto stat = LinuxFiles().readFile(processFolder(process) + "/stat");
    return stat ? startTicksIn(*stat) : std::nullopt;
}

// The program's name stands in parentheses and may itself hold blanks and parentheses.
std::optional<std::int64_t> startTicksIn(std::string_view stat) {
    std::size_t nameEnd = stat.rfind(") ");
    if (nameEnd == std::string_view::npos) return std::nullopt;
    std::string_view rest = stat.substr(nameEnd + 2);
    for (int field = kFirstField; field < kStartField; ++field) takeField(rest);
    return decimal(takeField(rest));
}

}  // namespace linux
