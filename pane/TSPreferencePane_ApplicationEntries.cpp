// Adding applications, from the chooser or by drop, and removing entries.
#include "pane/TSPreferencePane.h"

#include "settings/ApplicationEntry.h"
#include "settings/EntryList.h"

#include <algorithm>

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
    std::vector<ApplicationIdentity> applications;
    if (returnCode == kPanelOK) applications = describeApplications(panel ? panel->filenames() : fileNames);
    auto add = [applications = std::move(applications), like = std::exchange(settingsOfNew, {})](List& list) {
        addApplications(list, applications, like);
    };
    commit(std::move(add), [this] {
        exTableView->reloadData();
        selectLastRow();
        exTableView->scrollRowToVisible(exTableView->selectedRow());
        sheetEnded();
    });
}

std::vector<ApplicationIdentity> TSPreferencePane::describeApplications(const std::vector<std::string>& fileNames) {
    std::vector<ApplicationIdentity> applications;
    for (const std::string& path : fileNames)
        if (auto application = describeApplication(path)) applications.push_back(std::move(*application));
    return applications;
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
    if (exTableView->selectedRow() < 0) return;
    auto remove = [](List& list, std::size_t row) { list.erase(list.begin() + static_cast<std::ptrdiff_t>(row)); };
    commitEntry(shownEntry, remove, [this](std::size_t row) {
        int last = static_cast<int>(entryList().size()) - 1;
        exTableView->selectRow(std::min(static_cast<int>(row), last));
        tableViewSelectionDidChange({kTableViewSelectionDidChange, &*exTableView});
        exTableView->reloadData();
    });
}
