#include "pane/fontcatalog/FontFileLookup.h"
#include "tests/fontcatalog/Files.h"

using namespace fontcatalog;
using fontcatalogtest::Files;
using fontcatalogtest::Machine;
using platform::FolderDomain;

namespace {

void fillFonts(const Machine& machine) {
    const std::string fonts = machine.local + "Fonts/";
    Machine::write(fonts + "plain.pfb");
    Machine::write(fonts + ".hidden");
    Machine::write(fonts + "Sub/inner.pfb");
    Machine::write(fonts + "Sub/Caf\xC3\xA9.pfb");
    Machine::link("plain.pfb", fonts + "link");
    Machine::link("nowhere", fonts + "dangling");
    Machine::link("Sub", fonts + "SubLink");
    Machine::link(".", fonts + "Loop");
}

const std::string kPaths[] = {
    "plain.pfb",
    "Plain.pfb",
    "PLAIN.PFB",
    ".hidden",
    "Sub",
    "Sub/",
    "plain.pfb/",
    "Sub/inner.pfb",
    "Sub//inner.pfb",
    "//Sub/inner.pfb",
    "sub/inner.pfb",
    "Sub/Inner.pfb",
    "Sub/missing",
    "missing/inner.pfb",
    "plain.pfb/inner",
    "link",
    "dangling",
    "dangling/x",
    "SubLink/inner.pfb",
    "Loop/Loop/Sub/inner.pfb",
    ".",
    "..",
    "../Fonts/plain.pfb",
    "./plain.pfb",
    "Sub/../plain.pfb",
    "Sub/..",
    "missing/../plain.pfb",
    "plain.pfb/../plain.pfb",
    "plain.pfb/.",
    "",
    "/",
    "Sub/Caf\xC3\xA9.pfb",
    "Sub/CAF\xC3\x89.pfb",
    std::string("plain.pfb\0", 10),
    std::string("plain.pfb\0x", 11),
    std::string(255, 'n'),
    std::string(256, 'n'),
    std::string(5000, '/') + "plain.pfb",
    "..hidden",
    "Sub.",
    "plain.pfb ",
};

}  // namespace

TEST(LookUpAnswersAsExistenceTestsDo) {
    Machine machine;
    fillFonts(machine);
    const std::string fonts = machine.local + "Fonts/";
    for (const bool ignoresCase : {false, true})
        for (const char* refused : {"", "Sub/"}) {
            Files files;
            files.ignoresCase = ignoresCase;
            if (*refused) files.unreadable.insert(fonts + refused);
            FontFileLookup lookup(files);
            for (const std::string& path : kPaths) {
                CONTEXT("\"" + path.substr(0, 40) + "\"" + (ignoresCase ? ", case ignored" : ""));
                const bool exists =
                    files.fileExists(fonts + path.substr(std::min(path.find_first_not_of('/'), path.size())));
                const auto found = lookup.getFontFileForSubpath(path);
                CHECK_EQ(found.has_value(), exists);
                if (found) CHECK_EQ(found->starts_with(fonts) && found->find("//") == std::string::npos, true);
            }
        }
}

TEST(LookUpOrderAndPath) {
    Machine machine;
    for (const std::string& domain : {machine.user, machine.local, machine.network})
        Machine::write(domain + "Fonts/all");
    for (const std::string& domain : {machine.local, machine.network}) Machine::write(domain + "Fonts/A/two");
    Machine::write(machine.network + "Fonts/one");
    Machine::write(machine.classic + "Fonts/classic");
    Files files;
    FontFileLookup lookup(files);
    const struct {
        const char* path;
        std::optional<std::string> found;
    } cases[] = {
        {"all", machine.user + "Fonts/all"},
        {"//A//two", machine.local + "Fonts/A/two"},
        {"one", machine.network + "Fonts/one"},
        {"classic", std::nullopt},
    };
    for (const auto& c : cases) CHECK_EQ(lookup.getFontFileForSubpath(c.path).value_or(""), c.found.value_or(""));
    CHECK(!lookup.getFontFileForSubpath(std::nullopt));
    CHECK(!lookup.getFontFileForSubpath_inDomain("all", FolderDomain::Classic));
    CHECK_EQ(lookup.getFontFileForSubpath_inDomain("all", FolderDomain::Network).value_or(""),
             machine.network + "Fonts/all");
}

TEST(LookUpAsksOncePerFolder) {
    Machine machine;
    for (int i = 0; i < 50; ++i) Machine::write(machine.local + "Fonts/Sub/" + std::to_string(i));
    Machine::write(machine.user + "Fonts/other");
    Files files;
    FontFileLookup lookup(files);
    int found = 0;
    for (int i = 0; i < 1000; ++i) found += lookup.getFontFileForSubpath("Sub/" + std::to_string(i)).has_value();
    CHECK_EQ(found, 50);
    CHECK_EQ(files.listings, 2);       // Sub of the user and of the local domain
    CHECK(files.existenceTests <= 6);  // the three "Adobe/Fonts/", and whether Sub may be searched
}
