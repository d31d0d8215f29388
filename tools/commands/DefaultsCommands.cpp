#include "tools/commands/Commands.h"

#include "linux/LinuxMachine.h"
#include "linux/documents/Json.h"
#include "linux/files/WholeFile.h"
#include "propertylist/Codec.h"
#include "settings/DomainSchema.h"
#include "settings/EntryList.h"
#include "tools/Input.h"
#include "tools/Localized.h"
#include "tools/Output.h"
#include "tools/Refusal.h"
#include "tools/StoredDomain.h"
#include "tools/UsageTexts.h"

#include <cstring>
#include <optional>

using namespace platform;
using namespace propertylist;
using namespace settings;

namespace tools {
namespace {

constexpr const char* kBinary = "binary";
constexpr const char* kXML = "xml";

struct Arguments {
    std::string domain, key, json, file;
    std::optional<std::string> keyIfAny;  // an empty key is a key
    std::string format = kBinary;
    bool endsWithNull = false, storesAnyway = false;
};

struct Store : linux::LinuxStore {
    Store() { preferences.setLongestWait(lockWait()); }
    // The domain's whole content; there must be some.
    PropertyList content(const std::string& domain) {
        requireReadable(preferences, domain);
        PropertyList all = preferences.copyDomain(domain);
        if (all.size() == 0) throw refused("there is nothing in the domain %@", domain);
        return all;
    }
};

Refusal noKey(const Arguments& arguments) {
    return refused("there is no key %@ in the domain %@", *arguments.keyIfAny, arguments.domain);
}

void read(const Arguments& arguments) {
    Store store;
    PropertyList value = store.content(arguments.domain);
    if (arguments.keyIfAny) value = value[*arguments.keyIfAny];
    if (!value) throw noKey(arguments);
    printJson(value);
}

void write(const Arguments& arguments) {
    linux::JsonResult parsed =
        linux::parseJson(arguments.json == kStandardStream ? readInput(arguments.json) : arguments.json);
    if (!parsed.error.empty())
        throw refused("the value is not JSON that a property list can hold: %@",
                      parsed.error + " (at byte " + std::to_string(parsed.position) + ")");
    if (!PropertyList(arguments.key)) throw refused("the key is not UTF-8");
    Store store;
    requireReadable(store.preferences, arguments.domain);
    store.preferences.setValue(arguments.key, parsed.value, arguments.domain);
    save(store.preferences, arguments.domain);
}

void remove(const Arguments& arguments) {
    Store store;
    PropertyList all = store.content(arguments.domain);
    if (arguments.keyIfAny && !all[*arguments.keyIfAny]) throw noKey(arguments);
    store.preferences.changeValues(
        [key = arguments.keyIfAny](MutableDictionary& values) { key ? values.remove(*key) : void(values = {}); },
        arguments.domain);
    save(store.preferences, arguments.domain);
}

void listDomains(const Arguments& arguments) {
    Store store;
    const auto domains = store.preferences.domains();
    if (!domains) throw refused("the domains in %@ cannot be listed; the log says why", store.preferences.folder());
    for (const std::string& domain : *domains) print(domain + (arguments.endsWithNull ? '\0' : '\n'));
}

void exportDomain(const Arguments& arguments) {
    Store store;
    auto format = arguments.format == kXML ? PropertyListFormat::XML : PropertyListFormat::Binary;
    std::string bytes = encodePropertyList(store.content(arguments.domain), format);
    if (bytes.empty()) throw refused("the domain holds a value that this format cannot express");
    if (isStandardOutput(arguments.file)) return print(bytes);
    if (linux::Failure failure = linux::writeWhole(linux::FileAccess::system(), arguments.file, bytes))
        throw Refusal(arguments.file + ": " + std::strerror(failure.error));
}

void importDomain(const Arguments& arguments) {
    DecodeProblem problem;
    PropertyList content = decodePropertyList(readInput(arguments.file), &problem);
    if (!content.isDictionary())
        throw problem.reason
            ? refused("%@: not a property list (byte %d: %@)", arguments.file, problem.position, problem.reason)
            : refused("%@: not a property list with a dictionary at its root", arguments.file);
    if (arguments.domain == kSettingsDomain && !arguments.storesAnyway)
        if (const Breach breach = firstBreach(content))
            throw refused("%@: %@: %@; --anyway stores it all the same", arguments.file, breach.place,
                          localized(breach.reason));
    Store store;
    requireReadable(store.preferences, arguments.domain);
    store.preferences.changeValues([content](MutableDictionary& values) { values = MutableDictionary(content); },
                                   arguments.domain);
    save(store.preferences, arguments.domain);
}

}  // namespace

void addDefaultsCommands(CLI::App& app) {
    CommandGroup<Arguments> defaults(app, "defaults", localized("Read and change preference domains"));
    auto takeDomain = [&](CLI::App* command) {
        command->add_option("DOMAIN", defaults->domain, localized("Domain, such as com.tarnwick.typeslate"))
            ->required();
        return command;
    };
    auto takeFormat = [&](CLI::App* command) {
        command->add_option("--format", defaults->format, localized("binary (default) or xml"))
            ->check(oneOf({kBinary, kXML}))
            ->type_name("FORMAT");
    };
    auto takeFile = [&](CLI::App* command, const std::string& description) {
        command->add_option("FILE", defaults->file, description)->required();
        return command;
    };

    takeDomain(defaults.add("read", localized("Print a domain, or one key of it, as JSON"), read))
        ->add_option("KEY", defaults->keyIfAny, localized("Key; without one the whole domain"));
    auto* writing = takeDomain(defaults.add("write", localized("Store one value"), write));
    writing->add_option("KEY", defaults->key, localized("Key"))->required();
    writing->add_option("JSON", defaults->json, localized("Value as JSON, - for standard input"))->required();
    takeDomain(defaults.add("delete", localized("Remove a key, or every key of a domain"), remove))
        ->add_option("KEY", defaults->keyIfAny, localized("Key; without one all of them"));
    defaults.add("domains", localized("List the stored domains"), listDomains)
        ->add_flag("--null", defaults->endsWithNull,
                   localized("End each name with a zero byte, not with a line's end"));
    takeFormat(takeFile(
        takeDomain(defaults.add("export", localized("Write a domain into a property-list file"), exportDomain)),
        localized("File to write, - for standard output")));
    takeFile(takeDomain(defaults.add("import", localized("Replace a domain by a property-list file"), importDomain)),
             localized("File to read, - for standard input; its form is recognised"))
        ->add_flag("--anyway", defaults->storesAnyway,
                   localized("Store settings that do not fit the schema all the same"));
}

}  // namespace tools
