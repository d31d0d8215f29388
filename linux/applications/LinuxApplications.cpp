#include "linux/applications/LinuxApplications.h"

#include "linux/files/ErrnoStatus.h"

#include "linux/applications/DesktopEntryCommand.h"

#include <fcntl.h>
#include <locale.h>
#include <string.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <tuple>
#include <utility>

namespace linux {

using namespace platform;

namespace {

// Applications that the pane asks for by the identifiers of another system, and what does their work on this one, the
// best first.
struct StandIns {
    std::string_view identifier;
    std::array<std::string_view, 6> desktopEntries;
};
constexpr std::array<StandIns, 2> kStandIns = {{
    {"com.apple.Console",
     {"org.gnome.Logs", "org.kde.ksystemlog", "mate-system-log", "deepin-log-viewer", "gnome-system-log", "logview"}},
    {"com.apple.FontBook",
     {"org.gnome.FontManager", "com.github.FontManager.FontManager", "fontmatrix", "kcm_fontinst",
      "org.gnome.font-viewer", "org.kde.kfontview"}},
}};

std::string withoutFinalSlashes(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return std::string(path);
}

bool isUsable(std::string_view path) { return path.starts_with('/') && path.find('\0') == std::string_view::npos; }

std::string resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : "";
}

InstalledApplication described(const ApplicationRecord& record) {
    return {record.path, record.identifier, record.name, record.iconName};
}

// Orders names as the user's language does, capitals beside small letters.
class Collation {
public:
    Collation() : locale_(::newlocale(LC_COLLATE_MASK | LC_CTYPE_MASK, "", nullptr)) {}
    Collation(const Collation&) = delete;
    ~Collation() {
        if (locale_) ::freelocale(locale_);
    }
    std::string key(std::string text) const {
        std::ranges::transform(text, text.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; });
        if (!locale_) return text;
        std::string transformed(::strxfrm_l(nullptr, text.c_str(), 0, locale_) + 1, '\0');
        ::strxfrm_l(transformed.data(), text.c_str(), transformed.size(), locale_);
        return transformed;
    }

private:
    locale_t locale_;
};

void sortByName(std::vector<InstalledApplication>& applications) {
    const Collation collation;
    std::vector<std::tuple<std::string, std::string, InstalledApplication>> keyed;
    keyed.reserve(applications.size());
    for (InstalledApplication& application : applications)
        keyed.emplace_back(collation.key(application.name), application.path, std::move(application));
    std::ranges::sort(keyed, [](const auto& a, const auto& b) {
        return std::tie(std::get<0>(a), std::get<1>(a)) < std::tie(std::get<0>(b), std::get<1>(b));
    });
    for (std::size_t i = 0; i < keyed.size(); ++i) applications[i] = std::move(std::get<2>(keyed[i]));
}

}  // namespace

LinuxApplications::LinuxApplications(ApplicationEnvironment environment, ApplicationIndex::Clock clock)
    : environment_(std::move(environment)), index_(environment_, std::move(clock)), programs_(environment_) {}

