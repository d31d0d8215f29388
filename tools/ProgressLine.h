// A line on the terminal that says how far a command is. Without a terminal as standard error it shows nothing.
#pragma once

#include "platform/Log.h"

#include <string>
#include <string_view>

namespace tools {

// A log too, which writes to another one: the log of the system may go to the same terminal, and would continue the
// progress line. The other log must outlive it.
class ProgressLine final : public platform::Log {
public:
    explicit ProgressLine(platform::Log& log);
    ~ProgressLine() override { clear(); }
    void show(std::string_view text);  // in place of what it shows
    void clear();
    void write(std::string_view line) override;

private:
    platform::Log& log_;
    const bool isTerminal_;
    std::string shown_;
};

}  // namespace tools
