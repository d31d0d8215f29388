#include "tests/support/FakePlatform.h"

#include "platform/AliasClass.h"
#include "platform/PlinthRuntime.h"

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
