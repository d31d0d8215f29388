// typeslatectl: the settings pane's data and messages from the shell.
//
// Exit status 0: done. 1: refused, with one line on standard error. 2: the call itself is wrong.
#include "tools/DefaultsCommands.h"
#include "tools/Refusal.h"
#include "tools/WatchCommand.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>

namespace {

constexpr int kRefused = 1;
constexpr int kUsage = 2;

int parse(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return 0;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsage;
    } catch (const tools::Refusal& refusal) {
        std::fprintf(stderr, "typeslatectl: %s\n", refusal.text.c_str());
        return kRefused;
    }
}

}  // namespace

int main(int argc, char** argv) {
    // A closed pipe is a write that fails, not a death.
    std::signal(SIGPIPE, SIG_IGN);
    CLI::App app("Reads and changes the settings of the Typeslate font-menu module.", "typeslatectl");
    app.require_subcommand(1);
    app.set_version_flag("--version", TYPESLATE_VERSION);
    tools::addDefaultsCommands(app);
    tools::addWatchCommand(app);
    return parse(app, argc, argv);
}
