#include "linux/applications/LinuxApplications.h"

#include "linux/applications/Programs.h"
#include "linux/files/ErrnoStatus.h"
#include "linux/files/Paths.h"
#include "linux/processes/DetachedProcess.h"
#include "propertylist/ASCII.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <locale>
#include <map>
#include <memory>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace linux {

using namespace platform;

namespace {

// Applications that the pane asks for by the identifiers of another system, and what does their work on this one, the
// best first.
struct StandIns {
    std::string_view identifier;
    std::array<std::string_view, 7> desktopEntries;
};
constexpr std::array<StandIns, 2> kStandIns = {{
    {"com.apple.Console",
     {"org.gnome.Logs", "org.kde.kjournaldbrowser", "org.kde.ksystemlog", "mate-system-log", "deepin-log-viewer",
      "gnome-system-log", "logview"}},
    {"com.apple.FontBook",
     {"org.gnome.FontManager", "com.github.FontManager.FontManager", "fontmatrix", "kcm_fontinst",
      "org.gnome.font-viewer", "org.kde.kfontview"}},
}};

bool isUsable(std::string_view path) { return path.starts_with('/') && path.find('\0') == std::string_view::npos; }

std::string resolved(const std::string& path) {
    std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : "";
}

std::locale usersLocale() try { return std::locale(""); } catch (const std::runtime_error&) {
    return {};
}

// As the user's language orders names, capitals beside small letters.
void sortByName(std::vector<ApplicationRecord>& applications) {
    std::locale locale = usersLocale();
    auto& collation = std::use_facet<std::collate<char>>(locale);
    std::multimap<std::string, ApplicationRecord> sorted;
    for (ApplicationRecord& application : applications) {
        std::string name = application.name;
        std::ranges::transform(name, name.begin(), propertylist::lowerASCII);
        sorted.emplace(collation.transform(name.data(), name.data() + name.size()), std::move(application));
    }
    std::ranges::transform(sorted, applications.begin(), [](auto& item) { return std::move(item.second); });
}

}  // namespace

LinuxApplications::LinuxApplications(ApplicationEnvironment environment, ApplicationIndex::Clock clock)
    : environment_(std::move(environment)), index_(environment_, std::move(clock)) {}

void LinuxApplications::refresh() {
    if (index_.refresh()) forgetPrograms();
}

void LinuxApplications::forgetPrograms() {
    programs_.clear();
    isProgramIndexFresh_ = false;
}

std::optional<std::string> LinuxApplications::findApplication(const ApplicationQuery& query) {
    refresh();
    const ApplicationRecord* found = nullptr;
    if (query.creator) found = firstInstalled(index_.withCreator(*query.creator));
    if (!found && !query.identifier.empty()) found = knownOrStandIn(query.identifier);
    if (!found && !query.name.empty()) found = firstInstalled(index_.withFileName(query.name));
    if (!found) return {};
    return found->path;
}

const ApplicationRecord* LinuxApplications::firstInstalled(const ApplicationIndex::Candidates& candidates) {
    auto found = std::ranges::find_if(candidates, [this](const auto* record) { return isInstalled(*record); });
    return found == candidates.end() ? nullptr : *found;
}

const ApplicationRecord* LinuxApplications::knownOrStandIn(const std::string& identifier) {
    if (const ApplicationRecord* found = firstInstalled(index_.withIdentifier(identifier))) return found;
    auto standIns = std::ranges::find(kStandIns, identifier, &StandIns::identifier);
    if (standIns == kStandIns.end()) return nullptr;
    for (std::string_view entry : standIns->desktopEntries)
        if (const ApplicationRecord* found = firstInstalled(index_.withIdentifier(std::string(entry)))) return found;
    return nullptr;
}

const std::string& LinuxApplications::program(const std::string& name) {
    auto known = programs_.find(name);
    if (known == programs_.end()) known = programs_.emplace(name, findProgram(name, environment_)).first;
    return known->second;
}

bool LinuxApplications::isInstalled(const ApplicationRecord& record) {
    if (record.isBundle) return true;
    if (!record.tryProgram.empty() && program(record.tryProgram).empty()) return false;
    return record.program.empty() ? record.isDBusActivatable : !program(record.program).empty();
}

