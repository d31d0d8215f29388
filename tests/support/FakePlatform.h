// A platform in memory: the toolkit, the host and the services in one world.
#pragma once

#include "platform/AliasClass.h"
#include "platform/PlinthRuntime.h"
#include "tests/support/FakeServices.h"

namespace fake {

struct NamedImage final : Image {
    explicit NamedImage(std::string text) : name(std::move(text)) {}
    std::string name;
};
inline ImageRef imageNamed(const std::string& name) { return std::make_shared<NamedImage>(name); }
// "" for none.
inline std::string imageName(const ImageRef& image) {
    return image ? static_cast<const NamedImage&>(*image).name : std::string();
}

struct Toolkit final : Noting<platform::InterfaceToolkit> {
    using Noting::Noting;
    ImageRef imageAtPath(std::string_view path) override { return imageNamed("image " + std::string(path)); }
    ImageRef workspaceIcon(std::string_view path) override { return imageNamed("icon of " + std::string(path)); }
    ImageRef genericApplicationIcon() override { return imageNamed("generic"); }
    ImageRef applicationIcon() override { return icon; }
    void setApplicationIcon(const ImageRef& image) override {
        if (image) journal_.push_back("host icon := " + imageName(image));
    }
    Size imageSize(const ImageRef& image) override { return image ? iconSize : Size{}; }
    ImageRef imageByDrawing(const ImageRef& base, const ImageRef& image, const Rect& to, const Rect& from) override {
        auto text = [](const Rect& r) {
            return formatted("(%g, %g, %g, %g)", {r.origin.x, r.origin.y, r.size.width, r.size.height});
        };
        return imageNamed(imageName(base) + " + " + imageName(image) + " " + text(from) + " to " + text(to));
    }
    Size iconSize{128, 128};
    void runAlert(std::string_view title, std::string_view message) override {
        journal_.push_back(formatted("alert %@: %@", {title, message}));
    }
    void beep() override { journal_.push_back("beep"); }
    std::uint32_t currentKeyModifiers() override { return keyModifiers; }
    std::uint32_t keyModifiers = 0;
    std::string clipboard(std::string_view) override { return copied; }
    void setClipboard(std::string_view, std::string_view content) override { copied = content; }
    std::string copied;
    void beginOpenPanel(const OpenPanelRequest& asked, std::function<void(OpenPanel&, int)> didEnd) override {
        request = asked;
        panelDidEnd = std::move(didEnd);
    }
    // The user's answers are there before he is asked.
    void beginChoice(const ChoiceRequest& asked, std::function<void(int)> didEnd) override {
        for (const std::string& each : asked.choices) journal_.push_back("choice " + each);
        didEnd(choice);
    }
    void beginSavePanel(const SavePanelRequest&, std::function<void(const std::string&)> didEnd) override {
        didEnd(savePath);
    }
    int choice = -1;
    std::string savePath;
    void beginImportSheet(ImportRequest asked,
                          std::function<void(const std::optional<ImportAnswer>&)> didEnd) override {
        import = std::move(asked);
        importDidEnd = std::move(didEnd);
    }
    ImportRequest import;
    std::function<void(const std::optional<ImportAnswer>&)> importDidEnd;
    void showFontPanel(int paneTag) override { journal_.push_back("font panel " + std::to_string(paneTag)); }
    void openURL(std::string_view url, std::string_view copy) override {
        journal_.push_back("open " + std::string(url) + (copy.empty() ? "" : ", else " + std::string(copy)));
    }
    void openFile(std::string_view path) override { journal_.push_back("open " + std::string(path)); }
    // Fills the owner's outlets with what the test prepared; without it there are no interface files.
    std::unique_ptr<LoadedInterface> loadInterface(const platform::Bundle&, std::string_view name,
                                                   InterfaceOwner& owner) override {
        if (!fillInterface) return nullptr;
        fillInterface(name, owner);
        return std::make_unique<LoadedInterface>();
    }
    std::function<void(std::string_view name, InterfaceOwner& owner)> fillInterface;
    // Ends the open panel as the user would.
    void endOpenPanel(const std::vector<std::string>& chosen, int returnCode) {
        struct ChosenFiles final : OpenPanel {
            std::vector<std::string> filenames() const override { return files; }
            std::vector<std::string> files;
        } panel;
        panel.files = chosen;
        if (auto handler = std::exchange(panelDidEnd, nullptr)) handler(panel, returnCode);
    }
    OpenPanelRequest request;
    bool isOpenPanelOpen() const { return panelDidEnd != nullptr; }
    ImageRef icon = imageNamed("host icon");

private:
    std::function<void(OpenPanel&, int)> panelDidEnd;
};

struct Host final : Noting<platform::PaneHost> {
    using Noting::Noting;
    void replyToShouldUnselect(bool may) override { journal_.push_back(may ? "reply yes" : "reply no"); }
    void entryWasRemoved(std::string_view name) override { journal_.push_back("gone " + std::string(name)); }
    void fontManagerIsMissing() override { journal_.push_back("no font manager"); }
    void say(const ActionMessage& message) override { said = message; }
    void explain(const ActionMessage& message, std::function<void()> whenClosed) override {
        explained = message;
        closed = std::move(whenClosed);
    }
    ActionMessage explained;
    std::function<void()> closed;
    ActionMessage said;
};

struct FakeAlias final : CVAlias {
    FakeAlias(ApplicationServices& applications, std::string_view path) : applications_(applications), path_(path) {}
    std::string path() const override { return path_; }
    std::string displayName() const override { return applications_.displayName(path_); }
    std::optional<std::string> bundleIdentifier() const override { return applications_.bundleIdentifier(path_); }
    std::optional<FSRef> getFSRef() const override { return FSRef{path_, 0, 0}; }

private:
    ApplicationServices& applications_;
    std::string path_;
};

struct FakeAliasClass final : AliasClass {
    std::unique_ptr<CVAlias> aliasWithPath(std::string_view path) override {
        return std::make_unique<FakeAlias>(*applications, path);
    }
    std::unique_ptr<CVAlias> aliasWithFSRef(const FSRef& reference) override { return aliasWithPath(reference.path); }
    std::string _getErrorText_text(OSStatus status, std::string_view message) override {
        return formatted("%@ <%d>", {message, status});
    }
    ApplicationServices* applications = nullptr;
};

inline AliasClass* makeAliasClass(const Platform& platform) {
    static FakeAliasClass sClass;
    sClass.applications = &platform.applications;
    return &sClass;
}

inline Journal* sRuntimeJournal = nullptr;

inline std::int32_t broadcast(const char* module, const char* message, const PlinthData* data) {
    sRuntimeJournal->push_back(formatted("broadcast %s %s%s", {module, message, data ? " with data" : ""}));
    return 0;
}

// All of it, wired together.
struct World {
    World() {
        paneBundle.info =
            PropertyList::dictionary({{"CFBundleIconFile", "Typeslate.png"}, {"CFBundleVersion", "1.2.3"}});
        paneBundle.resources = {"Typeslate.png", "can.icns"};
        files.existing.insert("/Library/Plinthworks/Typeslate.plinth");
    }

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
    Documents documents{journal};
    Expressions expressions;

    platform::Platform platform() {
        return {paneBundle, host,    preferences, notifications, bundles,  files, applications, system,
                runLoop,    toolkit, log,         processes,     launcher, dates, documents,    expressions};
    }
    // Installs the private framework with the alias class in the pane's bundle.
    void installAliasFramework() {
        Bundle& framework = bundles.onDisk[paneBundle.privateFrameworksPath() + "/CorvaneAdditions.framework"];
        framework.functions[kAliasFactoryName] = reinterpret_cast<void*>(&makeAliasClass);
    }
    // Loads a runtime whose messages go into the journal of the last world that did so.
    void loadRuntime() {
        sRuntimeJournal = &journal;
        bundles.loaded["com.tarnwick.plinth"].functions["PlinthMessageBroadcast"] = reinterpret_cast<void*>(&broadcast);
    }
    Journal takeJournal() { return std::exchange(journal, {}); }
};

}  // namespace fake
