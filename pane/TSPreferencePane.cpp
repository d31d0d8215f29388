// The pane's life in its host.
#include "pane/TSPreferencePane.h"

#include "settings/DiagnosticLog.h"
#include "settings/EntryList.h"

#include <algorithm>
#include <cmath>

using namespace platform;
using namespace settings;

namespace {

constexpr const char* kRuntimeIdentifier = "com.tarnwick.plinth";
constexpr std::uint32_t kLastOldSystem = 0x1014;  // 10.1.4, in binary-coded decimals
constexpr std::string_view kIconColumn = "13";
constexpr std::string_view kPrivateFramework = "CorvaneAdditions.framework";

constexpr std::string_view kModuleFolder = "Plinthworks";
constexpr std::string_view kDisabledModuleFolder = "Plinthworks (disabled)";
constexpr std::string_view kModule = "Typeslate.plinth";

constexpr std::string_view kHideExplanationKey = "Hide What Works Without Module";  // boolean, of the window's domain

template <typename Function>
void lookUp(Function& function, BundleServices& bundles, const char* name) {
    if (function) return;
    if (Bundle* runtime = bundles.loadedBundle(kRuntimeIdentifier))
        function = reinterpret_cast<Function>(runtime->functionNamed(name));
}

bool moduleExists(FileServices& files, std::string_view moduleFolder) {
    for (FolderDomain domain : {FolderDomain::User, FolderDomain::Local}) {
        std::optional<std::string> library = files.folder(domain, FolderKind::Library);
        if (library && files.fileExists(formatted("%@/%@/%@", {*library, moduleFolder, kModule}))) return true;
    }
    return false;
}

}  // namespace

PlinthMessageBroadcastFunction TSPreferencePane::PlinthMessageBroadcast = nullptr;
PlinthMessageSendFunction TSPreferencePane::PlinthMessageSend = nullptr;

extern "C" __attribute__((visibility("default"))) PreferencePane* TSPreferencePane_create(const Platform& platform) {
    TSPreferencePane::initialize(platform.bundles);
    return new TSPreferencePane(platform);
}

// The store is there from the start, because start-up reads it before the main view has loaded.
TSPreferencePane::TSPreferencePane(const Platform& platform)
    : platform_(platform),
      prefs(CFPreferencesWrapper_Typeslate::preferencesWithApplication(platform.preferences, kSettingsDomain)),
      thisBundle(platform.paneBundle),
      listCommands(platform_, *this),
      listSearch(platform_, *this),
      exchangePanel(
          platform_, *this, [this] { return listSearch.shownRows(); },
          [this](std::string text) { return listCommands.withUndo(std::move(text)); },
          [this](bool isBusy) { isBusy ? void(canUnselect = UnselectReply::Later) : sheetEnded(); }),
      optionMarks(platform_, *this,
                  [this](const Option& option) {
                      listCommands.useGlobals({&option, 1});
                  }),
      menuPreview(platform_, *this),
      expressionPreview(platform_, regex, regexType),
      unreachable(platform_.expressions) {}

TSPreferencePane::~TSPreferencePane() = default;

void TSPreferencePane::initialize(BundleServices& bundles) {
    lookUp(PlinthMessageBroadcast, bundles, "PlinthMessageBroadcast");
    lookUp(PlinthMessageSend, bundles, "PlinthMessageSend");
}

std::string TSPreferencePane::mainNibName() {
    oldOSX = false;
    lastSelected = -1;
    std::optional<std::uint32_t> version = platform_.system.gestalt(fourCharCode("sysv"));
    if (version && *version <= kLastOldSystem) oldOSX = true;
    return "TSPrefs";
}

void TSPreferencePane::awakeFromNib() {
    updateController = TWVCUpdateViewController_V100::initWithSacrificialView_forBundle_withBundleID(
        platform_, introWarningTextBox.connected(), nullptr, std::string(kSettingsDomain));
    rootEnabled = platform_.system.realUserID() == 0;
    logStuff->setState(isLogging());
    enabledCheckbox->setState(isModuleOn());

    listSearch.start();
    menuPreview.start();
    exTableView->setDataSource(this);
    exTableView->setSelectionObserver(
        [this](const InterfaceNotification& notification) { tableViewSelectionDidChange(notification); });
    makeSureGlobalIsFirst();
    addDefaultExclusionsToTS();
    exTableView->reloadData();
    tableViewSelectionDidChange({"Blah", &*exTableView});
    exTableView->selectRow(-1);
    exTableView->selectRow(0);
    exTableView->setImageColumn(kIconColumn);

    showRuntimeStatus();
    toggleAll();
    auto cache =
        CFPreferencesWrapper_Typeslate::preferencesWithApplication(platform_.preferences, fontcatalog::kCacheDomain);
    settings::DiagnosticLog diagnostics(platform_.log, prefs.get());
    checkFontNameCache({platform_.files, platform_.log, diagnostics}, cache.get(), adobeNames);
    mSystemPrefsIcon = platform_.toolkit.applicationIcon();
    mPrefPaneIcon =
        overlayIcon_withProductIcon(mSystemPrefsIcon, thisBundle.infoValue("CFBundleIconFile").stringValue());
    observeChanges();
}

