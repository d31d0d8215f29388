#include "tests/support/FakePlatform.h"

#include "platform/AliasClass.h"
#include "platform/Date.h"
#include "platform/PlinthRuntime.h"

#include <algorithm>

using namespace platform;

namespace fake {
namespace {

class FakeAlias final : public CVAlias {
public:
    FakeAlias(ApplicationServices& applications, std::string_view path) : applications_(applications), path_(path) {}
    std::string path() const override { return path_; }
    std::string displayName() const override { return applications_.displayName(path_); }
    std::optional<std::string> bundleIdentifier() const override { return applications_.bundleIdentifier(path_); }
    std::optional<FSRef> getFSRef() const override { return FSRef{path_, 0, 0}; }

private:
    ApplicationServices& applications_;
    std::string path_;
};

class FakeAliasClass final : public AliasClass {
public:
    std::unique_ptr<CVAlias> aliasWithPath(std::string_view path) override {
        return std::make_unique<FakeAlias>(*applications, path);
    }
    std::unique_ptr<CVAlias> aliasWithFSRef(const FSRef& reference) override { return aliasWithPath(reference.path); }
    std::string _getErrorText_text(OSStatus status, std::string_view message) override {
        return formatted("%@ <%d>", {message, status});
    }
    ApplicationServices* applications = nullptr;
};

AliasClass* makeAliasClass(const Platform& platform) {
    static FakeAliasClass sClass;
    sClass.applications = &platform.applications;
    return &sClass;
}

Journal* sRuntimeJournal = nullptr;

std::int32_t broadcast(const char* module, const char* message, const PlinthData* data) {
    sRuntimeJournal->push_back(formatted("broadcast %s %s%s", {module, message, data ? " with data" : ""}));
    return 0;
}

}  // namespace

PropertyList Preferences::copyValue(std::string_view key, std::string_view domain) {
    auto found = domains_.find(domain);
    return readable && found != domains_.end() ? found->second[key] : PropertyList();
}

PropertyList Preferences::copyDomain(std::string_view domain) {
    auto found = domains_.find(domain);
    return found == domains_.end() ? PropertyList() : found->second;
}

void Preferences::setValue(std::string_view key, PropertyList value, std::string_view domain) {
    journal_.push_back((value ? "set " : "remove ") + std::string(key));
    PropertyList& stored = domains_[std::string(domain)];
    MutableDictionary changed(stored);
    changed.set(key, std::move(value));
    stored = std::move(changed).freeze();
}

bool Preferences::synchronize(std::string_view) {
    journal_.emplace_back("synchronize");
    if (auto change = std::exchange(duringSynchronize, nullptr)) change();
    return readable;
}

void Notifications::post(std::string_view name, std::string_view object, const PropertyList& userInfo,
                         bool deliverImmediately) {
    journal_.push_back(formatted("post %@ %@%@%@",
                                 {name, object, userInfo ? " with info" : "", deliverImmediately ? " at once" : ""}));
}

std::unique_ptr<Observation> Notifications::addObserver(std::string_view name, std::string_view object,
                                                        std::function<void(const Notification&)> handler) {
    struct Held final : Observation {
        std::shared_ptr<Observer> observer;
    };
    auto held = std::make_unique<Held>();
    held->observer = std::make_shared<Observer>(Observer{std::string(name), std::string(object), std::move(handler)});
    observers_.push_back(held->observer);
    return held;
}

void Notifications::deliver(const Notification& notification) {
    auto asked = observers_;
    for (const auto& weak : asked)
        if (auto observer = weak.lock(); observer && observer->name == notification.name)
            if (observer->object.empty() || observer->object == notification.object) observer->handler(notification);
}

struct RunLoop::Pending {
    Date due;
    double interval = 0;
    bool repeats = false, valid = true;
    std::function<void()> action;
};

namespace {

class FakeTimer final : public Timer {
public:
    explicit FakeTimer(std::shared_ptr<RunLoop::Pending> pending) : pending_(std::move(pending)) {}
    ~FakeTimer() override { pending_->valid = false; }
    bool isValid() const override { return pending_->valid; }
    Date fireDate() const override { return pending_->due; }
    void setFireDate(Date date) override { pending_->due = date; }
    void invalidate() override { pending_->valid = false; }
    std::string description() const override { return "<timer>"; }

private:
    std::shared_ptr<RunLoop::Pending> pending_;
};

}  // namespace

std::unique_ptr<Timer> RunLoop::scheduleTimer(double seconds, bool repeats, std::function<void()> action) {
    auto pending =
        std::make_shared<Pending>(Pending{dateByAdding(now_, seconds), seconds, repeats, true, std::move(action)});
    pending_.push_back(pending);
    return std::make_unique<FakeTimer>(std::move(pending));
}

void RunLoop::advance(double seconds) {
    Date end = dateByAdding(now_, seconds);
    while (true) {
        std::shared_ptr<Pending> next;
        for (const auto& weak : pending_)
            if (auto pending = weak.lock(); pending && pending->valid && pending->due <= end)
                if (!next || pending->due < next->due) next = pending;
        if (!next) break;
        now_ = next->due;
        next->valid = next->repeats;
        next->due = dateByAdding(next->due, next->interval);
        next->action();
    }
    now_ = end;
}

std::optional<std::string> Bundle::resourcePath(std::string_view name, std::string_view type) const {
    std::string file = std::string(name) + "." + std::string(type);
    return resources.contains(file) ? std::optional(pathText + "/" + file) : std::nullopt;
}

std::string Bundle::localizedString(std::string_view key) const {
    auto found = strings.find(key);
    return found == strings.end() ? std::string(key) : found->second;
}

void* Bundle::functionNamed(const char* name) {
    auto found = functions.find(name);
    return found == functions.end() ? nullptr : found->second;
}

std::unique_ptr<platform::Bundle> Bundles::openBundle(std::string_view path) {
    auto found = onDisk.find(path);
    return found == onDisk.end() ? nullptr : std::make_unique<Bundle>(found->second);
}

platform::Bundle* Bundles::loadedBundle(std::string_view identifier) {
    auto found = loaded.find(identifier);
    return found == loaded.end() ? nullptr : &found->second;
}

bool Files::fileExists(std::string_view path) {
    if (path.find("Plinthworks") != std::string_view::npos) journal_.push_back("exists " + std::string(path));
    return existing.contains(path);
}

std::optional<std::string> Files::folder(FolderDomain domain, FolderKind kind) {
    if (kind == FolderKind::Temporary) return "/tmp";
    return domain == FolderDomain::User ? "/home/user/Library" : "/Library";
}

std::unique_ptr<FolderIterator> Files::openFolder(std::string_view path, FolderDetail, OSStatus& status) {
    struct Listed final : FolderIterator {
        ItemIdentity identity() const override { return {7, number}; }
        void nextBatch(std::size_t most, std::vector<FolderEntry>& batch) override {
            batch.assign(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(std::min(most, rest.size())));
            rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(batch.size()));
        }
        std::vector<FolderEntry> rest;
        std::uint64_t number = 0;
    };
    auto found = folders.find(path);
    status = found == folders.end() ? kFileNotFound : kNoErr;
    if (found == folders.end()) return nullptr;
    auto listed = std::make_unique<Listed>();
    listed->rest = found->second;
    listed->number = path.size();
    return listed;
}

