// The settings pane without a window: changes to the entry list as its own operations make them, in the same sequence
// and with the same announcements.
#pragma once

#include "entrylist/EntryAddress.h"
#include "pane/TSPreferencePane.h"
#include "settings/SettingsSchema.h"
#include "tools/headless/HeadlessControls.h"
#include "tools/headless/HeadlessPlatform.h"

#include <functional>
#include <string>
#include <vector>

namespace tools {

inline constexpr int kRegexKinds = 3;  // what an expression is held against: name, bundle identifier, path

// One change for each object. Every function throws Refusal when it refuses, and then the stored list is as it was, and
// nobody was told; after a change, finish() is due.
class HeadlessPane {
public:
    // Throws Refusal when the pane's bundle is missing or the settings cannot be read.
    HeadlessPane();

    // What follows is refused, with the status kListHasChanged, if the stored list is another than the one with this
    // token (entrylist::tokenOf) in the moment of saving.
    void requireUnchanged(const std::string& token);

    struct Added {
        std::vector<std::string> alreadyListed;   // applications that an entry matches already
        std::vector<std::string> noApplications;  // files that were left out; when all are, nothing was done
    };
    Added addApplications(const std::vector<std::string>& paths);  // absolute
    // Neither text is empty, and both are UTF-8; the kind is below kRegexKinds.
    void addRegex(const std::string& name, const std::string& expression, int kind);
    void removeEntry(const entrylist::EntryAddress& entry);
    void setOption(const entrylist::EntryAddress& entry, const settings::Option& option, std::int64_t value);
    // Any other change of an entry, made to the stored list in the moment of saving. It may throw Refusal then.
    void changeEntry(const entrylist::EntryAddress& entry, TSPreferencePane::EntryChange change);
    bool isExpression(const entrylist::EntryAddress& entry);
    // What an entry for the application would be made of. Throws Refusal for what is none.
    settings::ApplicationIdentity application(const std::string& path);

    // The master switch, and the switch of the diagnostic log, of which no sheet warns here.
    void setModule(bool isOn);
    void setLogging(bool isOn);

    // Any other change of the list, made to the stored one in the moment of saving, and again when that has become
    // another meanwhile. What it refers to outlives this object. It may throw Refusal.
    void changeList(std::function<void(std::vector<platform::PropertyList>&)> change);

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
    std::size_t select(const entrylist::EntryAddress& entry);
    bool isApplication(const std::string& path, platform::ItemInformation& information);

    HeadlessPlatform platform_;
    std::unique_ptr<platform::Bundle> bundle_;
    HeadlessTable table_;
    HeadlessButton remove_, addRegex_, sheetOK_{1}, module_, logging_;
    HeadlessField name_, expression_;
    HeadlessMenu kind_{kRegexKinds};
    HeadlessPanel sheet_, warning_;
    TSPreferencePane pane_;
};

}  // namespace tools
