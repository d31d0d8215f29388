#include "tools/commands/Commands.h"

#include "linux/applications/LinuxApplications.h"
#include "linux/texts/DisplayText.h"
#include "linux/texts/TextColumns.h"
#include "platform/LoginItems.h"
#include "tools/AbsolutePath.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/StoredDomain.h"
#include "tools/headless/HeadlessPane.h"

#include <algorithm>

using namespace platform;

namespace tools {
namespace {

struct Arguments {
    std::string path;
    std::optional<std::string> identifier, pathIfAny;
    bool json = false, hide = false;
};

PropertyList storedItems(linux::DiskPreferences& preferences) {
    requireReadable(preferences, kLoginWindowDomain);
    PropertyList items = preferences.copyValue(kLoginItemsKey, kLoginWindowDomain);
    if (items && !items.isArray()) throw refused("the stored login items are no list; they stay as they are");
    return items;
}

std::string identifierOf(const std::string& path, BundleServices& bundles, ApplicationServices& applications) {
    if (!path.starts_with('/')) return "-";
    std::unique_ptr<Bundle> bundle = bundles.openBundle(path);
    std::string identifier =
        linux::displayText(bundle ? bundle->identifier() : applications.bundleIdentifier(path).value_or(""));
    return identifier.empty() ? "-" : identifier;
}

std::string itemTable(const PropertyList& items) {
    linux::FolderBundles bundles;
    linux::LinuxApplications applications;
    std::vector<std::vector<std::string>> rows{{localized("HIDE"), localized("IDENTIFIER"), localized("PATH")}};
    for (const PropertyList& item : items.elements()) {
        std::string path(item[kLoginItemPathKey].stringValue());
        bool isHidden = item[kLoginItemHideKey].boolValue();
        rows.push_back({isHidden ? localized("yes") : localized("no"), identifierOf(path, bundles, applications),
                        linux::displayText(path)});
    }
    return linux::tableText(rows);
}

void list(const Arguments& arguments) {
    linux::LinuxStore store;
    PropertyList items = PropertyList::array(mutableArray(storedItems(store.preferences)));
    if (arguments.json) return printJson(items);
    print(itemTable(items));
}

// The pane's operations tell nobody whether they were stored.
void requireStored(HeadlessPane& pane) {
    if (!pane.preferences().problem(kLoginWindowDomain).empty()) refuseUnsaved(pane.preferences(), kLoginWindowDomain);
}

void finish(HeadlessPane& pane) {
    requireStored(pane);
    if (!pane.areLoginItemsMirrored())
        throw refused("the login items are stored, but not all of their autostart entries; the log says why");
}

std::string pathToStore(const Arguments& arguments) {
    if (!PropertyList(arguments.path)) throw refused("the path is not UTF-8");
    std::string path = absolutePath(arguments.path);
    if (path.empty()) throw refused("%@ needs a value", "PATH");
    return path;
}

void warnOfNothing(const std::string& path) {
    if (!linux::startDescription(path, linux::ApplicationEnvironment::current()))
        printLine(
            localizedFormat("%@ is stored, but now there is nothing that can be started", linux::displayText(path)));
}

// As it was typed where an item has exactly that: other programs store paths in other forms than we do.
std::string pathOfItems(const std::string& typed, const PropertyList& items) {
    bool isStored = std::ranges::any_of(
        items.elements(), [&](const PropertyList& item) { return item[kLoginItemPathKey] == PropertyList(typed); });
    return isStored ? typed : absolutePath(typed);
}

void add(const Arguments& arguments) {
    std::string path = pathToStore(arguments);
    HeadlessPane pane;
    storedItems(pane.preferences());
    pane.operations().addLoginItem_hide(path, arguments.hide);
    finish(pane);
    warnOfNothing(path);
}

void remove(const Arguments& arguments) {
    HeadlessPane pane;
    PropertyList before = storedItems(pane.preferences());
    std::string path = pathOfItems(arguments.pathIfAny.value_or(""), before);
    if (arguments.pathIfAny)
        pane.operations().removeLoginItemWithPath(path);
    else
        pane.operations().removeLoginItem(*arguments.identifier);
    finish(pane);
    if (storedItems(pane.preferences()).size() == before.size())
        throw refused("there is no login item of %@",
                      linux::displayText(arguments.pathIfAny ? path : *arguments.identifier));
}

void check(const Arguments& arguments) {
    std::string path = pathToStore(arguments);
    HeadlessPane pane;
    storedItems(pane.preferences());
    if (!pane.operations().isLoginItem_withPath(*arguments.identifier, path))
        throw refused("there is no login item of %@", linux::displayText(*arguments.identifier));
    requireStored(pane);
    warnOfNothing(path);
}

}  // namespace

void addLoginItemsCommands(CLI::App& app) {
    CommandGroup<Arguments> group(app, "login-items", localized("Show and change what starts when you log in"));
    group.add("list", localized("Print the login items"), list)
        ->add_flag("--json", group->json, localized("As JSON, with every key"));
    auto* adding = group.add("add", localized("Add a login item, though there may be one already"), add);
    adding->add_option("PATH", group->path, localized("Application: an .app folder, desktop file or program"))
        ->required();
    adding->add_flag("--hide", group->hide, localized("Start it quietly"));
    auto* removing = group.add("remove", localized("Remove every login item of an application"), remove);
    removing->add_option("IDENTIFIER", group->identifier, localized("Bundle identifier of the application"));
    removing->add_option("--path", group->pathIfAny, localized("Remove those with exactly this path instead"));
    removing->require_option(1);
    auto* checking = group.add(
        "check", localized("Tell whether an application is a login item, and correct the path of one that is"), check);
    checking->add_option("IDENTIFIER", group->identifier, localized("Bundle identifier of the application"))
        ->required();
    checking->add_option("PATH", group->path, localized("Where it should be started from"))->required();
}

}  // namespace tools
