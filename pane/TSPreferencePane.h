// The settings pane's controller. A host drives it through platform::PreferencePane, the user through the controls that
// the interface file "TSPrefs" connects to its outlets. Its code is split by topic, one file each.
//
// It keeps no copy of the user's settings: every question goes to the store, every change goes through it.
#pragma once

#include "TarnwickUpdater/PrefPane Stuff/TWVCUpdateViewController/TWVCUpdateViewController.h"
#include "pane/fontcatalog/AdobeNames.h"
#include "platform/AliasClass.h"
#include "platform/Outlet.h"
#include "platform/Platform.h"
#include "platform/PlinthRuntime.h"
#include "settings/ApplicationEntry.h"
#include "settings/CFPreferencesWrapper.h"
#include "settings/SettingsSchema.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class TSPreferencePane final : public platform::PreferencePane, public platform::TableDataSource {
public:
    // What the platform refers to must outlive the pane.
    explicit TSPreferencePane(const platform::Platform& platform);
    ~TSPreferencePane() override;

    // Looks up the injection runtime's entry points, once for the process; each is null while the runtime is absent.
    static void initialize(platform::BundleServices& bundles);
    static PlinthMessageBroadcastFunction PlinthMessageBroadcast;
    static PlinthMessageSendFunction PlinthMessageSend;

    // Life in the host.
    std::string mainNibName() override;
    void setOutlet(std::string_view name, platform::View& object) override;
    void performAction(std::string_view selector, platform::View& sender) override;
    void awakeFromNib() override;
    void mainViewDidLoad() override;
    void willSelect() override;
    platform::UnselectReply shouldUnselect() override;
    void willUnselect() override;
    void getCVAliasClass();
    // The base image with the product's icon, a file among the pane's resources, in its lower right quarter; the base
    // image itself when there is no such icon.
    platform::ImageRef overlayIcon_withProductIcon(const platform::ImageRef& base, std::string_view iconFile);

    // Entry list.
    void makeSureGlobalIsFirst();
    platform::PropertyList getDefaultSettingsBasedOnGlobal();

    // Change propagation.
    void queueForFiring();
    void prefsFire();

    // Entry table.
    int numberOfRowsInTableView(platform::TableView& table) override;
    platform::CellValue tableView_objectValueForTableColumn_row(platform::TableView& table,
                                                                std::string_view columnIdentifier, int row) override;
    bool tableView_validateDrop(platform::TableView& table) override;
    bool tableView_acceptDrop(platform::TableView& table, const std::vector<std::string>& fileNames) override;
    bool tableView_writeRows_toPasteboard(platform::TableView& table, const std::vector<int>& rows) override;
    void doubleClickTable(platform::View& sender);
    void tableViewSelectionDidChange(const platform::InterfaceNotification& notification);
    std::optional<std::string> pathForIndex(int row);
    std::string nameForIndex(int row);
    std::vector<platform::AttributedLine> nameAndPathForIndex(int row);

    // Entries for applications. The paths are the panel's when there is one, else those given.
    void doExAddApp(platform::View& sender);
    void exOpenPanelDidEnd_returnCode_contextInfo(platform::OpenPanel* panel, int returnCode,
                                                  const std::vector<std::string>& fileNames);
    void doExRemoveApp(platform::View& sender);

    // Entries for regular expressions. The context is a dictionary: "NewRegEx" (true, or missing), "selectedRow", and
    // under "Settings" the whole entry as the sheet was opened on it; `shown` is the entry as it stood in the list
    // then.
    void regexNew(platform::View& sender);
    void regexEnd(platform::View& sender);
    void regexWasEdited_returnCode_contextInfo(platform::Panel& sheet, int returnCode,
                                               const platform::PropertyList& context,
                                               const platform::PropertyList& shown);
    void editCollections(platform::View& sender);
    void doRegExHelp(platform::View& sender);
    void doMore(platform::View& sender);

    // Shipped exclusions.
    void addDefaultExclusionsToTS();

    // Settings editor. Nothing as settings: no entry is selected.
    void updateStates(const platform::PropertyList& settings);
    void toggleAll();
    void togglePerAppPrefs(platform::View& sender);
    void toggleEnabled(platform::View& sender);
    void toggleLogging(platform::View& sender);
    void changeSettings(platform::View& sender);
    platform::PropertyList fontSettingsForRow(int row);
    bool isCocoaApp(std::string_view path);
    void displayDialog_forError_andTitle(std::string_view message, platform::OSStatus error, std::string_view title);

    // Warning sheet.
    void showWarningSheetForString_key(std::string_view message, std::string_view key);
    void warningEnd(platform::View& button);
    void warningDidEnd_returnCode_contextInfo(platform::Panel& sheet, int returnCode, const std::string& key);

    // Login items. Nothing as main argument: nothing is done.
    void addLoginItem_hide(std::optional<std::string_view> path, bool hide);
    void removeLoginItem(std::optional<std::string_view> identifier);
    void removeLoginItemWithPath(std::optional<std::string_view> path);
    // Whether a login item starts the application. One that starts it from another path is replaced.
    bool isLoginItem_withPath(std::optional<std::string_view> identifier, std::optional<std::string_view> path);

    // Helper agent. Without a match both words of the number are 0.
    bool findProcessByID_withPSN(std::string_view identifier, platform::ProcessSerialNumber& psn);
    void launchTSDaemon();
    void killTSDaemon();

    // About panel. The text scrolls by itself while the panel is open.
    void doAbout(platform::View& sender);
    void scrollAboutText();
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
    // Synchronises, and shows the list anew when another process changed it.
    void takeInChanges();
    // The stored list with the latest changes of other processes in it, to be changed and stored whole.
    std::vector<platform::PropertyList> freshEntryList();
    // The same, and where the entry that the user sees at the given row stands in it; nothing when it is gone.
    struct ListAndRow {
        std::vector<platform::PropertyList> list;
        std::size_t row;
    };
    std::optional<ListAndRow> freshEntryListAndRow(int row);
    static std::optional<std::size_t> rowOfEntry(const std::vector<platform::PropertyList>& list,
                                                 const platform::PropertyList& entry, int row);
    // The writer's sequence: stores the list, synchronises, lets the caller show it anew, starts or restarts the
    // broadcast timer and posts the notification. False when the list is not on the disk: it then waits in the store
    // for the next synchronize, unless the stored one cannot be read, which is never replaced unseen.
    bool commit(std::vector<platform::PropertyList> list, const std::function<void()>& showAnew = {});
    bool storeEntryList(std::vector<platform::PropertyList> list);
    void postPrefsChanged();
    bool isLogging() const;
    void showRuntimeStatus();
    void sheetEnded();  // the pane may be left again, and is if the host has asked meanwhile
    std::string localized(std::string_view key) const { return platform_.paneBundle.localizedString(key); }

    std::optional<std::string> foundApplication(const platform::PropertyList& entry);
    std::optional<std::string> pathOfEntry(const platform::PropertyList& entry);
    std::string nameOfEntry(const platform::PropertyList& entry);
    platform::AttributedLine secondLineOfEntry(const platform::PropertyList& entry);
    platform::ImageRef iconOfEntry(const platform::PropertyList& entry);
    platform::ImageRef imageResource(std::string_view file);  // null when there is none
    void showRegexFields(const platform::PropertyList& entry);
    void selectedEntry(int row);
    void lostSelection();

    void addApplications(const std::vector<std::string>& fileNames, std::vector<platform::PropertyList>& list);
    std::optional<settings::ApplicationIdentity> describeApplication(const std::string& path);
    void selectLastRow();
    platform::PropertyList regexWorkingEntry(const platform::PropertyList& entry, bool isNew);
    void layOutRegexSheet();
    void storeRegex(const platform::PropertyList& context, const platform::PropertyList& shown);

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
    bool justShowedSheet = false;
    bool plinthMissing = false;
    bool rootEnabled = false;
    std::unique_ptr<CFPreferencesWrapper_Typeslate> prefs;
    bool oldOSX = false;
    platform::AliasClass* CVAliasClass = nullptr;
    platform::Bundle& thisBundle;
    int lastSelected = -1;
    fontcatalog::Catalogue adobeNames;
    platform::ImageRef mPrefPaneIcon;
    platform::ImageRef mSystemPrefsIcon;
    std::unique_ptr<TWVCUpdateViewController_V100> updateController;

    Outlet<platform::Panel> warningSheet;
    Outlet<platform::TextField> warningText;
    Outlet<platform::Button> warningOKButton;
    Outlet<platform::Button> warningCancelButton;
    Outlet<platform::Button> dontShowAgain;

    Outlet<platform::Panel> regexPanel;
    Outlet<platform::Button> regexAdd;
    Outlet<platform::TextField> regexName;
    Outlet<platform::TextField> regex;
    Outlet<platform::PopUpButton> regexType;
    Outlet<platform::TextField> regexText;
    Outlet<platform::Button> regexSheetOK;
    Outlet<platform::Button> regexCancel;
    Outlet<platform::Button> regexHelp;

    Outlet<platform::Panel> aboutPanel;
    Outlet<platform::TextView> aboutTextView;
    std::unique_ptr<platform::Timer> scrollTimer;  // while the panel is open
    float pos = 0;                                 // points from the top
};