void TSPreferencePane::mainViewDidLoad() {
    canUnselect = UnselectReply::Now;
    if (oldOSX) return;
    removeLoginItem(kSettingsDomain);  // the helper's, whose identifier is the name of the settings domain
    exTableView->registerForFileNameDrags();
    exTableView->setDoubleAction("doubleClickTable:");
    versionField->setStringValue(thisBundle.infoValue("CFBundleVersion").stringValue());
    versionField->setToolTip(formatted(localized("Born on %s at %s"), {__DATE__, __TIME__}));
    if (!CVAliasClass) getCVAliasClass();
    if (CVAliasClass) exRemoveAppButton->setEnabled(false);
}

void TSPreferencePane::getCVAliasClass() {
    if (CVAliasClass) return;
    std::string path = formatted("%@/%@", {thisBundle.privateFrameworksPath(), kPrivateFramework});
    std::unique_ptr<Bundle> framework = platform_.bundles.openBundle(path);
    if (!framework) return;
    auto factory = reinterpret_cast<AliasClassFactory>(framework->functionNamed(kAliasFactoryName));
    if (factory) CVAliasClass = factory(platform_);
}

ImageRef TSPreferencePane::overlayIcon_withProductIcon(const ImageRef& base, std::string_view iconFile) {
    ImageRef badge = paneImage(platform_, iconFile);
    if (!badge) return base;
    Size size = platform_.toolkit.imageSize(base);
    double side = std::floor(0.5 * size.width);
    return platform_.toolkit.imageByDrawing(base, badge, {{size.width - side, 0}, {side, side}}, {{0, 0}, size});
}

void TSPreferencePane::willSelect() {
    if (rootEnabled) {
        plinthMissing = true;
    } else if (moduleExists(platform_.files, kModuleFolder)) {
        plinthMissing = false;
    } else {
        // A module in a disabled folder counts as missing, like one that is nowhere. The look is deliberate, though so
        // far nothing depends on its answer.
        moduleExists(platform_.files, kDisabledModuleFolder);
        plinthMissing = true;
    }
    showRuntimeStatus();
    if (plinthMissing && !rootEnabled) explainWithoutModule();
    platform_.toolkit.setApplicationIcon(mPrefPaneIcon);
}

void TSPreferencePane::showRuntimeStatus() {
    enabledCheckbox->setEnabled(!plinthMissing);
    if (!plinthMissing) return statusField->setStringValue("");
    std::string text = rootEnabled ? localized("You are logged in as root. Plinth is disabled.")
                                   : localized("The Plinth component is either disabled or not installed.");
    statusField->setStringValue(text, TextTone::Alert);
}

void TSPreferencePane::explainWithoutModule() {
    if (platform_.preferences.getBooleanValue(kHideExplanationKey, entrylist::kWindowDomain)) return;
    ActionMessage message{
        localized("Menus of other programs change only through the Plinth module. Without it these settings are kept, "
                  "and work in typeslatectl and in programs built on libtypeslate."),
        localized("What Works Here"), localized("Opens the Read Me, which says what works on this computer")};
    message.perform = [this] { doMore(*exTableView); };
    platform_.host.explain(message, [this] {
        platform_.preferences.setValue(kHideExplanationKey, true, entrylist::kWindowDomain);
        platform_.preferences.synchronize(entrylist::kWindowDomain);
    });
}

UnselectReply TSPreferencePane::shouldUnselect() {
    if (canUnselect == UnselectReply::Later) unselectRequest = true;
    return canUnselect;
}

void TSPreferencePane::sheetEnded() {
    canUnselect = UnselectReply::Now;
    if (std::exchange(unselectRequest, false)) platform_.host.replyToShouldUnselect(true);
}

void TSPreferencePane::hostDidBecomeActive() {
    takeInChanges();
    listSearch.lookAgain();
    menuPreview.lookAgain();
}

void TSPreferencePane::willUnselect() { platform_.toolkit.setApplicationIcon(mSystemPrefsIcon); }

void TSPreferencePane::makeSureGlobalIsFirst() {
    // While the stored list cannot be read it is unknown, not empty: an empty list, repaired and stored, would replace
    // it as soon as it can be read again.
    if (!prefs->isReadable()) return;
    if (hasType(entryList()[0], kGlobalType)) return;
    prefs->changeArray_forKey([](List& list) { putGlobalFirst(list); }, kEntryListKey);
    exTableView->reloadData();
}

PropertyList TSPreferencePane::getDefaultSettingsBasedOnGlobal() {
    makeSureGlobalIsFirst();
    return entryList()[0][kSettingsKey];
}

PropertyList TSPreferencePane::entryList() const { return prefs->arrayForKey(kEntryListKey); }

PropertyList TSPreferencePane::entryAtRow(int row) const {
    return row < 0 ? PropertyList() : entryList()[static_cast<std::size_t>(row)];
}

bool TSPreferencePane::isModuleOn() const { return !prefs->boolForKey(kDisabledKey) && !rootEnabled; }

bool TSPreferencePane::isLogging() const { return prefs->boolForKey(kLogStuffKey); }
