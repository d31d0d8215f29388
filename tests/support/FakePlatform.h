// A platform in memory: what the pane does to it is written into one journal, in order.
#pragma once

#include "platform/Platform.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace fake {

using Journal = std::vector<std::string>;

class Preferences final : public platform::PreferenceService {
public:
    explicit Preferences(Journal& journal) : journal_(journal) {}
    platform::PropertyList copyValue(std::string_view key, std::string_view domain) override;
    platform::PropertyList copyDomain(std::string_view domain) override;
    void setValue(std::string_view key, platform::PropertyList value, std::string_view domain) override;
    bool synchronize(std::string_view domain) override;
    bool isReadable(std::string_view) override { return readable; }
    std::vector<std::string> domains() override { return {}; }

    bool readable = true;
    std::function<void()> duringSynchronize;  // another process's change, taken in by the next synchronize

private:
    Journal& journal_;
    std::map<std::string, platform::PropertyList, std::less<>> domains_;
};

class Notifications final : public platform::DistributedNotificationCenter {
public:
    explicit Notifications(Journal& journal) : journal_(journal) {}
    void post(std::string_view name, std::string_view object, const platform::PropertyList& userInfo,
              bool deliverImmediately) override;
    std::unique_ptr<platform::Observation> addObserver(
        std::string_view name, std::string_view object,
        std::function<void(const platform::Notification&)> handler) override;
    // Hands a notification to those who observe it.
    void deliver(const platform::Notification& notification);

private:
    struct Observer {
        std::string name, object;
        std::function<void(const platform::Notification&)> handler;
    };
    Journal& journal_;
    std::vector<std::weak_ptr<Observer>> observers_;
};

// Time stands still until advance() moves it, firing what falls due on the way.
class RunLoop final : public platform::RunLoop {
public:
    platform::Date now() const override { return now_; }
    std::unique_ptr<platform::Timer> scheduleTimer(double seconds, bool repeats, std::function<void()> action) override;
    void advance(double seconds);

    struct Pending;

private:
    platform::Date now_{1'000'000'000'000'000};
    std::vector<std::weak_ptr<Pending>> pending_;
};

class Bundle final : public platform::Bundle {
public:
    std::string path() const override { return pathText; }
    std::string identifier() const override { return identifierText; }
    platform::PropertyList infoValue(std::string_view key) const override { return info[key]; }
    std::optional<std::string> resourcePath(std::string_view name, std::string_view type) const override;
    std::string localizedString(std::string_view key) const override;
    std::string privateFrameworksPath() const override { return "/Pane.prefPane/Contents/PrivateFrameworks"; }
    void* functionNamed(const char* name) override;

    std::string pathText = "/Pane.prefPane";
    std::string identifierText;
    platform::PropertyList info;
    std::set<std::string> resources;
    std::map<std::string, std::string, std::less<>> strings;
    std::map<std::string, void*> functions;
};

class Bundles final : public platform::BundleServices {
public:
    std::unique_ptr<platform::Bundle> openBundle(std::string_view path) override;
    platform::Bundle* loadedBundle(std::string_view identifier) override;

    std::map<std::string, Bundle, std::less<>> onDisk;
    std::map<std::string, Bundle, std::less<>> loaded;
};

class Files final : public platform::FileServices {
public:
    explicit Files(Journal& journal) : journal_(journal) {}
    bool fileExists(std::string_view path) override;
    std::string expandTilde(std::string_view path) override { return std::string(path); }
    std::optional<std::string> folder(platform::FolderDomain domain, platform::FolderKind kind) override;
    std::unique_ptr<platform::FolderIterator> openFolder(std::string_view path, platform::FolderDetail,
                                                         platform::OSStatus& status) override;
    std::shared_ptr<const std::string> readFile(std::string_view path) override {
        auto found = contents.find(path);
        return found == contents.end() ? nullptr : std::make_shared<const std::string>(found->second);
    }

    std::set<std::string, std::less<>> existing;
    std::map<std::string, std::string, std::less<>> contents;
    std::map<std::string, std::vector<platform::FolderEntry>, std::less<>> folders;

private:
    Journal& journal_;
};

class Applications final : public platform::ApplicationServices {
public:
    struct Item {
        std::string path, name;
        platform::FourCharCode creator = platform::kUnknownCreator;
        std::string identifier;
        std::uint32_t flags = platform::ItemInformation::kIsNativeApplication;
    };
    std::optional<std::string> findApplication(const platform::ApplicationQuery& query) override;
    platform::OSStatus itemInformation(std::string_view path, platform::ItemInformation& information) override;
    std::optional<std::string> bundleIdentifier(std::string_view path) override;
    std::string displayName(std::string_view path) override;
    platform::OSStatus openApplication(std::string_view path) override {
        opened.emplace_back(path);
        return platform::kNoErr;
    }

