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
    Machine::write(fonts + "Sub/caf\xC3\xA9.pfb");
    Machine::link("plain.pfb", fonts + "link");
    Machine::link("nowhere", fonts + "dangling");
    Machine::link("Sub", fonts + "SubLink");
    Machine::link(".", fonts + "Loop");
}

std::vector<std::string> paths() {
    std::vector<std::string> paths = {std::string("plain.pfb\0", 10), std::string("plain.pfb\0x", 11),
                                      std::string(255, 'n'), std::string(256, 'n'),
                                      std::string(5000, '/') + "plain.pfb"};
    std::istringstream words(
        "plain.pfb|Plain.pfb|PLAIN.PFB|.hidden|Sub|Sub/|plain.pfb/|Sub/inner.pfb|Sub//inner.pfb|//Sub/inner.pfb|"
        "sub/inner.pfb|Sub/Inner.pfb|Sub/missing|missing/inner.pfb|plain.pfb/inner|link|dangling|dangling/x|"
        "SubLink/inner.pfb|Loop/Loop/Sub/inner.pfb|.|..|../Fonts/plain.pfb|./plain.pfb|Sub/../plain.pfb|Sub/..|"
        "missing/../plain.pfb|plain.pfb/../plain.pfb|plain.pfb/.||/|Sub/caf\xC3\xA9.pfb|Sub/CAF\xC3\x89.pfb|"
        "..hidden|Sub.|plain.pfb ");
    for (std::string path; std::getline(words, path, '|');) paths.push_back(path);
    return paths;
}

}  // namespace

TEST(LookUpAnswersAsExistenceTestsDo) {
    Machine machine;
    fillFonts(machine);
    const std::string fonts = machine.local + "Fonts/";
    for (const bool ignoresCase : {false, true})
        for (const std::string_view refusal : {"", "unreadable", "closed"}) {
            Files files;
            files.ignoresCase = ignoresCase;
            if (refusal == "unreadable") files.unreadable.insert(fonts + "Sub/");
            if (refusal == "closed") files.closed = fonts + "Sub/";
            FontFileLookup lookup(files);
            for (const std::string& path : paths()) {
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
    CHECK_EQ(lookup.getFontFileForSubpath("all").value_or(""), machine.user + "Fonts/all");
    CHECK_EQ(lookup.getFontFileForSubpath("//A//two").value_or(""), machine.local + "Fonts/A/two");
    CHECK_EQ(lookup.getFontFileForSubpath("one").value_or(""), machine.network + "Fonts/one");
    CHECK(!lookup.getFontFileForSubpath("classic"));
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