void LinuxApplications::refresh() {
    if (!index_.refresh()) return;
    programs_.forget();
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

const ApplicationRecord* LinuxApplications::firstInstalled(ApplicationIndex::Candidates candidates) {
    const auto found = std::ranges::find_if(candidates, [this](const auto* record) { return isInstalled(*record); });
    return found == candidates.end() ? nullptr : *found;
}

const ApplicationRecord* LinuxApplications::knownOrStandIn(std::string_view identifier) {
    if (const ApplicationRecord* found = firstInstalled(index_.withIdentifier(identifier))) return found;
    const auto standIns = std::ranges::find(kStandIns, identifier, &StandIns::identifier);
    if (standIns == kStandIns.end()) return nullptr;
    for (const std::string_view entry : standIns->desktopEntries)
        if (const ApplicationRecord* found = firstInstalled(index_.withIdentifier(entry))) return found;
    return nullptr;
}

bool LinuxApplications::isInstalled(const ApplicationRecord& record) {
    if (record.isBundle) return true;
    if (!record.tryProgram.empty() && programs_.find(record.tryProgram).empty()) return false;
    return record.program.empty() ? record.isDBusActivatable : !programs_.find(record.program).empty();
}

bool LinuxApplications::isNative(const ApplicationRecord& record) {
    if (!record.isApplication || isWineProgram(record.program)) return false;
    return record.isBundle ? !record.program.empty() && programs_.isExecutable(record.program) : isInstalled(record);
}

OSStatus LinuxApplications::itemInformation(std::string_view path, ItemInformation& information) {
    information = {};
    if (!isUsable(path)) return kParamErr;
    refresh();
    int error = 0;
    const std::optional<ApplicationRecord> record =
        readApplicationRecord(withoutFinalSlashes(path), environment_, error);
    if (error) return statusOfErrno(error);
    if (!record) return kNoErr;
    information.creator = record->creator;
    if (isNative(*record)) information.flags = ItemInformation::kIsNativeApplication;
    return kNoErr;
}

std::optional<ApplicationRecord> LinuxApplications::recordAtPath(std::string_view path) {
    if (!isUsable(path)) return {};
    refresh();
    const std::string plain = withoutFinalSlashes(path);
    if (const ApplicationRecord* known = index_.atPath(plain)) return *known;
    int error = 0;
    std::optional<ApplicationRecord> record = readApplicationRecord(plain, environment_, error);
    if (!record || record->isBundle) return record;
    // A link to an installed entry stands for that entry.
    const ApplicationRecord* target = index_.atPath(resolved(plain));
    if (target) record->identifier = target->identifier;
    return record;
}

std::optional<std::string> LinuxApplications::bundleIdentifier(std::string_view path) {
    const std::optional<ApplicationRecord> record = recordAtPath(path);
    if (!record || record->identifier.empty()) return {};
    return record->identifier;
}

std::string LinuxApplications::displayName(std::string_view path) {
    const std::optional<ApplicationRecord> record = recordAtPath(path);
    return record ? record->name : displayedLastComponent(path);
}

std::vector<InstalledApplication> LinuxApplications::installedApplications() {
    index_.refreshFully();
    programs_.forget();
    isProgramIndexFresh_ = false;
    std::vector<InstalledApplication> applications;
    for (const ApplicationRecord* record : index_.all())
        if (record->isDisplayed && isNative(*record)) applications.push_back(described(*record));
    sortByName(applications);
    return applications;
}

std::optional<InstalledApplication> LinuxApplications::applicationAtPath(std::string_view path) {
    const std::optional<ApplicationRecord> record = recordAtPath(path);
    if (!record || !record->isApplication) return {};
    return described(*record);
}

void LinuxApplications::indexPrograms() {
    byProgram_.clear();
    for (const ApplicationRecord* record : index_.all()) {
        if (record->program.empty() || isLauncherProgram(record->program)) continue;
        const std::string program =
            resolved(record->isBundle ? record->program : std::string(programs_.find(record->program)));
        if (program.empty() || isLauncherProgram(program)) continue;
        const auto rank = [](const ApplicationRecord* r) { return std::tuple(!r->isDisplayed, r->argumentCount); };
        const ApplicationRecord*& best = byProgram_[program];
        if (!best || rank(record) < rank(best)) best = record;
    }
    isProgramIndexFresh_ = true;
}

std::optional<InstalledApplication> LinuxApplications::applicationForProgram(std::string_view executable) {
    if (!isUsable(executable)) return {};
    refresh();
    if (!isProgramIndexFresh_) indexPrograms();
    const auto found = byProgram_.find(std::string(executable));
    if (found == byProgram_.end()) return {};
    return described(*found->second);
}

}  // namespace linux
