// A pane taken out of its bundle and led through the four moments of its life, whatever window shows it.
#pragma once

#include "host/HostPlatform.h"
#include "qt/controls/InterfaceLoader.h"

#include <memory>
#include <string>

namespace host {

class LoadedPane {
public:
    // The pane fills the page, on whose window its sheets and alerts stand. All three outlive this object.
    LoadedPane(HostPlatform& platform, platform::PaneHost& host, QWidget& page)
        : platform_(platform), host_(host), page_(page) {}
    ~LoadedPane();
    LoadedPane(const LoadedPane&) = delete;

    // Loads the pane up to mainViewDidLoad. Empty, or the reason in words for the user why it cannot be loaded; nothing
    // below may be called then.
    std::string load(const std::string& bundlePath);
    platform::Bundle& bundle() const { return *bundle_; }
    QWidget& root() const { return *interface_->root(); }
    platform::View* view(const std::string& name) const;

    // The three moments that come again. Each is told to the pane only where it changes something.
    void select();
    platform::UnselectReply askToLeave();
    void unselect();

private:
    std::string loadInterface();
    void placeInterface();

    HostPlatform& platform_;
    platform::PaneHost& host_;
    QWidget& page_;
    std::unique_ptr<platform::Bundle> bundle_;
    std::unique_ptr<platform::PreferencePane> pane_;
    std::unique_ptr<qt::Interface> interface_;
    bool isSelected_ = false;
};

}  // namespace host
