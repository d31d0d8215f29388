// The settings pane's controller. A host drives it through platform::PreferencePane, the user through the controls that
// the interface file "TSPrefs" connects to its outlets. Its code is split by topic, one file each.
//
// It keeps no copy of the user's settings: every question goes to the store, every change goes through it. A change of
// the list of entries is a function of the stored list, so that what other programs change meanwhile stays; others are
// told of it when it is on the disk (see commit). What they store is shown within 0.1 seconds of their telling.
//
// Everything runs on the main thread, and only the alert waits for the user: what follows a sheet is done when the
// sheet ends. Nothing throws. An operation that fails leaves what is stored as it was, and logs why. Rows count from 0.
// Of an action's sender nothing is used but what a comment here names.
#pragma once

#include "TarnwickUpdater/PrefPane Stuff/TWVCUpdateViewController/TWVCUpdateViewController.h"
#include "entrylist/ExchangePanel.h"
#include "entrylist/ExpressionPreview.h"
#include "entrylist/ListCommands.h"
#include "entrylist/ListSearch.h"
#include "entrylist/OptionMarks.h"
#include "entrylist/Unreachable.h"
#include "pane/EntryRows.h"
#include "pane/MenuPreview.h"
#include "pane/fontcatalog/AdobeNames.h"
#include "platform/AliasClass.h"
#include "platform/Outlet.h"
#include "platform/Platform.h"
#include "platform/PlinthRuntime.h"
#include "settings/ApplicationEntry.h"
#include "settings/CFPreferencesWrapper.h"
#include "settings/EntryList.h"
#include "settings/SettingsSchema.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class TSPreferencePane final : public platform::PreferencePane,
                               public platform::TableDataSource,
                               private entrylist::ListOwner {
public:
    // What the platform refers to must outlive the pane, and so must every object that setOutlet is given. A sheet that
    // is open when the pane goes must not end afterwards.
    explicit TSPreferencePane(const platform::Platform& platform);
    ~TSPreferencePane() override;

    // Looks up the injection runtime's entry points in its bundle, if that is loaded. Those that are found serve the
    // whole process and are not looked up again; the others stay null, and nothing is sent through them.
    static void initialize(platform::BundleServices& bundles);
    static PlinthMessageBroadcastFunction PlinthMessageBroadcast;
    static PlinthMessageSendFunction PlinthMessageSend;

    // Life in the host, in the order of platform::PreferencePane. Outlets and selectors with unknown names, and objects
    // of another kind than their outlet, are ignored. While the About panel or the file chooser is open
    // shouldUnselect answers Later; the answer that the pane may be left follows when it ends.
    std::string mainNibName() override;
    void setOutlet(std::string_view name, platform::View& object) override;
    void performAction(std::string_view selector, platform::View& sender) override;
    void awakeFromNib() override;
    void mainViewDidLoad() override;
    void willSelect() override;
    platform::UnselectReply shouldUnselect() override;
    void willUnselect() override;
    void hostDidBecomeActive() override;
    // Loads the alias class from the pane's private framework. Without it names and paths come from what is stored; it
    // is tried again before each row count.
    void getCVAliasClass();
    // The base image with the product's icon, a file among the pane's resources, in its lower right quarter: half as
    // wide as the base image, rounded down to a whole point, and as high as wide. The base image itself when there is
    // no such icon.
    platform::ImageRef overlayIcon_withProductIcon(const platform::ImageRef& base, std::string_view iconFile);

    // Entry list. The repair is settings::putGlobalFirst; it goes to the disk with the next synchronize. A list that
    // cannot be read is left alone.
    void makeSureGlobalIsFirst();
    // The "Settings" of the first entry after that repair, which is another than Global when there was none.
    platform::PropertyList getDefaultSettingsBasedOnGlobal();

    // Change propagation. The broadcast goes out 2 seconds after the last call of queueForFiring.
    void queueForFiring();
    void prefsFire();  // the timer's action
    // The writer's sequence: stores the changed list, synchronises, lets the caller show it anew, starts or restarts
    // the broadcast timer and posts the notification. A change of the list is a platform::PreferenceChange of it; while
    // the stored list cannot be read it is not changed at all. False when the change is not on the disk: it then waits
    // in the store for a later synchronize, and others are told when that succeeds.
    using List = std::vector<platform::PropertyList>;
    bool commit(std::function<void(List&)> change, const std::function<void()>& showAnew);
    // The same for one entry, wherever it stands now. Where it is no more nothing is changed and nobody told: the user
    // is shown what is there instead, and the host tells why. A change that throws is not stored, nobody is told, and
    // the pane is of no use any more.
    using EntryChange = std::function<void(List&, std::size_t row)>;
    bool commitEntry(settings::EntryIdentity target, EntryChange change,
                     const std::function<void(std::size_t row)>& showAnew);

    // Entry table. Another table than the pane's has no rows, shows nothing and takes no drop; rows cannot be dragged.
    // A row outside the list has no path, an empty name and the texts of an entry that is not found.
    int numberOfRowsInTableView(platform::TableView& table) override;
    platform::CellValue tableView_objectValueForTableColumn_row(platform::TableView& table,
                                                                std::string_view columnIdentifier, int row) override;
    std::optional<std::vector<int>> tableView_shownRows(platform::TableView& table) override;
    std::vector<std::string> tableView_detailsOfRow(platform::TableView& table, int row) override;
    bool tableView_opensRow(platform::TableView& table, int row) override;
    bool tableView_validateDrop(platform::TableView& table) override;
    bool tableView_acceptDrop(platform::TableView& table, const std::vector<std::string>& fileNames) override;
    bool tableView_writeRows_toPasteboard(platform::TableView& table, const std::vector<int>& rows) override;
    void doubleClickTable(platform::View& sender);
    void tableViewSelectionDidChange(const platform::InterfaceNotification& notification);
    std::optional<std::string> pathForIndex(int row);
    std::string nameForIndex(int row);
    std::vector<platform::AttributedLine> nameAndPathForIndex(int row);

    // Entries for applications. The paths are the panel's when there is one, else those given; all are absolute. Return
    // code 1 adds, any other stores and announces the list as it is. What is no native application is logged and left
    // out, what is listed already is left out in silence; the host is told in a sentence what became of the files.
    void doExAddApp(platform::View& sender);
    void exOpenPanelDidEnd_returnCode_contextInfo(platform::OpenPanel* panel, int returnCode,
                                                  const std::vector<std::string>& fileNames);
    const settings::AddedFiles& addedFiles() const { return lastFiles; }  // by the last call of the above
    // Removes the selected entry, Global too: the button is disabled for that one.
    void doExRemoveApp(platform::View& sender);

    // Entries for regular expressions. The sender regexAdd asks for a new entry, any other for the selected one, which
    // must be of that type. regexEnd ends the sheet with the sender's tag; with one that is not 0 only when name and
    // expression are filled in. No expression is compiled here.
    //
    // Return code 1 stores the entry. The context is a dictionary: "NewRegEx" (true, or missing), "selectedRow", and
    // under "Settings" the whole entry as the sheet was opened on it; `target` is the entry that is edited, and of no
    // meaning for a new one.
    void regexNew(platform::View& sender);
    void regexEnd(platform::View& sender);
    void regexWasEdited_returnCode_contextInfo(platform::Panel& sheet, int returnCode,
                                               const platform::PropertyList& context,
                                               const settings::EntryIdentity& target);
    // These open something outside the pane: the system's editor of font collections, the help page, the ReadMe. What
    // is not there, or cannot be opened, is not reported.
    void editCollections(platform::View& sender);
    void doRegExHelp(platform::View& sender);
    void doMore(platform::View& sender);

    // Merges the shipped exclusions (settings::mergeExclusions), once for each of their versions. Set in the store, not
    // synchronised.
    void addDefaultExclusionsToTS();

    // Settings editor. Nothing as settings: no entry is selected.
    void updateStates(const platform::PropertyList& settings);
    void toggleAll();  // which controls can be used, by the states that they have at the moment
    // Stores the sender's value, read from it before anything else, under the key that its tag stands for.
    void togglePerAppPrefs(platform::View& sender);
    void toggleEnabled(platform::View& sender);
    void toggleLogging(platform::View& sender);
    void changeSettings(platform::View& sender);  // selects the row that is the sender's tag
    // The "Font Settings" of an entry's "Settings", which the pane itself never writes; nothing without them.
    platform::PropertyList fontSettingsForRow(int row);
    bool isCocoaApp(std::string_view path);  // always false
    // Returns when the user has closed the alert.
    void displayDialog_forError_andTitle(std::string_view message, platform::OSStatus error, std::string_view title);

    // Warning sheet. The key says what is warned of; the only one that anything follows from is "Log Stuff". For every
    // key the store remembers, under "Don't Show %@ Sheet", what the sheet's box says; who shows the sheet asks first.
    void showWarningSheetForString_key(std::string_view message, std::string_view key);
    void warningEnd(platform::View& button);  // ends the sheet with the button's tag
    void warningDidEnd_returnCode_contextInfo(platform::Panel& sheet, int returnCode, const std::string& key);

    // Login items, in the order in which they are started. Nothing as path or identifier: nothing is done. Identifiers
    // and paths are compared letter by letter; an item whose path leads to no application has no identifier. Each
    // change is synchronised at once and keeps what other programs of ours store meanwhile; items that cannot be read
    // are left alone.
    void addLoginItem_hide(std::optional<std::string_view> path, bool hide);
    void removeLoginItem(std::optional<std::string_view> identifier);
    void removeLoginItemWithPath(std::optional<std::string_view> path);
    // Whether a login item starts the application. One that starts it from another path is replaced, at the end.
    bool isLoginItem_withPath(std::optional<std::string_view> identifier, std::optional<std::string_view> path);

    // Helper agent. Without a match both words of the number are 0. That the helper cannot be found, started or asked
    // is not reported; nothing waits for it to quit.
    bool findProcessByID_withPSN(std::string_view identifier, platform::ProcessSerialNumber& psn);
    void launchTSDaemon();
    void killTSDaemon();

    // About panel. The text scrolls by itself while the panel is open, one point every 0.05 seconds: forward, or
    // backward while an Option key is held.
    void doAbout(platform::View& sender);
    void scrollAboutText();
    // Ends the sheet that the sender is in, with return code 1.
    void ripSheet(platform::View& sender);
    void customSheetDidEnd_returnCode_contextInfo(platform::Panel& sheet, int returnCode, const void* contextInfo);
    // The position, in points, at which the text's end is in sight; 0 until the first step of the process finds it.
    static float sGreatestAboutPosition;

private:
    struct OutletEntry;
    struct ActionEntry;
    static const OutletEntry kOutlets[];
    static const ActionEntry kActions[];

    platform::PropertyList entryList() const;
    platform::PropertyList entryAtRow(int row) const;  // nothing outside the list
    // Null while the stored list cannot be read; else what the change did when it was last made.
    using Edits = std::shared_ptr<entrylist::ListEdits>;
    Edits changeList(std::function<void(List&)> change);
    bool save();
    enum Announcement : unsigned { kBroadcastDisabled = 1, kBroadcastSoon = 2, kPost = 4 };
    void announce(unsigned announcements, bool isSaved);
    void announceDue();

    // Synchronises, and shows what other programs changed: the same entry stays selected, what is being typed stays.
    void takeInChanges();
    void takeInChangesSoon();
    void observeChanges();
    void showStoredList();
    void showStoredSwitches();
    bool isModuleOn() const;
    void showModuleOn(bool isOn);
    bool isLogging() const;
    void showRuntimeStatus();
    void explainWithoutModule();
    void sheetEnded();  // the pane may be left again, and is if the host has asked meanwhile
    std::string localized(std::string_view key) const { return platform_.paneBundle.localizedString(key); }

    EntryRows entryRows() const;
    void showRegexFields(const platform::PropertyList& entry);
    void showEntry(int row);
    void showSelectedEntry();
    void restoreSelection();

    std::vector<settings::ApplicationIdentity> describeApplications(const std::vector<std::string>& fileNames);
    std::optional<settings::ApplicationIdentity> describeApplication(const std::string& path);
    settings::ApplicationIdentity identityOf(const std::string& path, const std::string& creator);
    bool isListed(const settings::ApplicationIndex& index, const std::string& path);
    std::string addedFilesText() const;  // a sentence on lastFiles for the user; empty when there were none
    void selectLastRow();
    platform::PropertyList regexWorkingEntry(const platform::PropertyList& entry, bool isNew);
    void layOutRegexSheet();
    void refuseEmptyRegexField();
    void storeRegex(const platform::PropertyList& context, const settings::EntryIdentity& target);

    // For the tools of the list.
    platform::PropertyList entries() const override { return entryList(); }
    settings::EntryIdentity shown() const override { return shownEntry; }
    bool changeEntries(std::function<void(List&)> change, const platform::PropertyList& toShow) override;
    void addLike(const platform::PropertyList& entry) override;
    std::string nameOf(const platform::PropertyList& entry) const override { return entryRows().find(entry).name; }
    std::string placeOf(const platform::PropertyList& entry) const override;
    bool isMissing(const platform::PropertyList& entry) const override { return entryRows().find(entry).isMissing; }
    bool neverApplies(std::size_t row) override;
    platform::TableView& table() override { return *exTableView; }
    platform::View& controlOf(const settings::Option& option) override { return optionControl(option); }
    void showAroundList();
    std::vector<std::string> marksOf(const EntryRows::Found& found, int row);
    bool isPale(const EntryRows::Found& found, int row);

    platform::View& optionControl(const settings::Option& option);
    bool showsSetsInOwnFaces();
    bool isUsable(const settings::Option& option);
    void showDependents(const settings::Option& changed, const platform::PropertyList& newSettings);
    std::string displayPath(std::string path);
    void layOutWarningSheet();

    platform::Platform platform_;

    Outlet<platform::Button> enabledCheckbox;  // the master switch
    Outlet<platform::TabView> tabs;
    Outlet<platform::Button> logStuff;
    Outlet<platform::View> introWarningTextBox;
    Outlet<platform::Button> perAppEnabled;
    Outlet<platform::Button> perAppCheckItems;
    Outlet<platform::Button> perAppShowFace;
    Outlet<platform::Button> perAppShowSets;
    Outlet<platform::Button> perAppShowSize;
    Outlet<platform::TextField> perAppFontSize;
    Outlet<platform::Button> perAppShowIcons;
    Outlet<platform::PopUpButton> perAppDupeHandling;
    Outlet<platform::Button> perAppHierarchicalMenu;
    Outlet<platform::Button> perAppShowAllSet;
    Outlet<platform::Button> perAppSortByScript;
    Outlet<platform::Button> perAppIncludeFAPSets;
    Outlet<platform::Button> perAppIncludeFEXSets;
    Outlet<platform::Button> perAppIncludeSuitcaseSets;
    Outlet<platform::Button> perAppGenerateInactivePreview;
    Outlet<platform::Button> perAppModifyFontPanel;
    Outlet<platform::Button> exRemoveAppButton;
    Outlet<platform::TableView> exTableView;
    Outlet<platform::TextField> versionField;
    Outlet<platform::TextField> statusField;

    std::unique_ptr<platform::Timer> prefsTimer;
    platform::UnselectReply canUnselect = platform::UnselectReply::Now;
    bool unselectRequest = false;
    bool justShowedSheet = false;  // the next click on the logging switch is the warning sheet's answer
    bool plinthMissing = false;    // the module cannot run: it is not installed, or the user is root
    bool rootEnabled = false;      // the user is root
    std::unique_ptr<CFPreferencesWrapper_Typeslate> prefs;
    bool oldOSX = false;                           // too old a system for dragging, login items and the version
    platform::AliasClass* CVAliasClass = nullptr;  // the process's; null while there is none
    platform::Bundle& thisBundle;
    int lastSelected = -1;               // the row that was last selected validly; -1: none yet
    settings::EntryIdentity shownEntry;  // whose options the editor shows; of no entry: none
    platform::PropertyList listShown;    // when the table last asked for its rows; for comparison only
    bool keepsTypedNumber = false;       // the editor is filled anew for the entry that it shows already
    settings::AddedFiles lastFiles;      // that were to be added
    unsigned announcementsDue = 0;       // of changes that are stored in memory alone, or not yet told
    bool isSaving = false;               // whoever saves will announce
    std::unique_ptr<platform::Observation> changeObservation, storeObservation;
    std::unique_ptr<platform::Timer> takeInTimer;  // while a look at the store is due
    fontcatalog::Catalogue adobeNames;
    platform::ImageRef mPrefPaneIcon;     // of the host while the pane is shown
    platform::ImageRef mSystemPrefsIcon;  // of the host otherwise
    std::unique_ptr<TWVCUpdateViewController_V100> updateController;

    Outlet<platform::Panel> warningSheet;
    Outlet<platform::TextField> warningText;
    Outlet<platform::Button> warningOKButton;
    Outlet<platform::Button> warningCancelButton;
    Outlet<platform::Button> dontShowAgain;

    Outlet<platform::Panel> regexPanel;
    bool isEditingRegex = false;  // the panel is open, and its fields are the user's
    Outlet<platform::Button> regexAdd;
    Outlet<platform::TextField> regexName;
    Outlet<platform::TextField> regex;
    Outlet<platform::PopUpButton> regexType;
    Outlet<platform::TextField> regexText;
    Outlet<platform::Button> regexSheetOK;
    Outlet<platform::Button> regexCancel;
    Outlet<platform::Button> regexHelp;

    entrylist::ListCommands listCommands;
    entrylist::ListSearch listSearch;
    entrylist::ExchangePanel exchangePanel;
    entrylist::OptionMarks optionMarks;
    MenuPreview menuPreview;
    entrylist::ExpressionPreview expressionPreview;
    entrylist::UnreachableEntries unreachable;
    std::optional<EntryRows::Found> foundForIcon;  // of the row that is being painted
    platform::PropertyList settingsOfNew;          // instead of Global's, for the entry that is added next

    Outlet<platform::Panel> aboutPanel;
    Outlet<platform::TextView> aboutTextView;
    std::unique_ptr<platform::Timer> scrollTimer;  // while the panel is open
    float pos = 0;                                 // points from the top
};
