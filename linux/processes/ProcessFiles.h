// What the kernel tells of a process in /proc.
#pragma once

#include "platform/Processes.h"

#include <optional>
#include <string>
#include <string_view>

namespace linux {

struct ProcessStat {
    platform::ProcessID parent = 0;
    std::int64_t startTicks = 0;  // since the machine's start, in clock ticks
};

// From <folder>/<process>/stat; nothing when there is no such process.
std::optional<ProcessStat> readProcessStat(const std::string& folder, platform::ProcessID process);
std::optional<ProcessStat> parseProcessStat(std::string_view line);
// A number that is all of the text, but for a line end.
std::optional<std::int64_t> decimal(std::string_view text);

}  // namespace linux
