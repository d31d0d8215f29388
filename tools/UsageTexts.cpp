#include "tools/UsageTexts.h"

#include "entrylist/EntryAddress.h"
#include "linux/system/SystemLog.h"
#include "linux/texts/TextColumns.h"
#include "tools/Localized.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <utility>

namespace tools {
namespace {

CLI::Validator accepting(std::function<bool(const std::string&)> isGood, std::string complaint) {
    return CLI::Validator([isGood = std::move(isGood), complaint = std::move(complaint)](
                              const std::string& text) { return isGood(text) ? std::string() : complaint; },
                          "");
}

// The command that was being read when the parser gave up.
const CLI::App& innermostCommand(const CLI::App& app) {
    const std::vector<CLI::App*> named = app.get_subcommands();
    return named.empty() ? app : innermostCommand(*named.back());
}

// The names of the command's options that fulfil a condition, in their order.
std::vector<std::string> namesOf(const CLI::App& command, const std::function<bool(const CLI::Option&)>& isMeant) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options({}))
        if (option != command.get_help_ptr() && isMeant(*option)) names.push_back(option->get_name());
    return names;
}

// The sentence about the first of them; the parser has complained about one.
std::string about(const std::vector<std::string>& names, const std::string& sentence) {
    return platform::formatted(sentence, {names.empty() ? std::string() : names.front()});
}

bool isGiven(const CLI::Option& option) { return option.count() > 0; }

std::string whatIsMissing(const CLI::App& command) {
    if (command.get_require_subcommand_min() > 0) return localized("a subcommand is missing");
    const auto missing = namesOf(command, [](auto& option) { return option.get_required() && !isGiven(option); });
    if (!missing.empty()) return about(missing, localized("%@ is missing"));
    const std::string any = CLI::detail::join(namesOf(command, [](auto&) { return true; }), ", ");
    return namesOf(command, isGiven).empty() ? localizedFormat("one of these is missing: %@", any)
                                             : localizedFormat("only one of these can be given: %@", any);
}

// An option without its value has not been counted yet.
std::string whatHasNoValue(const CLI::App& command, const std::vector<std::string>& arguments) {
    const auto repeated =
        namesOf(command, [](auto& option) { return option.count() > 1 && option.get_expected_max() == 1; });
    if (!repeated.empty()) return about(repeated, localized("%@ can be given only once"));
    const auto bare = namesOf(command, [&](auto& option) {
        return !isGiven(option) && std::ranges::find(arguments, option.get_name()) != arguments.end();
    });
    return about(bare, localized("%@ needs a value"));
}

// A switch that was given as "--switch=value". Numbers are checked before they are converted.
bool hasForeignValue(const CLI::Option& option) {
    return option.get_expected_max() == 0 && isGiven(option) && option.results().front() != "true";
}

// What is there too much says more than what is missing: a subcommand may be misspelt.
std::string problemWith(const CLI::App& app, const CLI::Error& error, const std::vector<std::string>& arguments) {
    const std::vector<std::string> extra = app.remaining(true);
    if (extra.size() == 1) return localizedFormat("unexpected argument: %@", extra.front());
    if (!extra.empty()) return localizedFormat("unexpected arguments: %@", CLI::detail::join(extra, " "));
    const CLI::App& command = innermostCommand(app);
    if (dynamic_cast<const CLI::RequiredError*>(&error)) return whatIsMissing(command);
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error)) return whatHasNoValue(command, arguments);
    if (dynamic_cast<const CLI::ConversionError*>(&error))
        return about(namesOf(command, hasForeignValue), localized("%@ takes no value"));
    return error.what();
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
    if (!app.get_group().empty()) app.group(localized("Subcommands"));  // without a group it is hidden
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
    std::string complaint = localizedFormat("not one of these: %@", CLI::detail::join(words, ", "));
    return accepting(
        [words = std::move(words)](const std::string& text) { return std::ranges::find(words, text) != words.end(); },
        std::move(complaint));
}

CLI::Validator wholeNumber() {
    return accepting([](const std::string& text) { return CLI::TypeValidator<int>("")(text).empty(); },
                     localized("not a whole number"));
}

CLI::Validator entryName() {
    return accepting([](const std::string& text) { return entrylist::entryAddress(text).has_value(); },
                     localized("not a row, nor id:IDENTIFIER, path:PATH or name:NAME"));
}

CLI::Validator secondsWithin(double shortest, double longest) {
    const auto isGood = [=](const std::string& text) {
        char* end = nullptr;
        const double number = std::strtod(text.c_str(), &end);
        return *end == '\0' && number >= shortest && number <= longest;  // not a number is neither
    };
    return accepting(isGood, localizedFormat("not a number of seconds from %d to %d", std::int64_t(shortest),
                                             std::int64_t(longest)));
}

std::string usageProblem(const CLI::App& app, const CLI::Error& error, const std::vector<std::string>& arguments) {
    const std::string problem = linux::withVisibleControls(problemWith(app, error, arguments));
    return "typeslatectl: " + localizedFormat("%@ (--help tells more)", problem) + "\n";
}

}  // namespace tools
