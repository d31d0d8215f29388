// The private framework of the pane's bundle: alias records for applications, and the texts of errors.
#include "platform/AliasClass.h"
#include "platform/Platform.h"

#include <sys/stat.h>

#include <map>

namespace linux {

using namespace platform;

namespace {

class ApplicationAlias final : public CVAlias {
public:
    ApplicationAlias(ApplicationServices& applications, std::string_view path)
        : applications_(applications), path_(path) {}

    std::string path() const override { return path_; }
    std::string displayName() const override { return applications_.displayName(path_); }
    std::optional<std::string> bundleIdentifier() const override { return applications_.bundleIdentifier(path_); }
    std::optional<FSRef> getFSRef() const override {
        struct stat status {};
        if (stat(path_.c_str(), &status) != 0) return std::nullopt;
        return FSRef{path_, status.st_dev, status.st_ino};
    }

private:
    ApplicationServices& applications_;
    std::string path_;
};

class ApplicationAliasClass final : public AliasClass {
public:
    explicit ApplicationAliasClass(ApplicationServices& applications) : applications_(applications) {}

    std::unique_ptr<CVAlias> aliasWithPath(std::string_view path) override {
        return std::make_unique<ApplicationAlias>(applications_, path);
    }
    std::unique_ptr<CVAlias> aliasWithFSRef(const FSRef& reference) override { return aliasWithPath(reference.path); }
    std::string _getErrorText_text(OSStatus status, std::string_view message) override {
        if (status == kNoErr) return std::string(message);
        return formatted("%@\n\n%@ (%d)", {message, statusText(status), status});
    }

private:
    ApplicationServices& applications_;
};

}  // namespace
}  // namespace linux

// One class object for each set of services, kept for the life of the process: a host may make and end several panes,
// as System Settings does each time the page is opened, and a class serves none but its own.
extern "C" __attribute__((visibility("default"))) platform::AliasClass* CVAlias(const platform::Platform& platform) {
    static std::map<platform::ApplicationServices*, linux::ApplicationAliasClass> sClasses;
    platform::ApplicationServices& applications = platform.applications;
    return &sClasses.try_emplace(&applications, applications).first->second;
}
