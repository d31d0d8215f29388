// The parts of the platform on Linux with Qt, put together for a pane.
#pragma once

#include "platform/Platform.h"

#include <memory>

class QWidget;

namespace host {

class HostPlatform {
public:
    HostPlatform();
    ~HostPlatform();
    HostPlatform(const HostPlatform&) = delete;

    // For the pane of this bundle, which outlives it as this object does.
    platform::Platform forPane(platform::Bundle& bundle, platform::PaneHost& host);
    // The toolkit's alerts stand on this window; null: on none.
    void setWindow(QWidget* window);
    platform::BundleServices& bundles();
    platform::PreferenceService& preferences();

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace host
