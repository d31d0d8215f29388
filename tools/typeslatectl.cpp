// typeslatectl: the settings pane's data and messages from the shell.
//
// Exit status 0: done. 1: refused, with one line on standard error. 2: the call itself is wrong. A command may have
// more.
#include "linux/system/SystemLog.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/Refusal.h"
#include "tools/StoredDomain.h"
#include "tools/UsageTexts.h"
#include "tools/commands/Commands.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdio>

namespace {

constexpr int kUsage = 2;
constexpr double kLongestWait = 1e6;  // seconds

void complain(std::string_view line) {
    std::fprintf(stderr, "typeslatectl: %s\n", linux::withVisibleControls(line).c_str());
}

// Runs the command; --help and --version count as one.
int run(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return 0;
    } catch (const CLI::RuntimeError& outcome) {
        return outcome.get_exit_code();  // the command's own
    } catch (const CLI::ParseError& error) {
        if (app.exit(error) != 0) return kUsage;
        tools::flushOutput();
        return 0;
    }
}

int runOrRefuse(CLI::App& app, int argc, char** argv) {
    try {
        return run(app, argc, argv);
    } catch (const tools::Refusal& refusal) {
        for (const std::string& line : refusal.lines) complain(line);
        return refusal.status;
    } catch (const std::exception& error) {
        complain(error.what());
    }
    return tools::kRefused;
}

}  // namespace

int main(int argc, char** argv) {
    // A closed pipe is a write that fails, not a death.
    std::signal(SIGPIPE, SIG_IGN);
    std::setlocale(LC_MESSAGES, "");  // for the system's own error texts
    CLI::App app(tools::localized("Reads and changes the settings of the Typeslate font-menu module."), "typeslatectl");
    app.require_subcommand(1);
    app.fallthrough();
    double seconds = std::chrono::duration<double>(tools::lockWait()).count();
    app.add_option("--wait", seconds,
                   tools::localized("How long to wait for a program that keeps settings locked: 10 by default, 0 for "
                                    "not at all"))
        ->check(tools::secondsWithin(0, kLongestWait))
        ->type_name("SECONDS");
    app.parse_complete_callback([&seconds] {
        tools::lockWait() = std::chrono::duration_cast<linux::LockWait>(std::chrono::duration<double>(seconds));
    });
    app.set_version_flag("--version", TYPESLATE_VERSION, tools::localized("Show the version and exit"));
    app.failure_message(
        [arguments = std::vector<std::string>(argv, argv + argc)](const CLI::App* parser, const CLI::Error& error) {
            return tools::usageProblem(*parser, error, arguments);
        });
    tools::addDefaultsCommands(app);
    tools::addEntriesCommands(app);
    tools::addPaneCommands(app);
    tools::addExchangeCommands(*app.get_subcommand("entries"));
#ifdef TYPESLATE_HAVE_READER
    tools::addExpressionCommands(*app.get_subcommand("entries"));
    tools::addResolveCommand(app);
    tools::addMenuCommand(app, tools::entryOfApplication);
#else
    tools::addMenuCommand(app, nullptr);
#endif
    tools::addCatalogCommands(app);
    tools::addLoginItemsCommands(app);
    tools::addHelperCommands(app);
    tools::addUpdateCommands(app);
    tools::addWatchCommand(app);
    tools::addSchemaCommands(app);
    tools::addCompleteCommand(app);
    tools::localizeUsage(app);
    return runOrRefuse(app, argc, argv);
}
