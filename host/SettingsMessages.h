// What the window of a pane has to say of the stored settings: which of several messages is shown, when each goes, and
// trying again what could not be done. Hears of it from the preference service.
#pragma once

#include "platform/PreferencePane.h"
#include "platform/Preferences.h"
#include "platform/RunLoop.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace host {

struct Message {
    enum class Tone { Information, Warning };
    enum class Button { None, TryAgain, ShowInFolder, Offered };

    Tone tone = Tone::Information;
    Button button = Button::None;        // beside the one that closes it
    std::string text = {};               // plain, in the user's language
    std::string path = {};               // of the file that it is about; empty for none
    platform::ActionMessage offer = {};  // Offered: the button's texts, and what it does
};

class SettingsMessages {
public:
    // While something is not saved or cannot be read it is tried again after that many seconds, again and again.
    static constexpr double kRetryPause = 1.0;

    // `hasChanged` is called whenever current() may answer something else than before, from within the service's
    // synchronize too. The service and the run loop outlive this object.
    SettingsMessages(platform::PreferenceService& preferences, platform::RunLoop& runLoop,
                     std::function<void()> hasChanged);
    ~SettingsMessages();

    const Message* current() const;  // null when there is nothing to say; good until the next call

    // What became of the user's last action.
    void sayOfAction(const platform::ActionMessage& message);
    // Below everything else, until it is closed.
    void explain(const platform::ActionMessage& message, std::function<void()> closed);
    void userActed();  // in the pane: what was said of the action before is said no more
    void tryAgain();
    // Until it comes to another failure, or to the same one by an action of the user's.
    void closeCurrent();

private:
    struct Matter;
    struct Notice {
        platform::PreferenceReport::Cause cause = platform::PreferenceReport::Cause::Other;
        bool isClosed = false;
        Message message = {};
        std::function<void()> closed = {};
    };
    // By precedence; several domains may have the same trouble.
    using Place = std::pair<const Matter*, std::string>;

    void hear(const platform::PreferenceReport& report);
    void put(const Matter& matter, const platform::PreferenceReport& report);
    Notice& putMessage(const Matter& matter, const platform::ActionMessage& message);
    bool waits() const;
    void tell();

    static const Matter kMatters[];
    static const Matter &kOfAction, &kAlways;

    platform::PreferenceService& preferences_;
    platform::RunLoop& runLoop_;
    const std::function<void()> hasChanged_;
    std::map<Place, Notice> notices_;
    std::unique_ptr<platform::Timer> retryTimer_;
    bool isRetrying_ = false;
    std::unique_ptr<platform::Observation> observation_;
};

}  // namespace host
