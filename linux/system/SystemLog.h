// The log of the system, and standard error for people who are watching.
#pragma once

#include "platform/Log.h"

#include <string>
#include <string_view>

namespace linux {

// The text with every control character made visible, as \n, \t or \xNN.
std::string withVisibleControls(std::string_view text);

// Writes each line to standard error, in one piece.
struct StandardErrorLog final : platform::Log {
    void write(std::string_view line) override;
};

// Writes each line to syslog(3), with the facility for user programs and the priority for notices, and also to standard
// error when that is a terminal or TYPESLATE_LOG is "stderr". Safe to use from several threads.
class SystemLog final : public platform::Log {
public:
    SystemLog();
    void write(std::string_view line) override;
    void showOnStandardError() { toStandardError_ = true; }  // in any case, from now on

private:
    bool toStandardError_;
};

}  // namespace linux
