// A window around one pane: it leads the pane through the four moments of its life.
#pragma once

#include "host/HostPlatform.h"
#include "platform/qt/InterfaceLoader.h"

#include <QWidget>

#include <memory>
#include <string>

namespace host {

class PaneWindow final : public QWidget, public platform::PaneHost {
public:
    explicit PaneWindow(HostPlatform& platform) : platform_(platform) {}
    ~PaneWindow() override;

    // Loads the pane up to mainViewDidLoad. Empty, or the reason in words for the user why it cannot be loaded.
    std::string load(const std::string& bundlePath);
    platform::View* view(const std::string& name) const;

    void replyToShouldUnselect(bool mayUnselect) override;

private:
    std::string loadInterfaceOf(platform::Bundle& bundle);
    void placeInterface();
    bool mayLeave();
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

    HostPlatform& platform_;
    std::unique_ptr<platform::Bundle> bundle_;
    std::unique_ptr<platform::PreferencePane> pane_;
    std::unique_ptr<platform::qt::Interface> interface_;
    bool isSelected_ = false;
    bool wasAllowedToLeave_ = false;
};

}  // namespace host
