// Adding applications, from the chooser or by drop, and removing entries.
#include "pane/TSPreferencePane.h"

#include "settings/ApplicationEntry.h"
#include "settings/EntryList.h"

using namespace platform;
using namespace settings;

namespace {

constexpr int kPanelOK = 1;
constexpr std::string_view kRefusal = "The following file will not be added to the application list(%d): %@";

}  // namespace

void TSPreferencePane::doExAddApp(View&) {
    canUnselect = UnselectReply::Later;
    OpenPanelRequest request;
    request.title = localized("Choose an Application");
    request.prompt = localized("Add");
    request.folder = "/Applications";
    request.allowedTypes = {"app"};
    request.allowsMultipleSelection = true;
    request.canChooseFiles = true;
    platform_.toolkit.beginOpenPanel(request, [this](OpenPanel& panel, int returnCode) {
        exOpenPanelDidEnd_returnCode_contextInfo(&panel, returnCode, {});
    });
}

void TSPreferencePane::exOpenPanelDidEnd_returnCode_contextInfo(OpenPanel* panel, int returnCode,
                                                                const std::vector<std::string>& fileNames) {
    std::vector<PropertyList> list = freshEntryList();
    if (returnCode == kPanelOK) addApplications(panel ? panel->filenames() : fileNames, list);
    commit(std::move(list), [this] {
        exTableView->reloadData();
        selectLastRow();
        exTableView->scrollRowToVisible(exTableView->selectedRow());
        sheetEnded();
    });
}

void TSPreferencePane::addApplications(const std::vector<std::string>& fileNames, std::vector<PropertyList>& list) {
    ApplicationIndex index(list);
    for (const std::string& path : fileNames) {
        std::optional<ApplicationIdentity> application = describeApplication(path);
        if (!application || index.contains(*application)) continue;
        list.push_back(applicationEntry(*application, getDefaultSettingsBasedOnGlobal()));
        index.add(list.back());
        exTableView->reloadData();
        if (int rows = exTableView->numberOfRows(); rows > 0) exTableView->selectRow(rows - 1);
    }
}

// Nothing, and a line in the log, for what is not a native application.
std::optional<ApplicationIdentity> TSPreferencePane::describeApplication(const std::string& path) {
    ItemInformation information;
    OSStatus status = platform_.applications.itemInformation(path, information);
    bool isRefused = status != kNoErr || !(information.flags & ItemInformation::kIsNativeApplication);
    if (isRefused || isCocoaApp(path)) {
        platform_.log(kRefusal, status, path);
        return std::nullopt;
    }
    ApplicationIdentity application{path, platform_.applications.displayName(path),
                                    platform_.applications.bundleIdentifier(path), creatorText(information.creator)};
    if (CVAliasClass) {
        std::unique_ptr<CVAlias> alias = CVAliasClass->aliasWithPath(path);
        application.displayName = alias->displayName();
        application.bundleIdentifier = alias->bundleIdentifier();
    }
    return application;
}

void TSPreferencePane::selectLastRow() {
    int rows = exTableView->numberOfRows();
    exTableView->selectRow(rows > 0 ? rows - 1 : 0);
}

void TSPreferencePane::doExRemoveApp(View&) {
    int selected = exTableView->selectedRow();
    if (selected < 0) return;
    auto fresh = freshEntryListAndRow(selected);
    if (!fresh) return;
    std::vector<PropertyList>& list = fresh->list;
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(fresh->row));
    if (fresh->row >= list.size()) exTableView->selectRow(static_cast<int>(list.size()) - 1);
    commit(std::move(list), [this] {
        tableViewSelectionDidChange({kTableViewSelectionDidChange, &*exTableView});
        exTableView->reloadData();
    });
}
