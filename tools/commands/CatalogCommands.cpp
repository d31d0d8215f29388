#include "tools/commands/Commands.h"

#include "linux/LinuxMachine.h"
#include "linux/texts/DisplayText.h"
#include "pane/fontcatalog/AdobeNames.h"
#include "pane/fontcatalog/FontListReader.h"
#include "pane/fontcatalog/FontListSearch.h"
#include "pane/fontcatalog/NameDatabaseReader.h"
#include "pane/fontcatalog/TextEncoding.h"
#include "settings/DiagnosticLog.h"
#include "tools/AbsolutePath.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/ProgressLine.h"
#include "tools/Refusal.h"
#include "tools/StoredDomain.h"

#include <chrono>
#include <filesystem>
#include <map>

using namespace fontcatalog;
using namespace platform;

namespace tools {
namespace {

struct Arguments {
    std::vector<std::string> lists;
    std::optional<std::string> database, family;
    std::string name;
    bool isVerbose = false;
};

std::string placesOfDatabase(FileServices& files) {
    std::string places;
    for (const std::string& place : adobeDBPlaces(files)) places += (places.empty() ? "" : ", ") + place;
    return linux::displayText(places);
}

// Unlike the pane, which passes over what it cannot read, a person who named the file is told.
std::shared_ptr<const std::string> requireContent(linux::LinuxFiles& files, const std::string& path) {
    if (path.empty()) throw refused("the path is empty");
    OSStatus status;
    auto bytes = files.readFile(path, kLargestText, status);
    const std::string shown = linux::displayText(path);
    if (status == kFileTooLarge) throw refused("%@ is larger than %d MB", shown, kLargestText >> 20);
    if (!bytes) throw refused("%@ is no regular file that can be read", shown);
    return bytes;
}

void parse(const Arguments& arguments) {
    linux::LinuxFiles files;
    linux::SystemLog log;
    FontFileLookup lookup(files);
    const FontFileFinder find = [&](std::string_view relative) { return lookup.getFontFileForSubpath(relative); };
    NamesCollection names;
    if (arguments.database) readNameDatabase(decodedText(requireContent(files, *arguments.database)), names);
    for (const std::string& list : arguments.lists) {
        auto bytes = requireContent(files, list);
        readFontList(listText(std::move(bytes)), absolutePath(list), find, log, names);
    }
    printJson(std::move(names).freeze());
}

struct Store : linux::LinuxStore {
    Store() { preferences.setLongestWait(lockWait()); }
    PropertyList value(std::string_view key) {
        requireReadable(preferences, kCacheDomain);
        return preferences.copyValue(key, kCacheDomain);
    }
    PropertyList requireNames() {
        PropertyList names = value(kAllNamesKey);
        if (!names.isDictionary()) throw refused("no catalogue is stored");
        return names;
    }
};

// Each file or folder once, with the last reason, by path.
using PassedOver = std::map<std::string, OSStatus, std::less<>>;

void printSources(linux::LinuxFiles& files, const PassedOver& passedOver) {
    printLine(localizedFormat("database: %@", linux::displayText(adobeDBPath(files).value_or(""))));
    for (const FolderDomain domain : kListDomains)
        if (const auto folder = listFolder(files, domain); folder && files.fileExists(*folder))
            printLine(localizedFormat("folder: %@", linux::displayText(*folder)));
    for (const auto& [path, reason] : passedOver)
        printLine(localizedFormat("passed over: %@: %@", linux::displayText(path), localized(statusText(reason))));
}

void build(const Arguments& arguments) {
    const auto start = std::chrono::steady_clock::now();
    linux::LinuxFiles files;
    Store store;
    ProgressLine progress(store.log);
    const auto settings =
        CFPreferencesWrapper_Typeslate::preferencesWithApplication(store.preferences, settings::kSettingsDomain);
    linux::StandardErrorLog standardError;
    settings::DiagnosticLog diagnostics(progress, settings.get(), arguments.isVerbose ? &standardError : nullptr);
    if (arguments.isVerbose) store.log.showOnStandardError();
    const auto tell = [&](std::size_t done, std::size_t all) {
        if (!arguments.isVerbose) progress.show(localizedFormat("%d of %d font lists", done, all));
    };
    PassedOver passedOver;
    const auto note = [&](std::string_view path, OSStatus reason) { passedOver[std::string(path)] = reason; };
    const auto cache = CFPreferencesWrapper_Typeslate::preferencesWithApplication(store.preferences, kCacheDomain);
    Catalogue catalogue;
    const CacheCheck check = checkFontNameCache({files, progress, diagnostics, tell, note}, cache.get(), catalogue);
    progress.clear();
    if (catalogue.state == Catalogue::State::Unavailable)
        throw refused("there is no font name database, and without it no catalogue; looked for %@",
                      placesOfDatabase(files));
    if (!check.isStored) refuseUnsaved(store.preferences, kCacheDomain);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    printLine(localizedFormat("%@: %d files, %d records, %.3f s", localized("rebuilt"), check.files.size(),
                              catalogue.names.size(), seconds.count()));
    printSources(files, passedOver);
}

void show(const Arguments& arguments) {
    const PropertyList record = Store().requireNames()[arguments.name];
    if (!record) throw refused("there is no font \"%@\" in the catalogue", linux::displayText(arguments.name));
    printJson(record);
}

void list(const Arguments& arguments) {
    const PropertyList names = Store().requireNames();
    std::string lines;
    for (const PropertyList::Entry& entry : names.entries())
        if (!arguments.family || entry.value["FullName"].stringValue() == *arguments.family)
            lines += linux::withVisibleControls(entry.key.stringValue()) + "\n";
    if (arguments.family && lines.empty())
        throw refused("there is no family \"%@\" in the catalogue", linux::displayText(*arguments.family));
    print(lines);
}

void stats(const Arguments&) {
    Store store;
    const PropertyList names = store.requireNames();
    const std::string path = formatted("%s/%s.plist", {linux::preferencesFolder(), kCacheDomain});
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error) throw Refusal(path + ": " + error.message());
    printLine(localizedFormat("records: %d\nfiles: %d\nversion: %g\nsize: %d bytes", names.size(),
                              store.value(kFilesKey).size(), store.value(kVersionKey).realValue(), size));
}

}  // namespace

void addCatalogCommands(CLI::App& app) {
    CommandGroup<Arguments> catalog(app, "catalog", localized("Build and show the catalogue of font names"));
    auto* parsing =
        catalog.add("parse", localized("Print the records of font lists as JSON; nothing is stored"), parse);
    parsing->add_option("FILE", catalog->lists, localized("Font list; a later record takes an earlier one's place"))
        ->required();
    parsing->add_option("--database", catalog->database, localized("Font name database to read before the lists"))
        ->type_name("FILE");
    catalog
        .add("build", localized("Check the stored catalogue and rebuild it, as the window does when it starts"), build)
        ->add_flag("--verbose", catalog->isVerbose,
                   localized("Print on standard error what is found and read, whether or not the setting logs it"));
    catalog.add("show", localized("Print the stored record of a font as JSON"), show)
        ->add_option("NAME", catalog->name, localized("PostScript name"))
        ->required();
    catalog.add("list", localized("Print the PostScript names in the stored catalogue"), list)
        ->add_option("--family", catalog->family, localized("Only those of this family, the record's \"FullName\""))
        ->type_name("NAME");
    catalog.add("stats", localized("Print the size of the stored catalogue"), stats);
}

}  // namespace tools
