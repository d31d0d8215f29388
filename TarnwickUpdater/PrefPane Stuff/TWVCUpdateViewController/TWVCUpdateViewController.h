// The update controls inside another view: automatic checks on or off, how often, the last check, "Check Now", and the
// privacy statement. The interface file "UpdaterView" of the pane's bundle has the controls.
//
// The button is idle (tag 0, the interface file's title) or checking (tag 1, "Cancel"). A check begins by itself when
// one is due, after the time that the user has to cancel it, and ends with the updater's word, or a while after a
// cancel: an updater that never speaks again leaves the button at "Cancel", and Cancel always leads back.
#pragma once

#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdateServices.h"
#include "platform/AliasClass.h"
#include "platform/Outlet.h"
#include "platform/Platform.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

class TWVCUpdateViewController_V100 final : public platform::InterfaceOwner {
public:
    static constexpr double kUsersReactionTime = 10.0;  // seconds in which the user can cancel an automatic check
    static constexpr double kResetAfterCancel = 2.0;    // seconds

    // Null without a view or without both bundle and identifier; and, then with a line in the log, when one of these
    // cannot be found by the other or the interface file cannot be loaded. The identifier is the module's preference
    // domain. A view that is a button opens the controls as a sheet; any other is replaced by them. The view and what
    // the platform refers to must outlive the controller. Takes over the verbose log's switch, gLogStuff, from
    // "LogStuff" in the domain "com.tarnwick.updater".
    static std::unique_ptr<TWVCUpdateViewController_V100> initWithSacrificialView_forBundle_withBundleID(
        const platform::Platform& platform, platform::View* view, std::unique_ptr<platform::Bundle> bundle,
        std::optional<std::string> bundleID);
    ~TWVCUpdateViewController_V100() override;

    // The module with this identifier, in any case, in one folder of the domain's Library; null when there is none. Of
    // several the first that the folder lists. Hidden folders are passed over, and the folder is not created.
    static std::unique_ptr<platform::Bundle> findPlinthWithBundleID_inDomain_withPlinthFolderName(
        const twvc::UpdateServices& services, std::string_view bundleID, platform::FolderDomain domain,
        std::string_view folderName);
    // The same in every folder that holds modules, the user's enabled ones first.
    static std::unique_ptr<platform::Bundle> findPlinth(const twvc::UpdateServices& services,
                                                        std::string_view bundleID);

    void setOutlet(std::string_view name, platform::View& object) override;
    void performAction(std::string_view selector, platform::View& sender) override;
    void awakeFromNib();
    void updateStatusString();

    void changeFrequency(platform::View& sender);
    void changeAutoUpdate(platform::View& sender);
    void checkNow_(platform::View* sender);  // null: the timer. Named apart from the outlet of the same name.
    void showUpdateSheet(platform::View& sender);
    void privacyPolicy(platform::View& sender);
    void dismissPrivacy(platform::View& sender);

    void updateCheckComplete();
    void statusChange(const platform::Notification& notification);
    void windowWillClose();
    void sheetDidEnd_returnCode_contextInfo(int returnCode);

private:
    struct OutletEntry;
    struct ActionEntry;
    static const OutletEntry kOutlets[];
    static const ActionEntry kActions[];

    TWVCUpdateViewController_V100(const platform::Platform& platform, platform::View& view,
                                  std::unique_ptr<platform::Bundle> bundle, std::string bundleID);
    bool loadInterface();
    void observeUpdater();
    bool readAutomaticChecks();
    double readInterval();
    bool isCheckDue(double interval) const;
    void beginAutomaticCheck();
    void selectFrequency(double interval);
    void takePlaceOfSacrificialView();
    void startProgress();
    void showIdle();
    void cancelCheck(platform::View& sender);
    void runUpdater(platform::View* sender);
    void showStatus(platform::Date date, std::string_view status, platform::DateStyle toolTipStyle);
    std::string localized(std::string_view key) const { return platform_.paneBundle.localizedString(key); }
    std::string statusText(const platform::PropertyList& date, platform::DateStyle style,
                           std::string_view status) const;
    void showAsCancel(platform::Button& button);

    platform::PropertyList stored(std::string_view key) const;
    void store(std::string_view key, const platform::PropertyList& value);
    void synchronize();

    platform::Platform platform_;
    twvc::UpdateServices services_;
    bool hasWritten_ = false;  // since awakeFromNib began

    std::unique_ptr<platform::Bundle> plinthBundle;
    std::string plinthBundleID;
    platform::View& sacrificialView;
    Outlet<platform::View> updaterView;
    Outlet<platform::Button> checkUpdatesButton;
    Outlet<platform::PopUpButton> frequencyPopup;
    Outlet<platform::TextField> lastStatus;
    Outlet<platform::TextField> lastCheckDate;
    Outlet<platform::Button> checkNow;
    Outlet<platform::ProgressIndicator> progessBar;
    Outlet<platform::TextView> privacyText;
    Outlet<platform::Panel> privacyWindow;
    std::string lastStatusString;  // a format: the date, then the status
    std::string oldCheckNowTitle;
    std::unique_ptr<platform::Timer> checkingTimer;
    std::unique_ptr<platform::Timer> resetTimer_;
    platform::FSRef launchedUpdater;

    std::unique_ptr<platform::Observation> statusObservation_;
    std::unique_ptr<platform::Observation> completionObservation_;
    std::unique_ptr<platform::LoadedInterface> interface_;
};
