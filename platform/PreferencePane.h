// The contract between a host settings application and a pane.
//
// A pane's bundle exports the C function named by "NSPrincipalClass" in its Info.plist, of type PreferencePaneFactory.
// The host calls, in this order: the factory, mainNibName, (it loads that interface file from the pane's bundle with
// the pane as owner) awakeFromNib, mainViewDidLoad; then willSelect each time the pane is shown, and shouldUnselect and
// willUnselect each time the user leaves it. All on the main thread. What the pane has changed without saving it the
// host saves once the interface has loaded, and at its end.
#pragma once

#include "platform/Controls.h"

#include <functional>
#include <string>
#include <string_view>

namespace platform {

struct Platform;

enum class UnselectReply : unsigned char { Cancel = 0, Now = 1, Later = 2 };

class PreferencePane : public InterfaceOwner {
public:
    virtual std::string mainNibName() = 0;
    virtual void awakeFromNib() = 0;
    virtual void mainViewDidLoad() = 0;
    virtual void willSelect() = 0;
    // Later: the pane gives its answer through PaneHost::replyToShouldUnselect.
    virtual UnselectReply shouldUnselect() = 0;
    virtual void willUnselect() = 0;
    // The host's window has become the active one: the user may have changed something elsewhere.
    virtual void hostDidBecomeActive() = 0;
};

// What became of something that the user did in the pane, in the user's language, and what may be done about it.
struct ActionMessage {
    std::string text;
    std::string buttonTitle = {}, buttonHint = {};  // without a title there is no button
    std::function<void()> perform = {};             // what the button does; not called after the pane has gone
};

class PaneHost {
public:
    virtual ~PaneHost() = default;
    virtual void replyToShouldUnselect(bool mayUnselect) = 0;
    // Nothing was done to the entry of that name, because another program had removed it.
    virtual void entryWasRemoved(std::string_view name) = 0;
    // Nothing was opened for the user's font collections: no font manager was found, or it does not start.
    virtual void fontManagerIsMissing() {}
    // Said until the user acts again in the pane, or closes it.
    virtual void say(const ActionMessage& /*message*/) {}
    // Said for as long as the pane is shown, whenever nothing else is, until the user closes it: `closed` is called
    // then. A later one takes its place.
    virtual void explain(const ActionMessage& /*message*/, std::function<void()> /*closed*/) {}
};

// The host owns the pane and deletes it before anything that the Platform refers to.
using PreferencePaneFactory = PreferencePane* (*)(const Platform&);

}  // namespace platform
