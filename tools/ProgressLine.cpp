#include "tools/ProgressLine.h"

#include <unistd.h>
#include <cstdio>

namespace tools {
namespace {

constexpr std::string_view kEraseLine = "\r\x1b[K";

// In one piece, so that the line is never seen empty between two states.
void put(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); }

}  // namespace

ProgressLine::ProgressLine(platform::Log& log) : log_(log), isTerminal_(isatty(STDERR_FILENO)) {}

void ProgressLine::show(std::string_view text) {
    if (!isTerminal_) return;
    shown_ = text;
    put(std::string(kEraseLine) + shown_);
}

void ProgressLine::clear() {
    if (!shown_.empty()) put(kEraseLine);
    shown_.clear();
}

void ProgressLine::write(std::string_view line) {
    const std::string shown = shown_;
    clear();
    log_.write(line);
    if (!shown.empty()) show(shown);
}

}  // namespace tools