const Applications::Item* Applications::at(std::string_view path) const {
    auto found = std::ranges::find(items, path, &Item::path);
    return found == items.end() ? nullptr : &*found;
}

std::optional<std::string> Applications::findApplication(const ApplicationQuery& query) {
    ++queries;
    for (const Item& item : items)
        if (item.creator == query.creator || (!query.identifier.empty() && item.identifier == query.identifier) ||
            (!query.name.empty() && item.path.ends_with("/" + query.name)))
            return item.path;
    return std::nullopt;
}

OSStatus Applications::itemInformation(std::string_view path, ItemInformation& information) {
    const Item* item = at(path);
    if (!item) return kFileNotFound;
    information = {item->flags, item->creator};
    return kNoErr;
}

std::optional<std::string> Applications::bundleIdentifier(std::string_view path) {
    const Item* item = at(path);
    return item && !item->identifier.empty() ? std::optional(item->identifier) : std::nullopt;
}

std::string Applications::displayName(std::string_view path) {
    const Item* item = at(path);
    return item ? item->name : std::string(path.substr(path.rfind('/') + 1));
}

std::string imageName(const ImageRef& image) {
    return image ? static_cast<const NamedImage&>(*image).name : std::string();
}

ImageRef Toolkit::imageAtPath(std::string_view path) {
    return std::make_shared<NamedImage>("image " + std::string(path));
}
ImageRef Toolkit::workspaceIcon(std::string_view path) {
    return std::make_shared<NamedImage>("icon of " + std::string(path));
}
ImageRef Toolkit::genericApplicationIcon() { return std::make_shared<NamedImage>("generic"); }
ImageRef Toolkit::imageByDrawing(const ImageRef& base, const ImageRef& image, const Rect& to, const Rect& from) {
    auto text = [](const Rect& r) {
        return formatted("(%g, %g, %g, %g)", {r.origin.x, r.origin.y, r.size.width, r.size.height});
    };
    return std::make_shared<NamedImage>(imageName(base) + " + " + imageName(image) + " " + text(from) + " to " +
                                        text(to));
}
void Toolkit::setApplicationIcon(const ImageRef& image) {
    if (image) journal_.push_back("host icon := " + imageName(image));
}
void Toolkit::runAlert(std::string_view title, std::string_view message) {
    journal_.push_back(formatted("alert %@: %@", {title, message}));
}

