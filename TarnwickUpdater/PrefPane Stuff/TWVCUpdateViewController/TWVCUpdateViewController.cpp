// The controls and their schedule.
#include "TarnwickUpdater/PrefPane Stuff/TWVCUpdateViewController/TWVCUpdateViewController.h"

#include "TarnwickUpdater/Plinth Stuff/VersionChecking/UpdaterLaunch.h"
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/VersionChecking.h"

#include "propertylist/Date.h"

#include <cmath>

using namespace platform;
using twvc::gLogStuff;
using twvc::UpdateServices;

namespace {

constexpr std::string_view kNib = "UpdaterView";
constexpr std::string_view kUpdaterDomain = "com.tarnwick.updater";
constexpr std::string_view kStatusChange = "com.tarnwick.updater.statuschange";
constexpr std::string_view kCheckCompleted = "com.tarnwick.updater.UpdateCheckCompleted";
constexpr std::string_view kCancelUpdate = "com.tarnwick.updater.CancelUpdate";

constexpr double kShortestInterval = 1.0;  // seconds; a shorter one would check without end
constexpr int kChecking = 1;               // tag of the button

Rect centredOn(const Rect& place, const Size& size) {
    auto start = [](double from, double room, double length) { return std::round(from + (room - length) / 2); };
    return {
        {start(place.origin.x, place.size.width, size.width), start(place.origin.y, place.size.height, size.height)},
        {std::round(size.width), std::round(size.height)}};
}

// Formats write "(null)" for what is missing.
FormatArgument orNull(const std::optional<std::string>& text) {
    return text ? FormatArgument(*text) : FormatArgument(nullptr);
}

}  // namespace

using Controller = TWVCUpdateViewController_V100;

std::unique_ptr<Controller> Controller::initWithSacrificialView_forBundle_withBundleID(
    const Platform& platform, View* view, std::unique_ptr<Bundle> bundle, std::optional<std::string> bundleID) {
    if (!view || (!bundle && !bundleID)) return nullptr;
    UpdateServices services = UpdateServices::of(platform);
    if (!bundleID) bundleID = twvc::moduleIdentifier(*bundle);
    if (!bundle) bundle = findPlinth(services, *bundleID);
    if (!bundle || bundleID->empty()) {
        auto path = bundle ? std::optional(bundle->path()) : std::nullopt;
        twvc::log(services, "Cannot match up Plinth Bundle (%@) and Plinth Bundle Identifier (%@)", orNull(path),
                  *bundleID);
        return nullptr;
    }
    std::unique_ptr<Controller> controller(new Controller(platform, *view, std::move(bundle), std::move(*bundleID)));
    if (!controller->loadInterface()) return nullptr;
    gLogStuff = platform.preferences.getBooleanValue("LogStuff", kUpdaterDomain);
    return controller;
}

Controller::TWVCUpdateViewController_V100(const Platform& platform, View& view, std::unique_ptr<Bundle> bundle,
                                          std::string bundleID)
    : platform_(platform),
      services_(UpdateServices::of(platform)),
      plinthBundle(std::move(bundle)),
      plinthBundleID(std::move(bundleID)),
      sacrificialView(view) {}

Controller::~TWVCUpdateViewController_V100() {
    if (Button* button = sacrificialView.asButton()) button->setTarget(nullptr, {});
}

bool Controller::loadInterface() {
    interface_ = platform_.toolkit.loadInterface(platform_.paneBundle, kNib, *this);
    if (!interface_) {
        twvc::log(services_, "Cannot find nib named \"UpdaterView\".");
        return false;
    }
    awakeFromNib();
    return true;
}

void Controller::awakeFromNib() {
    observeUpdater();
    synchronize();
    lastStatusString = lastStatus->stringValue();
    oldCheckNowTitle = checkNow->title();
    updateStatusString();
    hasWritten_ = false;
    bool isAutomatic = readAutomaticChecks();
    checkUpdatesButton->setState(isAutomatic);
    double interval = readInterval();
    if (isAutomatic && isCheckDue(interval)) beginAutomaticCheck();
    selectFrequency(interval);
    if (hasWritten_) synchronize();
    takePlaceOfSacrificialView();
}

void Controller::observeUpdater() {
    DistributedNotificationCenter& center = platform_.notifications;
    statusObservation_ = center.addObserver(kStatusChange, plinthBundleID, Delivery::Latest,
                                            [this](const Notification& notification) { statusChange(notification); });
    completionObservation_ = center.addObserver(kCheckCompleted, plinthBundleID, Delivery::Latest,
                                                [this](const Notification&) { updateCheckComplete(); });
}

bool Controller::readAutomaticChecks() {
    if (auto isOn = twvc::storedBoolean(stored(twvc::kCheckForUpdatesKey))) return *isOn;
    store(twvc::kCheckForUpdatesKey, true);
    return true;
}

double Controller::readInterval() {
    PropertyList value = stored(twvc::kCheckIntervalKey);
    if (value.isNumber()) return value.realValue() < kShortestInterval ? twvc::kWeekly : value.realValue();
    PropertyList version = plinthBundle->infoValue("CFBundleShortVersionString");
    bool isBeta = twvc::isBetaVersion(version.stringValue());
    if (isBeta)
        twvc::log(services_,
                  "[%@] Because the version stirng of \"%@\" contains an indicator it is a beta release, we are "
                  "defaulting to checking for updates daily.\n",
                  plinthBundle->infoValue("CFBundleExecutable"), version);
    double interval = isBeta ? twvc::kDaily : twvc::kWeekly;
    store(twvc::kCheckIntervalKey, interval);
    return interval;
}

