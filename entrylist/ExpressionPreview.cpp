#include "entrylist/ExpressionPreview.h"

#include "entrylist/ExpressionWords.h"
#include "entrylist/Outlets.h"
#include "propertylist/Format.h"
#include "settings/EntryList.h"

#include <algorithm>

using namespace platform;

namespace entrylist {
namespace {

using Answer = Expression::Answer;

// The searches of one expression have one budget together, as those for one application have. So an expression that has
// used it up is compiled anew: as often as ordinary ones need it for so many applications, and twice for costly ones.
constexpr std::size_t kSearchesOfOne = 5'000;
constexpr std::size_t kExtra = 2;

constexpr double kPause = 0.01;             // seconds, for the sheet to come up first
constexpr std::size_t kNamesInLine = 60;    // characters
constexpr std::size_t kNameInToolTip = 80;  // characters of each
constexpr std::size_t kMostInToolTip = 20;  // applications

}  // namespace

ExpressionMatches matchesOf(ExpressionServices& expressions, std::string_view text, int kind,
                            std::span<const ApplicationFacts> applications) {
    ExpressionMatches matches{{}, {}, nullptr, false, settings::factOfKind<ApplicationFacts>(kind)};
    ExpressionProblem problem;
    std::unique_ptr<Expression> expression = expressions.compile(text, problem);
    if (!expression) matches.problem = std::move(problem);
    if (!expression || !matches.fact) return matches;
    std::size_t renewals = kExtra + applications.size() / kSearchesOfOne;
    for (const ApplicationFacts& application : applications) {
        const std::string_view subject = application.*matches.fact;
        if (subject.empty()) continue;
        Answer answer = expression->search(subject);
        if (answer == Answer::GivenUp && renewals > 0) {
            --renewals;
            expression = expressions.compile(text, problem);
            answer = expression->search(subject);
            if (answer == Answer::GivenUp) matches.costly = &application;
        }
        matches.isCutShort = answer == Answer::GivenUp;
        if (matches.isCutShort) break;
        if (answer == Answer::Yes) matches.found.push_back(&application);
    }
    return matches;
}

bool ExpressionPreview::setOutlet(std::string_view name, View& object) {
    static constexpr NamedOutlet<ExpressionPreview> kOutlets[] = {
        {"regexMatches", [](ExpressionPreview& p, View& o) { p.line_.connect(o); }},
    };
    return connectNamed(*this, kOutlets, name, object);
}

bool ExpressionPreview::performAction(std::string_view selector) {
    static constexpr NamedAction<ExpressionPreview> kActions[] = {{"previewExpression:", &ExpressionPreview::show}};
    return performNamed(*this, kActions, selector);
}

void ExpressionPreview::start() {
    say({});
    if (!platform_.expressions.isAvailable()) return;
    starting_ = platform_.runLoop.scheduleTimer(kPause, false, [this] { show(); });
}

void ExpressionPreview::end() {
    starting_.reset();
    applications_.reset();
}

void ExpressionPreview::show() {
    if (!platform_.expressions.isAvailable()) return;
    starting_.reset();
    if (!applications_) applications_ = platform_.applications.allApplications();
    const std::string expression = expression_->stringValue();
    if (expression.empty()) return say({});
    const ExpressionMatches matches =
        matchesOf(platform_.expressions, expression, kind_->selectedRow(), *applications_);
    if (matches.problem)
        return say(problemInWords(*matches.problem, expression, [this](auto key) { return text(key); }));
    say(inWords(matches), matches.isCutShort ? std::string() : details(matches));
}

void ExpressionPreview::say(const std::string& line, const std::string& details) {
    line_->setStringValue(line);
    line_->setToolTip(details.empty() ? line : details);  // there is room for so many letters only
}

std::string ExpressionPreview::inWords(const ExpressionMatches& matches) const {
    if (!matches.fact) return text("Matches nothing: the menu above says not what is compared.");
    if (matches.costly)
        return formatted(text("Given up as too costly, at “%@”. A program that gives up takes it for no match."),
                         {shortened(matches.costly->name, kNamesInLine / 2)});
    const std::size_t all = applications_->size();
    if (matches.isCutShort) return formatted(text("Too costly to be tried on all %d applications"), {all});
    if (matches.found.empty()) return formatted(text("Matches none of %d applications"), {all});
    std::string names;
    std::size_t left = kNamesInLine;
    for (const ApplicationFacts* application : matches.found) {
        const std::string name = shortened(application->name, kNamesInLine);
        const std::size_t length = characters(name);
        if (!names.empty() && length > left) {
            names += ", …";
            break;
        }
        if (!names.empty()) names += ", ";
        names += name;
        left -= std::min(left, length);
    }
    return formatted(text("Matches %d of %d applications: %@"), {matches.found.size(), all, names});
}

// With what was compared, from which an expression is written.
std::string ExpressionPreview::details(const ExpressionMatches& matches) const {
    std::string lines;
    for (const ApplicationFacts* application :
         std::span(matches.found).first(std::min(matches.found.size(), kMostInToolTip))) {
        const std::string_view subject = application->*matches.fact;
        if (!lines.empty()) lines += "\n";
        lines += shortened(application->name, kNameInToolTip);
        if (subject != application->name) lines += formatted(" (%@)", {shortened(subject, kNameInToolTip)});
    }
    return lines + (matches.found.size() > kMostInToolTip ? "\n…" : "");
}

}  // namespace entrylist
