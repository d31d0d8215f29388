#include "host/SettingsMessages.h"

#include "linux/texts/Localized.h"
#include "platform/LoginItems.h"
#include "settings/EntryList.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace host {

using namespace platform;
using linux::localized;
using linux::localizedFormat;
using Kind = PreferenceReport::Kind;
using Cause = PreferenceReport::Cause;

namespace {

bool isLoginItems(const PreferenceReport& report) { return report.domain == kLoginWindowDomain; }
bool isSettings(const PreferenceReport& report) { return report.domain == settings::kSettingsDomain; }

std::string whyNot(const PreferenceReport& report) {
    switch (report.cause) {
        case Cause::DiskFull:
            return localized("The disk is full.");
        case Cause::ReadOnly:
            return localizedFormat("%@ is on a disk that can only be read.", report.path);
        case Cause::NoPermission:
            return localizedFormat("You do not have permission for %@.", report.path);
        case Cause::Held:
            return report.holder.empty()
                       ? localized("Another program keeps the file locked.")
                       : localizedFormat("%@ (process %d) keeps the file locked.", report.holder, report.holderProcess);
        case Cause::Other:
            break;
    }
    return localizedFormat("The system says: %@", report.detail);
}

std::string notSaved(const PreferenceReport& report) {
    std::string what = isSettings(report)     ? localized("Your changes are not saved yet.")
                       : isLoginItems(report) ? localized("The changed login items are not saved yet.")
                                              : localizedFormat("%@ is not saved yet.", report.domain);
    return localizedFormat("%@ %@", what, whyNot(report));
}

std::string unreadable(const PreferenceReport& report) {
    std::string what = isLoginItems(report) ? localized("The stored login items cannot be read.")
                                            : localized("The stored settings cannot be read.");
    return localizedFormat("%@ %@", what, whyNot(report));
}

std::string movedAside(const PreferenceReport& report) {
    return isLoginItems(report)
               ? localizedFormat("The list of login items was damaged and starts empty. The old file is now %@.",
                                 report.path)
               : localizedFormat("The settings were damaged and start anew. The old file is now %@.", report.path);
}

std::string ofAction(const PreferenceReport& report) { return report.detail; }

}  // namespace

struct SettingsMessages::Matter {
    Kind kind;
    bool waits;        // for a synchronize, which ends it
    bool ofAnyDomain;  // else of the settings and the login items only
    Message::Tone tone;
    Message::Button button;
    std::string (*text)(const PreferenceReport& report);
};

// What stands further up is shown first. The last two are the pane's own and of no domain: what became of the user's
// last action, and what holds all the time.
const SettingsMessages::Matter SettingsMessages::kMatters[] = {
    {Kind::NotSaved, true, true, Message::Tone::Warning, Message::Button::TryAgain, notSaved},
    {Kind::Unreadable, true, false, Message::Tone::Warning, Message::Button::TryAgain, unreadable},
    {Kind::MovedAside, false, false, Message::Tone::Warning, Message::Button::ShowInFolder, movedAside},
    {Kind::Synchronized, false, true, Message::Tone::Information, Message::Button::None, ofAction},
    {Kind::Synchronized, false, true, Message::Tone::Information, Message::Button::None, ofAction},
};
const SettingsMessages::Matter& SettingsMessages::kOfAction = *(std::end(kMatters) - 2);
const SettingsMessages::Matter& SettingsMessages::kAlways = *(std::end(kMatters) - 1);

SettingsMessages::SettingsMessages(PreferenceService& preferences, RunLoop& runLoop, std::function<void()> hasChanged)
    : preferences_(preferences),
      runLoop_(runLoop),
      hasChanged_(std::move(hasChanged)),
      observation_(preferences.observe([this](const PreferenceReport& report) { hear(report); })) {}

SettingsMessages::~SettingsMessages() = default;

const Message* SettingsMessages::current() const {
    for (const auto& [place, notice] : notices_)
        if (!notice.isClosed) return &notice.message;
    return nullptr;
}

void SettingsMessages::hear(const PreferenceReport& report) {
    bool endsWaiting = report.kind != Kind::MovedAside;  // which comes on the way to a synchronize's end
    for (const Matter& matter : kMatters)
        if (endsWaiting && matter.waits && matter.kind != report.kind) notices_.erase({&matter, report.domain});
    if (report.kind != Kind::Synchronized) put(*std::ranges::find(kMatters, report.kind, &Matter::kind), report);
    tell();
}

void SettingsMessages::put(const Matter& matter, const PreferenceReport& report) {
    if (!matter.ofAnyDomain && !isSettings(report) && !isLoginItems(report)) return;
    Notice& notice = notices_[{&matter, report.domain}];
    if (!isRetrying_ || notice.cause != report.cause) notice.isClosed = false;
    notice.cause = report.cause;
    notice.message = {matter.tone, matter.button, matter.text(report), report.path};
}

bool SettingsMessages::waits() const {
    return std::ranges::any_of(notices_, [](const auto& each) { return each.first.first->waits; });
}

void SettingsMessages::tell() {
    if (!waits())
        retryTimer_.reset();
    else if (!retryTimer_)
        retryTimer_ = runLoop_.scheduleTimer(kRetryPause, true, [this] { tryAgain(); });
    hasChanged_();
}

SettingsMessages::Notice& SettingsMessages::putMessage(const Matter& matter, const ActionMessage& message) {
    put(matter, {.domain = {}, .detail = message.text});
    Notice& notice = notices_[{&matter, {}}];
    if (!message.buttonTitle.empty()) notice.message.button = Message::Button::Offered;
    notice.message.offer = message;
    return notice;
}

void SettingsMessages::sayOfAction(const ActionMessage& message) {
    putMessage(kOfAction, message);
    tell();
}

void SettingsMessages::explain(const ActionMessage& message, std::function<void()> closed) {
    putMessage(kAlways, message).closed = std::move(closed);
    tell();
}

void SettingsMessages::userActed() {
    if (notices_.erase({&kOfAction, {}})) tell();
}

// Each synchronize reports how it ended, and so changes the list.
void SettingsMessages::tryAgain() {
    std::vector<std::string> domains;
    for (const auto& [place, notice] : notices_)
        if (place.first->waits) domains.push_back(place.second);
    isRetrying_ = true;
    for (const std::string& domain : domains) preferences_.synchronize(domain);
    isRetrying_ = false;
}

void SettingsMessages::closeCurrent() {
    auto shown = std::ranges::find_if(notices_, [](const auto& each) { return !each.second.isClosed; });
    if (shown == notices_.end()) return;
    shown->second.isClosed = true;
    const std::function<void()> closed = shown->second.closed;
    if (!shown->first.first->waits) notices_.erase(shown);
    if (closed) closed();
    tell();
}

}  // namespace host
