// A pane taken out of its bundle and led through the four moments of its life, whatever window shows it; and below it a
// line for messages on the stored settings.
#pragma once

#include "host/HostPlatform.h"
#include "host/SettingsMessages.h"
#include "qt/controls/InterfaceLoader.h"

#include <QObject>

#include <memory>
#include <string>
#include <string_view>

namespace qt {
class MessageLine;
}

namespace host {

class LoadedPane final : private QObject {
public:
    // The pane fills the page, on whose window its sheets and alerts stand. All three outlive this object. A page that
    // is a window grows while there is a message, as far as there is room for it below; else the pane gives way.
    LoadedPane(HostPlatform& platform, platform::PaneHost& host, QWidget& page);
    ~LoadedPane() override;
    LoadedPane(const LoadedPane&) = delete;

    // Loads the pane up to mainViewDidLoad, and saves what it changed by that. Empty, or the reason in words for the
    // user why it cannot be loaded; nothing below may be called then.
    std::string load(const std::string& bundlePath);
    platform::Bundle& bundle() const { return *bundle_; }
    QWidget& root() const { return *interface_->root(); }
    platform::View* view(const std::string& name) const;

    // The three moments that come again. Each is told to the pane only where it changes something.
    void select();
    platform::UnselectReply askToLeave();
    void unselect();

    // For the host's parts of the same names.
    void entryWasRemoved(std::string_view name);
    void fontManagerIsMissing();
    void say(const platform::ActionMessage& message);
    void explain(const platform::ActionMessage& message, std::function<void()> closed);

private:
    class Owner;

    std::string loadInterface();
    void placeInterface();
    void showMessage();
    void performButton();
    void makeRoomForMessage();
    bool eventFilter(QObject* page, QEvent* event) override;

    HostPlatform& platform_;
    platform::PaneHost& host_;
    QWidget& page_;
    std::unique_ptr<platform::Bundle> bundle_;
    std::unique_ptr<SettingsMessages> messages_;
    std::unique_ptr<platform::PreferencePane> pane_;
    std::unique_ptr<Owner> owner_;
    std::unique_ptr<qt::Interface> interface_;
    qt::MessageLine* line_ = nullptr;  // the page's
    int roomMade_ = 0;                 // by which the window has grown for the line
    bool isSelected_ = false;
    bool wasElsewhere_ = false;  // the user, in another application
};

}  // namespace host