bool LinuxApplications::isNative(const ApplicationRecord& record) {
    if (!record.isApplication || isWineProgram(record.program)) return false;
    return record.isBundle ? isExecutableFile(record.program) : isInstalled(record);
}

OSStatus LinuxApplications::itemInformation(std::string_view path, ItemInformation& information) {
    information = {};
    if (!isUsable(path)) return kParamErr;
    refresh();
    int error = 0;
    std::optional<ApplicationRecord> record =
        readApplicationRecord(withoutFinalSlashes(std::string(path)), environment_, error);
    if (error) return statusOfErrno(error);
    if (!record) return kNoErr;
    information.creator = record->creator;
    if (isNative(*record)) information.flags = ItemInformation::kIsNativeApplication;
    return kNoErr;
}

// Good until the next question.
const ApplicationRecord* LinuxApplications::recordAtPath(std::string_view path) {
    if (!isUsable(path)) return nullptr;
    refresh();
    std::string plain = withoutFinalSlashes(std::string(path));
    if (const ApplicationRecord* known = index_.atPath(plain)) return known;
    int error = 0;
    outside_ = readApplicationRecord(plain, environment_, error);
    if (!outside_) return nullptr;
    // A link to an installed entry stands for that entry.
    if (const ApplicationRecord* target = index_.atPath(resolved(plain)); target && !outside_->isBundle)
        outside_->identifier = target->identifier;
    return &*outside_;
}

std::optional<std::string> LinuxApplications::bundleIdentifier(std::string_view path) {
    const ApplicationRecord* record = recordAtPath(path);
    return record && !record->identifier.empty() ? std::optional(record->identifier) : std::nullopt;
}

std::string LinuxApplications::displayName(std::string_view path) {
    const ApplicationRecord* record = recordAtPath(path);
    return record ? record->name : displayedLastComponent(path);
}

// What only D-Bus starts has words, but no program.
OSStatus LinuxApplications::openApplication(std::string_view path) {
    const ApplicationRecord* record = recordAtPath(path);
    return record && isNative(*record) && !record->words.empty() ? startDetached(record->words) : kFileNotFound;
}

std::optional<ApplicationRecord> LinuxApplications::applicationAtPath(std::string_view path) {
    const ApplicationRecord* record = recordAtPath(path);
    return record && record->isApplication ? std::optional(*record) : std::nullopt;
}

std::vector<ApplicationRecord> LinuxApplications::installedApplications() {
    index_.refreshFully();
    forgetPrograms();
    std::vector<ApplicationRecord> applications;
    for (const ApplicationRecord* record : index_.all())
        if (record->isDisplayed && isNative(*record)) applications.push_back(*record);
    sortByName(applications);
    return applications;
}

std::vector<ApplicationFacts> LinuxApplications::allApplications() {
    std::vector<ApplicationFacts> all;
    for (ApplicationRecord& record : installedApplications())
        all.push_back({std::move(record.identifier), record.creator, std::move(record.path), std::move(record.name)});
    return all;
}

void LinuxApplications::indexPrograms() {
    byProgram_.clear();
    for (const ApplicationRecord* record : index_.all()) {
        if (record->program.empty() || isLauncherProgram(record->program)) continue;
        std::string file = resolved(record->isBundle ? record->program : program(record->program));
        if (file.empty() || isLauncherProgram(file)) continue;
        auto rank = [](const ApplicationRecord* r) { return std::tuple(!r->isDisplayed, r->argumentCount); };
        const ApplicationRecord*& best = byProgram_[file];
        if (!best || rank(record) < rank(best)) best = record;
    }
    isProgramIndexFresh_ = true;
}

std::optional<ApplicationRecord> LinuxApplications::applicationForProgram(std::string_view executable) {
    if (!isUsable(executable)) return {};
    refresh();
    if (!isProgramIndexFresh_) indexPrograms();
    auto found = byProgram_.find(std::string(executable));
    if (found == byProgram_.end()) return {};
    return *found->second;
}

std::optional<ApplicationRecord> LinuxApplications::applicationForWindowClass(std::string_view windowClass) {
    if (windowClass.empty()) return {};
    refresh();
    for (auto name : {&ApplicationRecord::windowClass, &ApplicationRecord::identifier})
        for (const ApplicationRecord* record : index_.all())
            if (propertylist::equalIgnoringASCIICase(record->*name, windowClass) && isNative(*record)) return *record;
    return {};
}

}  // namespace linux