namespace {

struct ChosenFiles final : OpenPanel {
    explicit ChosenFiles(std::vector<std::string> files) : chosen(std::move(files)) {}
    std::vector<std::string> filenames() const override { return chosen; }
    std::vector<std::string> chosen;
};

}  // namespace

void Toolkit::beginOpenPanel(const OpenPanelRequest& asked, std::function<void(OpenPanel&, int)> didEnd) {
    request = asked;
    panelDidEnd = std::move(didEnd);
}

std::unique_ptr<LoadedInterface> Toolkit::loadInterface(const platform::Bundle&, std::string_view name,
                                                        InterfaceOwner& owner) {
    if (!fillInterface) return nullptr;
    fillInterface(name, owner);
    return std::make_unique<LoadedInterface>();
}

void Toolkit::endOpenPanel(const std::vector<std::string>& chosen, int returnCode) {
    ChosenFiles panel(chosen);
    if (auto handler = std::exchange(panelDidEnd, nullptr)) handler(panel, returnCode);
}

std::vector<ProcessID> Processes::runningProcesses() {
    ++walks;
    std::vector<ProcessID> all;
    for (std::size_t i = 0; i < items.size(); ++i) all.push_back(static_cast<ProcessID>(i));
    return all;
}

const Processes::Item* Processes::at(ProcessID process) const {
    auto index = static_cast<std::size_t>(process);
    return index < items.size() ? &items[index] : nullptr;
}

std::optional<std::string> Processes::bundlePath(ProcessID process) {
    const Item* item = at(process);
    return item && !item->path.empty() ? std::optional(item->path) : std::nullopt;
}

std::optional<std::string> Processes::bundleIdentifier(ProcessID process) {
    const Item* item = at(process);
    return item && !item->identifier.empty() ? std::optional(item->identifier) : std::nullopt;
}

std::optional<Date> Processes::launchDate(ProcessID process) {
    const Item* item = at(process);
    return item ? item->launched : std::nullopt;
}

std::optional<ProcessSerialNumber> Processes::serialNumber(ProcessID process) {
    if (!at(process)) return std::nullopt;
    return ProcessSerialNumber{1, static_cast<std::uint32_t>(process)};
}

bool Processes::postQuitRequest(const ProcessSerialNumber& process, std::string_view) {
    askedToQuit.push_back(process.low);
    return true;
}

std::unique_ptr<CreatedFile> Launcher::createFile(std::string_view path, OSStatus& status) {
    struct Created final : CreatedFile {
        explicit Created(Launcher& owner) : launcher(owner) {}
        OSStatus remove() override {
            launcher.journal_.emplace_back("unlock");
            return launcher.removeStatus;
        }
        Launcher& launcher;
    };
    status = createStatus;
    journal_.push_back("lock " + std::string(path));
    return status == kNoErr ? std::make_unique<Created>(*this) : nullptr;
}

OSStatus Launcher::launchApplication(std::string_view path, std::string_view argument) {
    journal_.push_back(formatted("launch %@ with %@", {path, argument}));
    return launchStatus;
}

std::optional<std::string> Dates::string(Date date, DateStyle dateStyle, DateStyle timeStyle) {
    if (fails) return std::nullopt;
    return formatted("%@ (%d/%d)", {iso8601FromDate(date), static_cast<int>(dateStyle), static_cast<int>(timeStyle)});
}

World::World() {
    paneBundle.info = PropertyList::dictionary({{"CFBundleIconFile", "Typeslate.png"}, {"CFBundleVersion", "1.2.3"}});
    paneBundle.resources = {"Typeslate.png", "can.icns"};
    files.existing.insert("/Library/Plinthworks/Typeslate.plinth");
}

void World::installAliasFramework() {
    Bundle& framework = bundles.onDisk[paneBundle.privateFrameworksPath() + "/CorvaneAdditions.framework"];
    framework.functions[kAliasFactoryName] = reinterpret_cast<void*>(&makeAliasClass);
}

void World::loadRuntime() {
    sRuntimeJournal = &journal;
    bundles.loaded["com.tarnwick.plinth"].functions["PlinthMessageBroadcast"] = reinterpret_cast<void*>(&broadcast);
}

}  // namespace fake
