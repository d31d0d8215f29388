// A window around one pane. Ctrl+W and Ctrl+Q close it, as its title bar does.
#pragma once

#include "host/LoadedPane.h"

#include <QWidget>

#include <string>

namespace host {

class PaneWindow final : public QWidget, public platform::PaneHost {
public:
    explicit PaneWindow(HostPlatform& platform);

    // Loads the pane up to mainViewDidLoad. Empty, or the reason in words for the user why it cannot be loaded.
    std::string load(const std::string& bundlePath);
    platform::View* view(const std::string& name) const { return pane_.view(name); }

    void replyToShouldUnselect(bool mayUnselect) override;
    void entryWasRemoved(std::string_view name) override { pane_.entryWasRemoved(name); }
    void fontManagerIsMissing() override { pane_.fontManagerIsMissing(); }
    void say(const platform::ActionMessage& message) override { pane_.say(message); }
    void explain(const platform::ActionMessage& message, std::function<void()> closed) override {
        pane_.explain(message, std::move(closed));
    }

private:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void growToFit();

    LoadedPane pane_;
    QSize ownSize_;  // what it has unless the user chooses, or another is remembered
    bool wasAllowedToLeave_ = false;
};

}  // namespace host
