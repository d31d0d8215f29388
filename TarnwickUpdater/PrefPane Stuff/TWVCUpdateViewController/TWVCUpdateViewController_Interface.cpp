// The names by which the interface file reaches the controller, and its windows.
#include "TarnwickUpdater/Plinth Stuff/VersionChecking/VersionChecking.h"
#include "TarnwickUpdater/PrefPane Stuff/TWVCUpdateViewController/TWVCUpdateViewController.h"

#include <algorithm>
#include <iterator>

using namespace platform;
using Controller = TWVCUpdateViewController_V100;

struct Controller::OutletEntry {
    std::string_view name;
    void (*connect)(Controller&, View&);
};

struct Controller::ActionEntry {
    std::string_view selector;
    void (*perform)(Controller&, View& sender);
};

#define OUTLET(name)                                                                           \
    {                                                                                          \
#name, [](Controller & controller, View & object) { controller.name.connect(object); } \
    }
#define ACTION(name)                                                                       \
    {                                                                                      \
#name ":", [](Controller & controller, View & sender) { controller.name(sender); } \
    }

const Controller::OutletEntry Controller::kOutlets[] = {
    OUTLET(updaterView), OUTLET(checkUpdatesButton), OUTLET(frequencyPopup),
    OUTLET(lastStatus),  OUTLET(lastCheckDate),      OUTLET(checkNow),
    OUTLET(progessBar),  OUTLET(privacyText),        OUTLET(privacyWindow),
};

const Controller::ActionEntry Controller::kActions[] = {
    ACTION(changeFrequency),
    ACTION(changeAutoUpdate),
    {"checkNow:", [](Controller& controller, View& sender) { controller.checkNow_(&sender); }},
    ACTION(showUpdateSheet),
    ACTION(privacyPolicy),
    ACTION(dismissPrivacy),
};

#undef OUTLET
#undef ACTION

void Controller::setOutlet(std::string_view name, View& object) {
    auto outlet = std::ranges::find(kOutlets, name, &OutletEntry::name);
    if (outlet != std::end(kOutlets)) outlet->connect(*this, object);
}

void Controller::performAction(std::string_view selector, View& sender) {
    auto entry = std::ranges::find(kActions, selector, &ActionEntry::selector);
    if (entry != std::end(kActions)) entry->perform(*this, sender);
}

void Controller::showUpdateSheet(View& sender) {
    if (Panel* window = updaterView->panel())
        window->beginSheetForWindowOf(sender, [this](int code) { sheetDidEnd_returnCode_contextInfo(code); });
}

// A sheet cannot carry another: above the update sheet the statement is a modal window.
void Controller::privacyPolicy(View& sender) {
    auto path = platform_.paneBundle.resourcePath("SUPrivacyStatement", "rtfd");
    if (!path) {
        twvc::log(services_, "Cannot find path for SUPrivacyStatement.rtfd");
        return platform_.toolkit.beep();
    }
    if (!privacyText->loadRichText(*path)) privacyText->setString(formatted(localized("Cannot load %@"), {*path}));
    if (sender.panel()) return privacyWindow->runModal([this] { windowWillClose(); });
    privacyWindow->beginSheetForWindowOf(sender, [this](int code) { sheetDidEnd_returnCode_contextInfo(code); });
}

void Controller::dismissPrivacy(View&) {
    if (privacyWindow->isRunningModal())
        privacyWindow->stopModal();
    else
        privacyWindow->endSheet(0);
    privacyWindow->orderOut();
}

void Controller::windowWillClose() {
    if (privacyWindow->isRunningModal()) privacyWindow->stopModal();
}

void Controller::sheetDidEnd_returnCode_contextInfo(int) {}
