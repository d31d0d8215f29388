// The pane as one page of a settings application that is not ours.
//
// Such an application shows and hides a page and deletes it when the user goes elsewhere; it neither asks first nor
// waits. So the pane is asked when it is hidden. One that cannot be left yet, because a sheet of it is open, lives on
// behind the sheet, which stays a window of its own, and is left when that has ended: what is typed there is not lost.
#pragma once

#include "host/LoadedPane.h"

#include <QWidget>

#include <string>

namespace kcm {

class PanePage final : public QWidget, public platform::PaneHost {
public:
    // Empty, or the reason in words why there is no pane.
    std::string load(const std::string& bundlePath);
    // Takes the place of the destructor: takes the page out of its window, and deletes it as soon as that may be.
    void retire();

    void replyToShouldUnselect(bool mayUnselect) override;
    void entryWasRemoved(std::string_view name) override { pane_.entryWasRemoved(name); }
    void fontManagerIsMissing() override { pane_.fontManagerIsMissing(); }
    void say(const platform::ActionMessage& message) override { pane_.say(message); }
    void explain(const platform::ActionMessage& message, std::function<void()> closed) override {
        pane_.explain(message, std::move(closed));
    }
    // An area that scrolls would take the height that suits the pane best for the least that it needs.
    bool hasHeightForWidth() const override { return false; }

private:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* sheet, QEvent* event) override;
    bool waitsForSheet();

    host::HostPlatform platform_;
    host::LoadedPane pane_{platform_, *this, *this};
    QWidget* lastWindow_ = nullptr;  // for comparison only
};

}  // namespace kcm
