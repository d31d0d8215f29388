// The settings pane without a window: changes to the entry list as its own operations make them, in the same sequence
// and with the same announcements.
#pragma once

#include "pane/TSPreferencePane.h"
#include "settings/SettingsSchema.h"
#include "tools/headless/HeadlessControls.h"
#include "tools/headless/HeadlessPlatform.h"

#include <string>
#include <vector>

namespace tools {

inline constexpr int kRegexKinds = 3;  // what an expression is held against: name, bundle identifier, path

// One change for each object. Every function throws Refusal when it refuses, and then the stored list is as it was;
// after a change, finish() is due.
class HeadlessPane {
public:
    // Throws Refusal when the pane's bundle is missing or the settings cannot be read.
    HeadlessPane();

    struct Added {
        std::vector<std::string> alreadyListed;   // applications that an entry matches already
        std::vector<std::string> noApplications;  // files that were left out; when all are, nothing was done
    };
    Added addApplications(const std::vector<std::string>& paths);  // absolute
    void addRegex(const std::string& name, const std::string& expression, int kind);
    void removeEntry(int row);
    void setOption(int row, const settings::Option& option, std::int64_t value);

    // Returns when the change, which is on the disk, is announced. Throws Refusal when it could not be stored, or was
    // not made because another program had removed the entry.
    void finish();

    // Operations that have nothing to do with the list of entries, for which finish() is not due.
    TSPreferencePane& operations() { return pane_; }
    linux::DiskPreferences& preferences() { return platform_.preferences; }
    bool areLoginItemsMirrored() const { return !platform_.autostart.hasFailed(); }

private:
    void connectOutlets();
    platform::PropertyList storedList();
    void select(int row);
    bool isApplication(const std::string& path);

    HeadlessPlatform platform_;
    std::unique_ptr<platform::Bundle> bundle_;
    HeadlessTable table_;
    HeadlessButton remove_, addRegex_, sheetOK_{1};
    HeadlessField name_, expression_;
    HeadlessMenu kind_{kRegexKinds};
    HeadlessPanel sheet_;
    TSPreferencePane pane_;
};

}  // namespace tools
