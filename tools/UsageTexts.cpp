#include "tools/UsageTexts.h"

#include "linux/system/TextColumns.h"
#include "tools/Localized.h"

#include <algorithm>

namespace tools {
namespace {

struct Sentence {
    std::string_view before, between, after;  // around the names in the parser's text
    std::string text;                         // with "%@" for each name
};

// The one with most to recognise it by comes first.
std::vector<Sentence> sentences() {
    return {{"A subcommand is required", "", "", localized("a subcommand is missing")},
            {"The following argument was not expected: ", "", "", localized("unexpected argument: %@")},
            {"The following arguments were not expected: ", "", "", localized("unexpected arguments: %@")},
            {"Could not convert: ", " = ", "", localized("%@ cannot be %@")},
            {"Exactly 1 option from [", "", ",] is required", localized("one of these is missing: %@")},
            {"Exactly 1 option from [", ",] is required and ", " were given",
             localized("only one of these can be given: %@")},
            {"", ": 1 required ", " missing", localized("%@ needs a value")},
            {"", " requires ", "", localized("%@ needs %@")},
            {"", " excludes ", "", localized("%@ and %@ exclude each other")},
            {"", "", " is required", localized("%@ is missing")}};
}

// The names that the sentence was made with, in order; nothing when it is another sentence.
std::optional<std::vector<std::string_view>> namesIn(std::string_view text, const Sentence& sentence) {
    if (!text.starts_with(sentence.before)) return std::nullopt;
    text.remove_prefix(sentence.before.size());
    if (!text.ends_with(sentence.after)) return std::nullopt;
    text.remove_suffix(sentence.after.size());
    if (sentence.between.empty()) return {{text}};
    const std::size_t middle = text.find(sentence.between);
    if (middle == std::string_view::npos) return std::nullopt;
    return {{text.substr(0, middle), text.substr(middle + sentence.between.size())}};
}

// Lists that line up in every language, with lines that fit the terminal.
class HelpFormatter final : public CLI::Formatter {
public:
    std::string make_description(const CLI::App* app) const override {
        std::string text = linux::wrapped(app->get_description(), 0) + "\n";
        if (app->get_require_option_min() == 1) text += localized("Exactly one of the following is needed.") + "\n";
        return text;
    }
    std::string make_option(const CLI::Option* option, bool isPositional) const override {
        return linux::helpItem(make_option_name(option, isPositional) + make_option_opts(option),
                               option->get_description());
    }
    std::string make_subcommand(const CLI::App* command) const override {
        return linux::helpItem(command->get_name(), command->get_description());
    }
};

void localizeGroups(CLI::App& app, const std::shared_ptr<CLI::Formatter>& formatter) {
    app.formatter(formatter);
    app.group(localized("Subcommands"));
    app.set_help_flag("-h,--help", localized("Show this help and exit"));
    for (CLI::Option* option : app.get_options()) option->group(localized("Options"));
    for (CLI::App* command : app.get_subcommands({})) localizeGroups(*command, formatter);
}

}  // namespace

void localizeUsage(CLI::App& app) {
    auto formatter = std::make_shared<HelpFormatter>();
    formatter->label("Usage", localized("Usage"));
    formatter->label("OPTIONS", localized("OPTIONS"));
    formatter->label("SUBCOMMAND", localized("SUBCOMMAND"));
    formatter->label("SUBCOMMANDS", localized("SUBCOMMANDS"));
    formatter->label("REQUIRED", localized("REQUIRED"));
    formatter->label("Positionals", localized("Positionals"));
    formatter->label("TEXT", localized("TEXT"));
    formatter->label("INT", localized("INT"));
    formatter->label("FLOAT", localized("FLOAT"));
    localizeGroups(app, formatter);
}

CLI::Validator oneOf(std::vector<std::string> words) {
    return CLI::Validator(
        [words = std::move(words)](const std::string& text) {
            const bool isKnown = std::ranges::find(words, text) != words.end();
            return isKnown ? std::string() : localizedFormat("not one of these: %@", CLI::detail::join(words, ", "));
        },
        "");
}

std::string localizedUsageError(std::string_view english) {
    for (const Sentence& sentence : sentences())
        if (auto names = namesIn(english, sentence))
            return platform::formatted(sentence.text, {names->front(), names->back()});
    return std::string(english);
}

}  // namespace tools
