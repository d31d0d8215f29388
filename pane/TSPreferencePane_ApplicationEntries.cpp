// Adding applications, from the chooser or by drop, and removing entries.
#include "pane/TSPreferencePane.h"

#include "propertylist/ASCII.h"
#include "settings/ApplicationEntry.h"
#include "settings/EntryList.h"

#include <algorithm>
#include <memory>
#include <span>
#include <utility>

using namespace platform;
using namespace settings;

namespace {

constexpr int kPanelOK = 1;
constexpr std::size_t kMostNames = 3;  // of each kind, in a sentence
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
    request.isTaken = [this, index = ApplicationIndex(entryList().elements())](const std::string& path) {
        return isListed(index, path);
    };
    platform_.toolkit.beginOpenPanel(request, [this](OpenPanel& panel, int returnCode) {
        exOpenPanelDidEnd_returnCode_contextInfo(&panel, returnCode, {});
    });
}

void TSPreferencePane::exOpenPanelDidEnd_returnCode_contextInfo(OpenPanel* panel, int returnCode,
                                                                const std::vector<std::string>& fileNames) {
    lastFiles = {};
    std::vector<ApplicationIdentity> applications;
    if (returnCode == kPanelOK) applications = describeApplications(panel ? panel->filenames() : fileNames);
    auto wereAdded = std::make_shared<std::vector<bool>>();  // when the change was last made
    auto add = [applications, wereAdded, like = std::exchange(settingsOfNew, {})](List& list) {
        *wereAdded = addApplications(list, applications, like);
    };
    commit(std::move(add), [this] {
        exTableView->reloadData();
        selectLastRow();
        exTableView->scrollRowToVisible(exTableView->selectedRow());
        sheetEnded();
    });
    if (wereAdded->size() != applications.size()) return;  // the list cannot be read
    for (std::size_t i = 0; i < applications.size(); ++i)
        (wereAdded->at(i) ? lastFiles.added : lastFiles.alreadyListed)
            .push_back({applications[i].path, applications[i].displayName});
    std::string text = addedFilesText();
    if (text.empty()) return;
    platform_.host.say(lastFiles.added.empty() ? ActionMessage{text} : listCommands.withUndo(text));
}

std::vector<ApplicationIdentity> TSPreferencePane::describeApplications(const std::vector<std::string>& fileNames) {
    std::vector<ApplicationIdentity> applications;
    for (const std::string& path : fileNames) {
        if (auto application = describeApplication(path))
            applications.push_back(std::move(*application));
        else
            lastFiles.noApplications.push_back({path, platform_.applications.displayName(path)});
    }
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
    return identityOf(path, creatorText(information.creator));
}

ApplicationIdentity TSPreferencePane::identityOf(const std::string& path, const std::string& creator) {
    if (!CVAliasClass)
        return {path, platform_.applications.displayName(path), platform_.applications.bundleIdentifier(path), creator};
    std::unique_ptr<CVAlias> alias = CVAliasClass->aliasWithPath(path);
    return {path, alias->displayName(), alias->bundleIdentifier(), creator};
}

// A creator is looked up only where it counts: that reads a file.
bool TSPreferencePane::isListed(const ApplicationIndex& index, const std::string& path) {
    ItemInformation information;
    if (index.asksForCreators()) platform_.applications.itemInformation(path, information);
    return index.contains(identityOf(path, creatorText(information.creator)));
}

std::string TSPreferencePane::addedFilesText() const {
    auto named = [this](const std::vector<AddedFiles::File>& files) {
        std::string names;
        for (const AddedFiles::File& file : std::span(files).first(std::min(files.size(), kMostNames)))
            names = names.empty() ? file.displayName : formatted(localized("%@, %@"), {names, file.displayName});
        int others = static_cast<int>(files.size()) - static_cast<int>(kMostNames);
        return others > 0 ? formatted(localized("%@ and %d more"), {names, others}) : names;
    };
    const std::pair<const std::vector<AddedFiles::File>&, std::string> groups[] = {
        {lastFiles.added, localized("added: %@")},
        {lastFiles.alreadyListed, localized("in the list already: %@")},
        {lastFiles.noApplications, localized("no application for this system: %@")}};
    std::string text;
    for (const auto& [files, format] : groups) {
        if (files.empty()) continue;
        std::string part = formatted(format, {named(files)});
        text = text.empty() ? part : formatted(localized("%@; %@"), {text, part});
    }
    if (text.empty()) return {};
    if (propertylist::isASCIILetter(text.front())) text.front() = static_cast<char>(text.front() & ~0x20);  // a capital
    return formatted(localized("%@."), {text});
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
