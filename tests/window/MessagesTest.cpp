// Which message of the stored settings is shown when: messages.txt says what is reported, and what is seen then.
#include "host/SettingsMessages.h"
#include "tests/support/FakeServices.h"
#include "tests/support/Script.h"

using namespace platform;
using host::Message;
using Kind = PreferenceReport::Kind;
using Cause = PreferenceReport::Cause;

namespace {

struct Reporting final : fake::Preferences {
    using Preferences::Preferences;
    bool synchronize(std::string_view domain) override {
        journal_.push_back("synchronize " + std::string(domain));
        report(answer.domain == domain ? answer : PreferenceReport{.domain = std::string(domain)});
        return true;
    }
    PreferenceReport answer{.domain = ""};
};

struct Stage {
    static PreferenceReport reportOf(Words& w) {
        static const std::map<std::string, Kind> kKinds = {{"synchronized", Kind::Synchronized},
                                                           {"not-saved", Kind::NotSaved},
                                                           {"unreadable", Kind::Unreadable},
                                                           {"damaged", Kind::MovedAside}};
        static const std::map<std::string, Cause> kCauses = {{"disk-full", Cause::DiskFull},
                                                             {"read-only", Cause::ReadOnly},
                                                             {"no-permission", Cause::NoPermission},
                                                             {"held", Cause::Held},
                                                             {"held-by-nobody", Cause::Held}};
        const Kind kind = kKinds.at(w.next());
        const std::string domain = w.next(), cause = w.next();
        PreferenceReport report{kind, domain == "settings" ? "com.tarnwick.typeslate" : domain, "/p"};
        if (auto found = kCauses.find(cause); found != kCauses.end()) report.cause = found->second;
        report.detail = "detail";
        if (cause != "held") return report;
        report.holder = "other";
        report.holderProcess = 47;
        return report;
    }
    void perform(const std::string& what, Words& w) {
        if (what == "report") return service.report(reportOf(w));
        if (what == "stays") return void(service.answer = reportOf(w));
        if (what == "pass") return runLoop.advance(w.value().realValue());
        if (what == "say") return messages.sayOfAction(messageOf(w));
        if (what == "explain") return messages.explain(messageOf(w), [this] { told.emplace_back("closed"); });
        if (what == "act") return messages.userActed();
        if (what == "try") return messages.tryAgain();
        if (what == "close") return messages.closeCurrent();
        check::fail(__FILE__, __LINE__, "no such command: " + what);
    }
    std::string news() {
        std::string text;
        for (const std::string& line : std::exchange(told, {})) text += line + "\n";
        if (std::string before = std::exchange(seen, shown); seen != before) text += seen + "\n";
        return text;
    }
    static ActionMessage messageOf(Words& w) {
        ActionMessage message{w.next()};
        message.buttonTitle = w.next();
        return message;
    }
    void look() {
        const Message* message = messages.current();
        const std::map<Message::Button, std::string> kButtons = {
            {Message::Button::None, ""},
            {Message::Button::TryAgain, " [Try Again]"},
            {Message::Button::ShowInFolder, " [Show in Folder]"},
            {Message::Button::Offered, " [" + (message ? message->offer.buttonTitle : "") + "]"}};
        shown = "nothing";
        if (!message) return;
        CHECK(message->button != Message::Button::ShowInFolder || message->path == "/p");
        shown = (message->tone == Message::Tone::Warning ? "! " : ". ") + message->text + kButtons.at(message->button);
    }

    check::ScopedEnvironment language{"LC_ALL", "C"}, wish{"LANGUAGE", nullptr};
    std::string shown = "nothing", seen = shown;
    std::vector<std::string> told;
    Reporting service{told};
    fake::RunLoop runLoop;
    host::SettingsMessages messages{service, runLoop, [this] { look(); }};
};

}  // namespace

TEST(MessagesByScript) { check::play<Stage>(TEST_DATA "/messages.txt"); }
