// What the kernel tells of a process in /proc.
#pragma once

#include "platform/Processes.h"

#include <optional>
#include <string>
#include <string_view>

namespace linux {

std::string processFolder(platform::ProcessID process);
// When a process was started, in clock ticks since the machine's start; nothing when there is no such process.
std::optional<std::int64_t> startTicks(platform::ProcessID process);
// The same from the line in its file "stat".
std::optional<std::int64_t> startTicksIn(std::string_view stat);
// A number that is all of the text, but for a line end.
std::optional<std::int64_t> decimal(std::string_view text);

}  // namespace linux
