// A log for diagnostic lines, which are written only while the setting "Log Stuff" is on.
#pragma once

#include "platform/Log.h"
#include "settings/CFPreferencesWrapper.h"
#include "settings/EntryList.h"

namespace settings {

// The setting is read for each line. All that it is given must outlive it.
class DiagnosticLog final : public platform::Log {
public:
    // `otherwise` gets the lines while the setting is off; null: they are dropped. Without settings that is always so.
    DiagnosticLog(platform::Log& log, const CFPreferencesWrapper_Typeslate* settings,
                  platform::Log* otherwise = nullptr)
        : log_(log), settings_(settings), otherwise_(otherwise) {}
    bool isOn() override { return target() != nullptr; }
    void write(std::string_view line) override {
        if (platform::Log* log = target()) log->write(line);
    }

private:
    platform::Log* target() { return settings_ && settings_->boolForKey(kLogStuffKey) ? &log_ : otherwise_; }

    platform::Log& log_;
    const CFPreferencesWrapper_Typeslate* const settings_;
    platform::Log* const otherwise_;
};

}  // namespace settings