    std::vector<std::string> opened;
    std::vector<Item> items;
    int queries = 0;

private:
    const Item* at(std::string_view path) const;
};

class System final : public platform::SystemServices {
public:
    std::optional<std::uint32_t> gestalt(platform::FourCharCode selector) override {
        return selector == platform::fourCharCode("sysv") ? version : std::nullopt;
    }
    std::uint32_t realUserID() override { return userID; }
    std::optional<std::uint32_t> version = 0x1049;
    std::uint32_t userID = 1000;
};

struct NamedImage final : platform::Image {
    explicit NamedImage(std::string text) : name(std::move(text)) {}
    std::string name;
};
std::string imageName(const platform::ImageRef& image);  // "" for none

class Toolkit final : public platform::InterfaceToolkit {
public:
    explicit Toolkit(Journal& journal) : journal_(journal) {}
    platform::ImageRef imageAtPath(std::string_view path) override;
    platform::ImageRef workspaceIcon(std::string_view path) override;
    platform::ImageRef genericApplicationIcon() override;
    platform::ImageRef applicationIcon() override { return icon; }
    void setApplicationIcon(const platform::ImageRef& image) override;
    platform::Size imageSize(const platform::ImageRef& image) override { return image ? iconSize : platform::Size{}; }
    platform::ImageRef imageByDrawing(const platform::ImageRef& base, const platform::ImageRef& image,
                                      const platform::Rect& destination, const platform::Rect& source) override;
    platform::Size iconSize{128, 128};
    void runAlert(std::string_view title, std::string_view message) override;
    void beep() override { journal_.push_back("beep"); }
    std::uint32_t currentKeyModifiers() override { return keyModifiers; }
    std::uint32_t keyModifiers = 0;
    void beginOpenPanel(const platform::OpenPanelRequest& request,
                        std::function<void(platform::OpenPanel&, int)> didEnd) override;
    void showFontPanel(int paneTag) override { journal_.push_back("font panel " + std::to_string(paneTag)); }
    void openURL(std::string_view url) override { journal_.push_back("open " + std::string(url)); }
    void openFile(std::string_view path) override { journal_.push_back("open " + std::string(path)); }
    // Fills the owner's outlets with what the test prepared; without it there are no interface files.
    std::unique_ptr<platform::LoadedInterface> loadInterface(const platform::Bundle&, std::string_view name,
                                                             platform::InterfaceOwner& owner) override;
    std::function<void(std::string_view name, platform::InterfaceOwner& owner)> fillInterface;
    // Ends the open panel as the user would.
    void endOpenPanel(const std::vector<std::string>& chosen, int returnCode);
    platform::OpenPanelRequest request;
    bool isOpenPanelOpen() const { return panelDidEnd != nullptr; }
    platform::ImageRef icon = std::make_shared<NamedImage>("host icon");

private:
    std::function<void(platform::OpenPanel&, int)> panelDidEnd;
    Journal& journal_;
};

class Log final : public platform::Log {
public:
    void write(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

class Host final : public platform::PaneHost {
public:
    explicit Host(Journal& journal) : journal_(journal) {}
    void replyToShouldUnselect(bool may) override { journal_.push_back(may ? "reply yes" : "reply no"); }

private:
    Journal& journal_;
};

// Processes as the test lists them; the first stands for this one.
class Processes final : public platform::ProcessServices {
public:
    struct Item {
        std::string path, identifier;
        std::optional<platform::Date> launched;
    };
    std::vector<platform::ProcessID> runningProcesses() override;
    platform::ProcessID currentProcess() override { return 0; }
    std::optional<platform::ProcessSerialNumber> serialNumber(platform::ProcessID process) override;
    std::optional<std::string> bundleFolder(platform::ProcessID process) override { return bundlePath(process); }
    std::optional<std::string> bundlePath(platform::ProcessID process) override;
    std::optional<std::string> bundleIdentifier(platform::ProcessID process) override;
    std::optional<platform::Date> launchDate(platform::ProcessID process) override;
    bool postQuitRequest(const platform::ProcessSerialNumber& process, std::string_view bundleIdentifier) override;
    std::vector<Item> items;
    std::vector<std::uint32_t> askedToQuit;  // low words
    int walks = 0;

private:
    const Item* at(platform::ProcessID process) const;
};

class Launcher final : public platform::Launcher {
public:
    explicit Launcher(Journal& journal) : journal_(journal) {}
    platform::OSStatus makeFolder(std::string_view) override { return folderStatus; }
    std::unique_ptr<platform::CreatedFile> createFile(std::string_view path, platform::OSStatus& status) override;
    platform::OSStatus launchApplication(std::string_view path, std::string_view argument) override;
    platform::OSStatus folderStatus = 0, createStatus = 0, launchStatus = 0, removeStatus = 0;

private:
    Journal& journal_;
};

// "2001-09-09T01:46:40.000000Z (1/2)", the styles as numbers.
class Dates final : public platform::DateFormatter {
public:
    std::optional<std::string> string(platform::Date date, platform::DateStyle dateStyle,
                                      platform::DateStyle timeStyle) override;
    bool fails = false;
};

// All of it, wired together.
struct World {
    World();

    Journal journal;
    Bundle paneBundle;
    Host host{journal};
    Preferences preferences{journal};
    Notifications notifications{journal};
    Bundles bundles;
    Files files{journal};
    Applications applications;
    System system;
    RunLoop runLoop;
    Toolkit toolkit{journal};
    Log log;
    Processes processes;
    Launcher launcher{journal};
    Dates dates;

    platform::Platform platform() {
        return {paneBundle, host,    preferences, notifications, bundles,   files,    applications,
                system,     runLoop, toolkit,     log,           processes, launcher, dates};
    }
    // Installs the private framework with the alias class in the pane's bundle.
    void installAliasFramework();
    // Loads a runtime whose messages go into the journal of the last world that did so.
    void loadRuntime();
    Journal takeJournal() { return std::exchange(journal, {}); }
};

}  // namespace fake
