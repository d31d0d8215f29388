// What describes the settings and the messages to other programs.
#include "linux/documents/Json.h"
#include "platform/MessageForms.h"
#include "tools/JsonSchema.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/commands/Commands.h"

using namespace platform;

namespace tools {
namespace {

void printPlain(const PropertyList& value) { printLine(linux::jsonText(value, linux::JsonLayout::Plain)); }

// The names in it are ours and need no escapes. Qt's generator does not know dictionaries by their D-Bus type.
std::string introspection(const SignalForm& form) {
    std::string arguments;
    std::size_t index = 0;
    for (const SignalArgument& argument : form.arguments) {
        arguments += formatted("      <arg name=\"%@\" type=\"%@\"/>\n", {argument.name, argument.type});
        if (argument.type == "a{sv}")
            arguments += formatted(
                "      <annotation name=\"org.qtproject.QtDBus.QtTypeName.Out%d\" value=\"QVariantMap\"/>\n", {index});
        ++index;
    }
    return formatted(
        "<!DOCTYPE node PUBLIC \"-//freedesktop//DTD D-BUS Object Introspection 1.0//EN\"\n"
        " \"http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd\">\n"
        "<!-- Written by packaging/generate; docs/messages.md tells what it means. -->\n"
        "<node name=\"%@\">\n  <interface name=\"%@\">\n    <signal name=\"%@\">\n%@"
        "    </signal>\n  </interface>\n</node>\n",
        {form.path, form.interface, form.member, arguments});
}

// Interfaces by name.
void printInterfaces() {
    MutableDictionary texts;
    for (const SignalForm& form : {kNotificationForm, kRuntimeMessageForm})
        texts.set(form.interface, introspection(form));
    printPlain(std::move(texts).freeze());
}

}  // namespace

void addSchemaCommands(CLI::App& app) {
    app.add_subcommand("schema", localized("Print the JSON Schema of the settings domain"))->callback([] {
        printPlain(jsonSchema());
    });
    app.add_subcommand("interfaces")->group("")->callback(printInterfaces);
}

}  // namespace tools
