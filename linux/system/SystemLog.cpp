#include "linux/system/SystemLog.h"

#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace linux {

using namespace platform;

namespace {

bool isWatched() {
    const char* wish = std::getenv("TYPESLATE_LOG");
    return isatty(STDERR_FILENO) || (wish && std::string_view(wish) == "stderr");
}

void appendVisible(std::string& text, unsigned char c) {
    if (c == '\n' || c == '\t') {
        text += c == '\n' ? "\\n" : "\\t";
        return;
    }
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\x%02X", unsigned{c});
    text += escape;
}

// In UTF-8 the control characters U+0080 to U+009F, which some terminals obey, are C2 and a byte from 80 to 9F.
bool startsLateControl(std::string_view text) {
    return text.size() >= 2 && text[0] == '\xC2' && static_cast<unsigned char>(text[1]) < 0xA0;
}

void writeToStandardError(std::string_view text) {
    while (!text.empty()) {
        ssize_t count = ::write(STDERR_FILENO, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

}  // namespace

std::string withVisibleControls(std::string_view text) {
    std::string visible;
    visible.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        bool lateControl = startsLateControl(text.substr(i));
        if (c >= 0x20 && c != 0x7F && !lateControl) {
            visible += text[i];
            continue;
        }
        appendVisible(visible, c);
        if (lateControl) appendVisible(visible, static_cast<unsigned char>(text[++i]));
    }
    return visible;
}

static std::string visibleLine(std::string_view line) {
    // Some formats end their line themselves.
    if (line.ends_with('\n')) line.remove_suffix(1);
    return withVisibleControls(line);
}

SystemLog::SystemLog() : toStandardError_(isWatched()) {}

void StandardErrorLog::write(std::string_view line) { writeToStandardError(visibleLine(line) + "\n"); }

void SystemLog::write(std::string_view line) {
    std::string visible = visibleLine(line);
    syslog(LOG_USER | LOG_NOTICE, "%s", visible.c_str());
    if (toStandardError_) writeToStandardError(visible + "\n");
}

}  // namespace linux
