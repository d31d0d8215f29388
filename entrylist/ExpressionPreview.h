// The line in the sheet for expressions that says, while one is typed, which of the installed applications it matches,
// or why it matches none.
//
// It only tells: what may be stored is not its business.
#pragma once

#include "platform/Outlet.h"
#include "platform/Platform.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace entrylist {

// What an expression comes to among applications, in their order.
struct ExpressionMatches {
    std::optional<platform::ExpressionProblem> problem;    // it is none; nothing was searched
    std::vector<const platform::ApplicationFacts*> found;  // of those that were given
    const platform::ApplicationFacts* costly = nullptr;    // where programs would give it up, too
    bool isCutShort = false;  // there, or as it had cost enough; those behind were not tried
    const std::string platform::ApplicationFacts::*fact;  // what the kind compares; null: nothing
};

// The kinds are numbered as entries store them. A kind that is none matches nothing, and neither does an application
// that lacks what would be compared. Takes bounded time for every expression, and for ordinary ones some microseconds
// for each application.
ExpressionMatches matchesOf(platform::ExpressionServices& expressions, std::string_view text, int kind,
                            std::span<const platform::ApplicationFacts> applications);

class ExpressionPreview {
public:
    // What is referred to outlives it. Nothing is shown where the expression services are not available.
    ExpressionPreview(const platform::Platform& platform, const Outlet<platform::TextField>& expression,
                      const Outlet<platform::PopUpButton>& kind)
        : platform_(platform), expression_(expression), kind_(kind) {}

    // False for names that are not its own: the line "regexMatches", and "previewExpression:" for each change.
    bool setOutlet(std::string_view name, platform::View& object);
    bool performAction(std::string_view selector);

    // The sheet is shown with an expression, and is not any more. The applications are listed once in between, at the
    // latest for the first change.
    void start();
    void end();

private:
    void show();
    void list();
    void say(const std::string& line, const std::string& details = {});
    std::string inWords(const ExpressionMatches& matches) const;
    std::string details(const ExpressionMatches& matches) const;
    std::string text(std::string_view key) const { return platform_.paneBundle.localizedString(key); }

    const platform::Platform& platform_;
    const Outlet<platform::TextField>& expression_;
    const Outlet<platform::PopUpButton>& kind_;
    Outlet<platform::TextField> line_;
    std::optional<std::vector<platform::ApplicationFacts>> applications_;  // while the sheet is open
    std::unique_ptr<platform::Timer> starting_;
};

}  // namespace entrylist
