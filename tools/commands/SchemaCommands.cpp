// What describes the settings to other programs.
#include "linux/documents/Json.h"
#include "tools/JsonSchema.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/commands/Commands.h"

using namespace platform;

namespace tools {
namespace {

void printPlain(const PropertyList& value) { printLine(linux::jsonText(value, linux::JsonLayout::Plain)); }

}  // namespace

void addSchemaCommands(CLI::App& app) {
    app.add_subcommand("schema", localized("Print the JSON Schema of the settings domain"))->callback([] {
        printPlain(jsonSchema());
    });
}

}  // namespace tools
