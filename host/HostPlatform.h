// The parts of the platform on Linux with Qt, put together for a pane. Needs an application object; for the main
// thread.
#pragma once

#include "platform/Platform.h"

#include <memory>

class QWidget;

namespace qt {
class QtToolkit;
}

namespace host {

class HostPlatform {
public:
    HostPlatform();
    ~HostPlatform();  // saves changes
    HostPlatform(const HostPlatform&) = delete;

    // For the pane of this bundle and this host, which outlive the pane, as this object does. The toolkit speaks with
    // the texts of the last bundle that was handed in.
    platform::Platform forPane(platform::Bundle& bundle, platform::PaneHost& host);
    // The toolkit's alerts stand on this window; null: on none.
    void setWindow(QWidget* window);
    platform::BundleServices& bundles();
    platform::PreferenceService& preferences();
    platform::RunLoop& runLoop();
    qt::QtToolkit& toolkit();
    // What was set in the preferences and not yet synchronised is written.
    void saveChanges();

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace host
