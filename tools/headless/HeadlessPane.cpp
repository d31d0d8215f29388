#include "tools/headless/HeadlessPane.h"

#include "entrylist/EntryToken.h"
#include "linux/system/Installation.h"
#include "linux/texts/DisplayText.h"
#include "settings/EntryList.h"
#include "tools/EntryListing.h"
#include "tools/Localized.h"
#include "tools/StoredDomain.h"

using namespace entrylist;
using namespace platform;
using namespace settings;

namespace tools {
namespace {

constexpr int kPanelOK = 1;

std::unique_ptr<Bundle> openPaneBundle(BundleServices& bundles) {
    const std::string path = linux::paneBundlePath();
    std::unique_ptr<Bundle> bundle = bundles.openBundle(path);
    if (!bundle) throw refused("the settings pane is not installed: there is no bundle at %@", path);
    return bundle;
}

}  // namespace

HeadlessPane::HeadlessPane() : bundle_(openPaneBundle(platform_.bundles)), pane_(platform_.forPane(*bundle_)) {
    platform_.preferences.setLongestWait(lockWait());
    requireReadable(platform_.preferences, kSettingsDomain);
    TSPreferencePane::initialize(platform_.bundles);
    connectOutlets();
    table_.numberOfRows();  // repairs the list
}

// The window's start-up work, above all the shipped exclusions and the font catalogue, is left to the window.
void HeadlessPane::connectOutlets() {
    const std::pair<std::string_view, View&> outlets[] = {
        {"exTableView", table_}, {"exRemoveAppButton", remove_}, {"regexAdd", addRegex_},
        {"regexName", name_},    {"regex", expression_},         {"regexType", kind_},
        {"regexPanel", sheet_},  {"regexSheetOK", sheetOK_},     {"enabledCheckbox", module_},
        {"logStuff", logging_},  {"warningSheet", warning_}};
    for (auto& [name, object] : outlets) pane_.setOutlet(name, object);
    table_.setDataSource(&pane_);
    table_.setSelectionObserver(
        [this](const InterfaceNotification& notification) { pane_.tableViewSelectionDidChange(notification); });
}

PropertyList HeadlessPane::storedList() { return platform_.preferences.copyValue(kEntryListKey, kSettingsDomain); }

std::size_t HeadlessPane::select(const EntryAddress& entry) {
    table_.numberOfRows();
    const std::size_t row = rowAt(entry, storedList().elements());
    table_.selectRow(static_cast<int>(row));
    return row;
}

void HeadlessPane::requireUnchanged(const std::string& token) {
    platform_.preferences.changeValues(
        [token](MutableDictionary& values) {
            if (tokenOf(repairedList(values[kEntryListKey])) != token)
                throw Refusal(localized("the list of entries has changed since its token was printed"),
                              kListHasChanged);
        },
        kSettingsDomain);
}

bool HeadlessPane::isApplication(const std::string& path, ItemInformation& information) {
    return platform_.applications.itemInformation(path, information) == kNoErr &&
           (information.flags & ItemInformation::kIsNativeApplication);
}

HeadlessPane::Added HeadlessPane::addApplications(const std::vector<std::string>& paths) {
    Added result;
    std::vector<std::string> applications;
    ItemInformation information;
    for (const std::string& path : paths)
        (isApplication(path, information) ? applications : result.noApplications).push_back(path);
    if (applications.empty()) return result;

    pane_.exOpenPanelDidEnd_returnCode_contextInfo(nullptr, kPanelOK, applications);
    for (const AddedFiles::File& file : pane_.addedFiles().alreadyListed) result.alreadyListed.push_back(file.path);
    return result;
}

void HeadlessPane::addRegex(const std::string& name, const std::string& expression, int kind) {
    pane_.regexNew(addRegex_);
    name_.setStringValue(name, TextTone::Normal);
    expression_.setStringValue(expression, TextTone::Normal);
    kind_.selectItem(kind);
    pane_.regexEnd(sheetOK_);
}

void HeadlessPane::removeEntry(const EntryAddress& entry) {
    select(entry);
    if (!remove_.isEnabled()) throw refused("the Global entry cannot be removed");
    pane_.doExRemoveApp(remove_);
}

void HeadlessPane::setOption(const EntryAddress& entry, const Option& option, std::int64_t value) {
    const std::size_t row = select(entry);
    if (!storedList()[row].isDictionary()) throw refused("entry %d holds no settings", row);
    HeadlessOption control(option.tag, value);
    pane_.togglePerAppPrefs(control);
}

void HeadlessPane::changeEntry(const EntryAddress& entry, TSPreferencePane::EntryChange change) {
    const std::size_t row = select(entry);
    pane_.commitEntry({storedList()[row], row}, std::move(change), [](std::size_t) {});
}

bool HeadlessPane::isExpression(const EntryAddress& entry) { return hasType(storedList()[select(entry)], kRegExType); }

ApplicationIdentity HeadlessPane::application(const std::string& path) {
    ItemInformation information;
    if (!isApplication(path, information))
        throw refused("%@ is no application for this system", linux::displayText(path));
    return {path, platform_.applications.displayName(path), platform_.applications.bundleIdentifier(path),
            creatorText(information.creator)};
}

void HeadlessPane::setModule(bool isOn) {
    module_.setState(isOn);
    pane_.toggleEnabled(module_);
}

void HeadlessPane::setLogging(bool isOn) {
    constexpr int kContinue = 1;
    logging_.setState(isOn);
    pane_.toggleLogging(logging_);
    warning_.endSheet(kContinue);
}

void HeadlessPane::changeList(std::function<void(std::vector<PropertyList>&)> change) {
    pane_.commit(std::move(change), [] {});
}

void HeadlessPane::finish() {
    if (platform_.host.wasEntryRemoved) throw refused("another program has removed the entry; nothing was done");
    if (!platform_.preferences.problem(kSettingsDomain).empty()) refuseUnsaved(platform_.preferences, kSettingsDomain);
    platform_.runLoop.wait();
    // Asked to end early: what is to be announced goes out now.
    if (platform_.bus && platform_.runLoop.isPending()) pane_.prefsFire();
}

}  // namespace tools
