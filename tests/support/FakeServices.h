// A platform's services in memory: what the pane does to them is written into one journal, in order.
#pragma once

#include "platform/Platform.h"
#include "propertylist/Date.h"
#include "tests/support/Check.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace fake {

using namespace platform;
using namespace propertylist;
using Journal = std::vector<std::string>;
using Log = check::RecordingLog;

// What writes into the journal.
template <typename Service>
struct Noting : Service {
    explicit Noting(Journal& journal) : journal_(journal) {}

protected:
    Journal& journal_;
};

// The value of a key; null where there is none.
auto* valueIn(auto& map, const auto& key) {
    auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}
inline std::optional<std::string> unlessEmpty(std::string text) {
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

// Is in the list for as long as it lives.
template <typename Kind, typename Base>
struct Listed : Base {
    using List = std::vector<Listed*>;
    explicit Listed(List& all) : list(all) { list.push_back(this); }
    ~Listed() override { std::erase(list, this); }
    Kind* whole() { return static_cast<Kind*>(this); }  // of a complete object only
    List& list;
};

// What is in memory and what is stored, which synchronize makes the same. The journal has what a change changes.
struct Preferences : Noting<PreferenceService> {
    using Noting::Noting;
    PropertyList copyValue(std::string_view key, std::string_view domain) override {
        return readable ? copyDomain(domain)[key] : PropertyList();
    }
    PropertyList copyDomain(std::string_view domain) override {
        Domain& found = domains_[std::string(domain)];
        MutableDictionary values(found.stored);
        for (const PreferenceChange& change : found.changes) change(values);
        return values.size() ? std::move(values).freeze() : PropertyList();
    }
    void setValue(std::string_view key, PropertyList value, std::string_view domain) override {
        journal_.push_back((value ? "set " : "remove ") + std::string(key));
        auto set = [key = std::string(key), value](MutableDictionary& values) { values.set(key, value); };
        domains_[std::string(domain)].changes.push_back(set);
    }
    void changeValues(PreferenceChange change, std::string_view domain) override {
        PropertyList before = copyDomain(domain);
        domains_[std::string(domain)].changes.push_back(std::move(change));
        PropertyList after = copyDomain(domain);
        if (before == after) journal_.emplace_back("set the same");
        for (const PropertyList::Entry& entry : after.entries())
            if (std::string_view key = entry.key.stringValue(); before[key] != entry.value)
                journal_.push_back("set " + std::string(key));
    }
    bool synchronize(std::string_view domain) override {
        journal_.emplace_back("synchronize");
        if (auto change = std::exchange(duringSynchronize, nullptr)) change();
        if (!readable || fails) return false;
        PropertyList now = copyDomain(domain);
        domains_[std::string(domain)] = {std::move(now), {}};
        if (report) report({.domain = std::string(domain)});
        return true;
    }
    bool isReadable(std::string_view) override { return readable; }
    std::optional<std::vector<std::string>> domains() override { return std::vector<std::string>(); }
    std::unique_ptr<Observation> observe(std::function<void(const PreferenceReport&)> handler) override {
        report = std::move(handler);
        return std::make_unique<Observation>();
    }

    // As another process does.
    void store(std::string_view key, PropertyList value, std::string_view domain) {
        PropertyList& stored = domains_[std::string(domain)].stored;
        MutableDictionary changed(stored);
        changed.set(key, std::move(value));
        stored = std::move(changed).freeze();
    }
    bool readable = true, fails = false;                  // fails: nothing can be saved
    std::function<void(const PreferenceReport&)> report;  // to the observer
    std::function<void()> duringSynchronize;              // another process's change, taken in by the next synchronize

private:
    struct Domain {
        PropertyList stored;
        std::vector<PreferenceChange> changes;
    };
    std::map<std::string, Domain, std::less<>> domains_;
};

struct Notifications final : Noting<DistributedNotificationCenter> {
    using Noting::Noting;
    void post(std::string_view name, std::string_view object, const PropertyList& userInfo,
              bool deliverImmediately) override {
        journal_.push_back(formatted(
            "post %@ %@%@%@", {name, object, userInfo ? " with info" : "", deliverImmediately ? " at once" : ""}));
    }
    std::unique_ptr<Observation> addObserver(std::string_view name, std::string_view object, Delivery,
                                             std::function<void(const Notification&)> handler) override {
        return std::make_unique<Observer>(observers_, std::string(name), std::string(object), std::move(handler));
    }
    // Hands a notification to those who observe it.
    void deliver(const Notification& notification) {
        for (auto* listed : std::vector(observers_))
            if (Observer* observer = listed->whole(); observer->name == notification.name)
                if (observer->object.empty() || observer->object == notification.object)
                    observer->handler(notification);
    }

private:
    struct Observer final : Listed<Observer, Observation> {
        Observer(List& all, std::string n, std::string o, std::function<void(const Notification&)> whenPosted)
            : Listed(all), name(std::move(n)), object(std::move(o)), handler(std::move(whenPosted)) {}
        const std::string name, object;
        const std::function<void(const Notification&)> handler;
    };
    Observer::List observers_;
};

// Time stands still until advance() moves it, firing what falls due on the way.
struct RunLoop final : platform::RunLoop {
    Date now() const override { return now_; }
    std::unique_ptr<Timer> scheduleTimer(double seconds, bool repeats, std::function<void()> action) override {
        return std::make_unique<FakeTimer>(*this, seconds, repeats, std::move(action));
    }
    void advance(double seconds) {
        Date end = dateByAdding(now_, seconds);
        while (true) {
            FakeTimer* next = nullptr;
            for (auto* listed : timers_)
                if (FakeTimer* timer = listed->whole(); timer->valid && timer->due <= end)
                    if (!next || timer->due < next->due) next = timer;
            if (!next) break;
            now_ = next->due;
            next->valid = next->repeats;
            next->due = dateByAdding(next->due, next->interval);
            auto action = next->action;  // which may end its own timer
            action();
        }
        now_ = end;
    }

private:
    struct FakeTimer final : Listed<FakeTimer, Timer> {
        FakeTimer(RunLoop& loop, double seconds, bool isRepeated, std::function<void()> whenDue)
            : Listed(loop.timers_),
              interval(seconds),
              repeats(isRepeated),
              action(std::move(whenDue)),
              due(dateByAdding(loop.now_, seconds)) {}
        bool isValid() const override { return valid; }
        Date fireDate() const override { return due; }
        void setFireDate(Date date) override { due = date; }
        void invalidate() override { valid = false; }
        std::string description() const override { return "<timer>"; }

        const double interval;
        const bool repeats;
        const std::function<void()> action;
        Date due;
        bool valid = true;
    };
    Date now_{1'000'000'000'000'000};
    FakeTimer::List timers_;
};

struct Bundle final : platform::Bundle {
    std::string path() const override { return pathText; }
    std::string identifier() const override { return identifierText; }
    PropertyList infoValue(std::string_view key) const override { return info[key]; }
    std::optional<std::string> resourcePath(std::string_view name, std::string_view type) const override {
        std::string file = std::string(name) + "." + std::string(type);
        return resources.contains(file) ? std::optional(pathText + "/" + file) : std::nullopt;
    }
    std::string localizedString(std::string_view key) const override {
        const std::string* found = valueIn(strings, key);
        return found ? *found : std::string(key);
    }
    std::string privateFrameworksPath() const override { return "/Pane.prefPane/Contents/PrivateFrameworks"; }
    void* functionNamed(const char* name) override {
        void** found = valueIn(functions, name);
        return found ? *found : nullptr;
    }

    std::string pathText = "/Pane.prefPane", identifierText;
    PropertyList info;
    std::set<std::string> resources;
    std::map<std::string, std::string, std::less<>> strings;
    std::map<std::string, void*, std::less<>> functions;
};

struct Bundles final : BundleServices {
    std::unique_ptr<platform::Bundle> openBundle(std::string_view path) override {
        const Bundle* found = valueIn(onDisk, path);
        return found ? std::make_unique<Bundle>(*found) : nullptr;
    }
    platform::Bundle* loadedBundle(std::string_view identifier) override { return valueIn(loaded, identifier); }

    std::map<std::string, Bundle, std::less<>> onDisk, loaded;
};

// What was written can be read again, and what the test put there; problems are the paths' own.
struct Documents final : Noting<DocumentServices> {
    using Noting::Noting;
    Document read(std::string_view path, std::size_t) override {
        const PropertyList* found = valueIn(files, path);
        return found ? Document{*found, {}} : Document{{}, "no " + std::string(path)};
    }
    std::string write(std::string_view path, const PropertyList& value) override {
        if (path.ends_with("/")) return "no folder";
        journal_.push_back("write " + std::string(path));
        files[std::string(path)] = value;
        return {};
    }
    std::map<std::string, PropertyList, std::less<>> files;
};

struct Files final : Noting<FileServices> {
    using Noting::Noting;
    bool fileExists(std::string_view path) override {
        if (path.find("Plinthworks") != std::string_view::npos) journal_.push_back("exists " + std::string(path));
        return existing.contains(path);
    }
    std::string expandTilde(std::string_view path) override { return std::string(path); }
    std::optional<std::string> folder(FolderDomain domain, FolderKind kind) override {
        if (kind == FolderKind::Temporary) return "/tmp";
        return domain == FolderDomain::User ? "/home/user/Library" : "/Library";
    }
    std::unique_ptr<FolderIterator> openFolder(std::string_view path, FolderDetail, OSStatus& status,
                                               const ItemFilter&) override {
        struct Listing final : FolderIterator {
            Listing(std::vector<FolderEntry> entries, std::uint64_t n) : rest(std::move(entries)), number(n) {}
            ItemIdentity identity() const override { return {7, number}; }
            void nextBatch(std::size_t most, std::vector<FolderEntry>& batch) override {
                auto end = rest.begin() + static_cast<std::ptrdiff_t>(std::min(most, rest.size()));
                batch.assign(rest.begin(), end);
                rest.erase(rest.begin(), end);
            }
            std::vector<FolderEntry> rest;
            std::uint64_t number;
        };
        const std::vector<FolderEntry>* found = valueIn(folders, path);
        status = found ? kNoErr : kFileNotFound;
        return found ? std::make_unique<Listing>(*found, path.size()) : nullptr;
    }
    std::shared_ptr<const std::string> readFile(std::string_view path, std::size_t, OSStatus& status) override {
        const std::string* found = valueIn(contents, path);
        status = found ? kNoErr : kFileNotFound;
        return found ? std::make_shared<const std::string>(*found) : nullptr;
    }

    std::set<std::string, std::less<>> existing;
    std::map<std::string, std::string, std::less<>> contents;
    std::map<std::string, std::vector<FolderEntry>, std::less<>> folders;
};

struct Applications final : ApplicationServices {
    struct Item {
        std::string path, name;
        FourCharCode creator = kUnknownCreator;
        std::string identifier;
        std::uint32_t flags = ItemInformation::kIsNativeApplication;
    };
    std::optional<std::string> findApplication(const ApplicationQuery& query) override {
        ++queries;
        for (const Item& item : items)
            if (item.creator == query.creator || (!query.identifier.empty() && item.identifier == query.identifier) ||
                (!query.name.empty() && item.path.ends_with("/" + query.name)))
                return item.path;
        return std::nullopt;
    }
    OSStatus itemInformation(std::string_view path, ItemInformation& information) override {
        const Item* item = at(path);
        if (item) information = {item->flags, item->creator};
        return item ? kNoErr : kFileNotFound;
    }
    std::optional<std::string> bundleIdentifier(std::string_view path) override {
        const Item* item = at(path);
        return unlessEmpty(item ? item->identifier : "");
    }
    std::string displayName(std::string_view path) override {
        const Item* item = at(path);
        return item ? item->name : std::string(path.substr(path.rfind('/') + 1));
    }
    std::vector<platform::ApplicationFacts> allApplications() override {
        std::vector<platform::ApplicationFacts> all;
        for (const Item& item : items) all.push_back({item.identifier, item.creator, item.path, item.name});
        return all;
    }
    OSStatus openApplication(std::string_view path) override {
        opened.emplace_back(path);
        return kNoErr;
    }

    std::vector<std::string> opened;
    std::vector<Item> items;
    int queries = 0;

private:
    const Item* at(std::string_view path) const {
        auto found = std::ranges::find(items, path, &Item::path);
        return found == items.end() ? nullptr : &*found;
    }
};

// Finds an expression as it stands. "?REASON" is none, at its end; a search of "$..." is given up where it would be
// found, and any that comes after the most of one expression.
struct Expressions final : ExpressionServices {
    struct Text final : Expression {
        Text(std::string_view text, int most)
            : isCostly(text.starts_with('$')), sought(text.substr(isCostly)), searchesLeft(most) {}
        Answer search(std::string_view subject) override {
            const bool isFound = subject.find(sought) != std::string_view::npos;
            if (--searchesLeft < 0 || (isFound && isCostly)) return Answer::GivenUp;
            return isFound ? Answer::Yes : Answer::No;
        }
        const bool isCostly;
        const std::string sought;
        int searchesLeft;
    };
    bool isAvailable() const override { return available; }
    std::unique_ptr<Expression> compile(std::string_view text, ExpressionProblem& problem) override {
        ++compiled;
        if (!text.starts_with('?')) return std::make_unique<Text>(text, most);
        problem = {text.size(), std::string(text.substr(1))};
        return nullptr;
    }
    bool available = true;
    int compiled = 0, most = 6000;
};

struct System final : SystemServices {
    std::optional<std::uint32_t> gestalt(FourCharCode selector) override {
        const std::uint32_t* found = valueIn(known, selector);
        return found ? std::optional(*found) : std::nullopt;
    }
    std::uint32_t realUserID() override { return userID; }
    static constexpr FourCharCode kVersion = fourCharCode("sysv");
    std::map<FourCharCode, std::uint32_t> known{{kVersion, 0x1049}};
    std::uint32_t userID = 1000;
};

// Processes as the test lists them; the first stands for this one.
struct Processes final : ProcessServices {
    struct Item {
        std::string path, identifier;
        std::optional<Date> launched;
    };
    std::vector<ProcessID> runningProcesses() override {
        std::vector<ProcessID> all;
        for (std::size_t i = 0; i < items.size(); ++i) all.push_back(static_cast<ProcessID>(i));
        return all;
    }
    ProcessID currentProcess() override { return 0; }
    std::optional<ProcessSerialNumber> serialNumber(ProcessID process) override {
        bool isThere = static_cast<std::size_t>(process) < items.size();
        return isThere ? std::optional(ProcessSerialNumber{1, static_cast<std::uint32_t>(process)}) : std::nullopt;
    }
    std::optional<std::string> bundleFolder(ProcessID process) override { return bundlePath(process); }
    std::optional<std::string> bundlePath(ProcessID process) override { return unlessEmpty(at(process).path); }
    std::optional<std::string> bundleIdentifier(ProcessID process) override {
        return unlessEmpty(at(process).identifier);
    }
    std::optional<Date> launchDate(ProcessID process) override { return at(process).launched; }
    bool postQuitRequest(const ProcessSerialNumber& process, std::string_view) override {
        askedToQuit.push_back(process.low);
        return true;
    }
    std::vector<Item> items;
    std::vector<std::uint32_t> askedToQuit;  // low words

private:
    Item at(ProcessID process) const {
        auto index = static_cast<std::size_t>(process);
        return index < items.size() ? items[index] : Item();
    }
};

struct Launcher final : Noting<platform::Launcher> {
    using Noting::Noting;
    OSStatus makeFolder(std::string_view) override { return statuses["folder"]; }
    std::unique_ptr<CreatedFile> createFile(std::string_view path, OSStatus& status) override {
        struct Created final : CreatedFile {
            explicit Created(Launcher& owner) : launcher(owner) {}
            OSStatus remove() override {
                launcher.journal_.emplace_back("unlock");
                return launcher.statuses["unlock"];
            }
            Launcher& launcher;
        };
        status = statuses["lock"];
        journal_.push_back("lock " + std::string(path));
        return status == kNoErr ? std::make_unique<Created>(*this) : nullptr;
    }
    OSStatus launchApplication(std::string_view path, std::string_view argument) override {
        journal_.push_back(formatted("launch %@ with %@", {path, argument}));
        return statuses["launch"];
    }
    std::map<std::string, OSStatus> statuses;  // of "folder", "lock", "launch" and "unlock"
};

// "2001-09-09T01:46:40.000000Z (1/2)", the styles as numbers.
struct Dates final : DateFormatter {
    std::optional<std::string> string(Date date, DateStyle dateStyle, DateStyle timeStyle) override {
        if (fails) return std::nullopt;
        return formatted("%@%@ (%d/%d)",
                         {month, iso8601FromDate(date), static_cast<int>(dateStyle), static_cast<int>(timeStyle)});
    }
    std::string month;  // in front
    bool fails = false;
};

}  // namespace fake
