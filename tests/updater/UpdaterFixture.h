// A world with a module that has an updater, and the update checker's memory of earlier tests taken away.
#pragma once

#include "TarnwickUpdater/Plinth Stuff/VersionChecking/VersionChecking.h"
#include "tests/support/Check.h"
#include "tests/support/FakePlatform.h"

inline constexpr const char* kModule = "/home/user/Library/Plinthworks/Typeslate.plinth";
inline constexpr const char* kUpdater = "/home/user/Library/Plinthworks/Typeslate.plinth/Tarnwick Updater.app";
inline constexpr const char* kDomain = "com.tarnwick.typeslate";

struct UpdaterFixture {
    fake::World world;
    platform::Platform platform = world.platform();
    twvc::UpdateServices services = twvc::UpdateServices::of(platform);

    UpdaterFixture() {
        twvc::gBundleName.clear();
        twvc::gLogStuff = false;
        twvc::sBCDSystemVersion = 0;
        addBundle("/home/user/Library/Plinthworks", "Typeslate.plinth", kDomain);
        module().info = platform::PropertyList::dictionary(
            {{"CFBundleName", "Typeslate"}, {"CFBundleExecutable", "tslate"}, {"CFBundleShortVersionString", "1.0"}});
        module().resources = {"Tarnwick Updater.app"};
        world.files.folders[kUpdater] = {};
    }
    platform::FolderEntry& addBundle(const std::string& folder, const std::string& name,
                                     const std::string& identifier) {
        fake::Bundle& bundle = world.bundles.onDisk[folder + "/" + name];
        bundle.pathText = folder + "/" + name;
        bundle.identifierText = identifier;
        return world.files.folders[folder].emplace_back(
            platform::FolderEntry{name, platform::ItemKind::Folder, false, {}, {}});
    }

    fake::Bundle& module() { return world.bundles.onDisk[kModule]; }
    platform::OSStatus check(bool fromModule, platform::FSRef* launched = nullptr) {
        auto bundle = world.bundles.openBundle(kModule);
        return twvc::checkForUpdate(services, bundle.get(), fromModule, launched);
    }
    std::vector<std::string> takeLog() { return std::exchange(world.log.lines, {}); }
};
