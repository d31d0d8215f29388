// The commands of typeslatectl, a function for each group of them, and what they are made with.
#pragma once

#include "platform/PlatformTypes.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>
#include <utility>

namespace tools {

// "update check" ends with this status when no check was due, and with 0 when an updater was launched.
inline constexpr int kNothingDue = 3;

void addDefaultsCommands(CLI::App& app);
void addEntriesCommands(CLI::App& app);
void addPaneCommands(CLI::App& app);
// More of the entries' commands.
void addExchangeCommands(CLI::App& entries);
void addExpressionCommands(CLI::App& entries);
void addResolveCommand(CLI::App& app);
void addCatalogCommands(CLI::App& app);
void addLoginItemsCommands(CLI::App& app);
void addHelperCommands(CLI::App& app);
// The entry that applies to an application, named by a desktop file, .app folder or identifier; by default a new Global
// entry. Throws Refusal.
using EntryOfApplication = platform::PropertyList (*)(const std::string& application);
platform::PropertyList entryOfApplication(const std::string& application);
// Null where nothing can tell: then it takes entries alone.
void addMenuCommand(CLI::App& app, EntryOfApplication entryOf);
void addUpdateCommands(CLI::App& app);
void addWatchCommand(CLI::App& app);
// And a hidden one by which packaging/generate gets the D-Bus interfaces' descriptions.
void addSchemaCommands(CLI::App& app);
// What the shells' completions ask; no help names it.
void addCompleteCommand(CLI::App& app);

// A command that consists of others, one of which must be named. They share their arguments, which live as long as the
// parser does.
template <typename Arguments>
class CommandGroup {
public:
    CommandGroup(CLI::App& app, const char* name, const std::string& description)
        : group_(app.add_subcommand(name, description)) {
        group_->require_subcommand(1);
    }
    // More commands of a group that is there, with arguments of their own.
    explicit CommandGroup(CLI::App& group) : group_(&group) {}
    Arguments* operator->() const { return arguments_.get(); }
    CLI::App* add(const char* name, const std::string& description, void (*run)(const Arguments&)) {
        CLI::App* command = group_->add_subcommand(name, description);
        command->callback([arguments = arguments_, run] { run(*arguments); });
        return command;
    }

private:
    CLI::App* group_;
    std::shared_ptr<Arguments> arguments_ = std::make_shared<Arguments>();
};

}  // namespace tools