bool Controller::isCheckDue(double interval) const {
    std::optional<Date> last = stored(twvc::kLastCheckDateKey).dateValue();
    if (!last) return true;
    Date now = platform_.runLoop.now();
    if (!(twvc::secondsBetween(*last, now) > interval)) return false;
    if (gLogStuff)
        twvc::log(services_, "Last check plus interval (%@) is earlier than now (%@)", dateByAdding(*last, interval),
                  now);
    return true;
}

void Controller::beginAutomaticCheck() {
    startProgress();
    lastStatus->setStringValue(statusText(platform_.runLoop.now(), DateStyle::Short, localized("Checking...")));
    showAsCancel(*checkNow);
    checkingTimer = platform_.runLoop.scheduleTimer(kUsersReactionTime, false, [this] {
        checkingTimer.reset();
        checkNow_(nullptr);
    });
}

void Controller::showAsCancel(Button& button) {
    button.setTag(kChecking);
    button.setTitle(localized("Cancel"));
}

void Controller::selectFrequency(double interval) {
    std::int64_t seconds = PropertyList(interval).integerValue();
    int chosen = 0;
    for (int item = 0; item < frequencyPopup->itemCount(); ++item)
        if (int tag = frequencyPopup->itemTag(item); tag != 0 && tag <= seconds) chosen = item;
    frequencyPopup->selectItem(chosen);
}

void Controller::takePlaceOfSacrificialView() {
    if (Button* button = sacrificialView.asButton()) return button->setTarget(this, "showUpdateSheet:");
    Rect frame = centredOn(sacrificialView.frame(), updaterView->frame().size);
    sacrificialView.replaceInSuperview(*updaterView);
    updaterView->setFrame(frame);
    sacrificialView.setNeedsDisplay();
    updaterView->setNeedsDisplay();
}

std::string Controller::statusText(const PropertyList& date, DateStyle style, std::string_view status) const {
    auto text = twvc::stringFromDate(services_, date, style, style);
    return formatted(lastStatusString, {orNull(text), status});
}

void Controller::showStatus(Date date, std::string_view status, DateStyle toolTipStyle) {
    lastStatus->setStringValue(statusText(date, DateStyle::Short, status));
    lastStatus->setToolTip(statusText(date, toolTipStyle, status));
}

void Controller::updateStatusString() {
    PropertyList status = stored(twvc::kLastCheckStatusKey);
    std::optional<Date> date = stored(twvc::kLastCheckDateKey).dateValue();
    showStatus(date.value_or(platform_.runLoop.now()),
               status.isString() ? std::string(status.stringValue()) : localized("Never checked for updates."),
               DateStyle::Short);
}

void Controller::changeFrequency(View&) {
    int interval = frequencyPopup->itemTag(frequencyPopup->selectedRow());
    if (interval <= 1) return;
    store(twvc::kCheckIntervalKey, interval);
    synchronize();
}

void Controller::changeAutoUpdate(View&) {
    bool isAutomatic = checkUpdatesButton->state();
    store(twvc::kCheckForUpdatesKey, isAutomatic);
    synchronize();
    if (isAutomatic || !checkingTimer) return;
    showIdle();
    updateStatusString();
}

void Controller::checkNow_(View* sender) {
    if (progessBar->isHidden()) startProgress();
    if (sender && sender->tag() != 0)
        cancelCheck(*sender);
    else
        runUpdater(sender);
}

void Controller::startProgress() {
    progessBar->setHidden(false);
    progessBar->setIndeterminate(true);
    progessBar->startAnimation();
}

void Controller::cancelCheck(View& sender) {
    checkingTimer.reset();
    sender.setEnabled(false);
    platform_.notifications.post(kCancelUpdate, plinthBundleID, {}, true);
    resetTimer_ = platform_.runLoop.scheduleTimer(kResetAfterCancel, false, [this] { updateCheckComplete(); });
}

void Controller::runUpdater(View* sender) {
    auto bundle = services_.bundles.openBundle(plinthBundle->path());
    checkNow->setEnabled(false);
    OSStatus status = twvc::runUpdater(services_, bundle.get(), plinthBundleID, &launchedUpdater);
    Date now = platform_.runLoop.now();
    if (status != kNoErr) {
        showStatus(now, formatted(localized("Failed. Error %d. %s"), {status, localized(platform::statusText(status))}),
                   DateStyle::Full);
    } else {
        if (Button* button = sender ? sender->asButton() : nullptr) showAsCancel(*button);
        store(twvc::kLastCheckDateKey, now);
        synchronize();
    }
    checkNow->setEnabled(true);
}

void Controller::updateCheckComplete() {
    if (gLogStuff) twvc::log(services_, "Completed");
    resetTimer_.reset();
    showIdle();
    synchronize();
    updateStatusString();
}

// Nothing is under way: no check that was about to begin either, which another window may have made meanwhile.
void Controller::showIdle() {
    checkingTimer.reset();
    progessBar->stopAnimation();
    progessBar->setHidden(true);
    checkNow->setTitle(oldCheckNowTitle);
    checkNow->setTag(0);
    checkNow->setEnabled(true);
}

void Controller::statusChange(const Notification& notification) {
    if (gLogStuff) twvc::log(services_, "%@", notification.userInfo);
    std::optional<Date> date = notification.userInfo["Date"].dateValue();
    const PropertyList& status = notification.userInfo["Status"];
    if (!date || !status.isString()) return;
    showStatus(*date, status.stringValue(), DateStyle::Full);
    lastStatus->display();
}

PropertyList Controller::stored(std::string_view key) const {
    return platform_.preferences.copyValue(key, plinthBundleID);
}

void Controller::store(std::string_view key, const PropertyList& value) {
    platform_.preferences.setValue(key, value, plinthBundleID);
    hasWritten_ = true;
}

void Controller::synchronize() { platform_.preferences.synchronize(plinthBundleID); }
