#include "pane/fontcatalog/FontFileLookup.h"
#include "tests/fontcatalog/Files.h"

using namespace fontcatalog;
using fontcatalogtest::Files;
using fontcatalogtest::Machine;
using platform::FolderDomain;

TEST(LookUpAnswersAsExistenceTestsDo) {
    Machine machine;
    const std::string fonts = machine.local + "Fonts/", listed = fonts + "Sub/";
    const auto cases = check::casesIn(TEST_DATA "/lookups.txt");
    REQUIRE(cases.size() == 2);
    Machine::fill(fonts, cases[0].text);
    std::istringstream lines(cases[1].text);
    std::vector<std::string> paths = {std::string(255, 'n'), std::string(256, 'n'),
                                      std::string(5000, '/') + "plain.pfb"};
    for (std::string path; std::getline(lines, path);) paths.push_back(path);
    for (const bool ignoresCase : {false, true})
        for (const int refusal : {0, 1, 2}) {
            Files files;
            files.ignoresCase = ignoresCase;
            if (refusal == 1) files.unreadable.insert(listed);
            if (refusal == 2) files.closed = listed;
            FontFileLookup lookup(files);
            for (const std::string& path : paths) {
                CONTEXT("\"" + path.substr(0, 40) + "\"" + (ignoresCase ? ", case ignored" : ""));
                const auto found = lookup.getFontFileForSubpath(path);
                CHECK_EQ(found.has_value(),
                         files.fileExists(fonts + path.substr(std::min(path.find_first_not_of('/'), path.size()))));
                CHECK(!found || (found->starts_with(fonts) && found->find("//") == std::string::npos));
            }
        }
}

TEST(LookUpOrderAndPath) {
    Machine machine;
    Machine::fill(machine.user, "Fonts/all");
    Machine::fill(machine.local, "Fonts/all\nFonts/A/two");
    Machine::fill(machine.network, "Fonts/all\nFonts/A/two\nFonts/one");
    Machine::fill(machine.classic, "Fonts/classic");
    Files files;
    FontFileLookup lookup(files);
    CHECK_EQ(lookup.getFontFileForSubpath("all").value_or(""), machine.user + "Fonts/all");
    CHECK_EQ(lookup.getFontFileForSubpath("//A//two").value_or(""), machine.local + "Fonts/A/two");
    CHECK_EQ(lookup.getFontFileForSubpath("one").value_or(""), machine.network + "Fonts/one");
    CHECK(!lookup.getFontFileForSubpath("classic") && !lookup.getFontFileForSubpath(std::nullopt));
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
