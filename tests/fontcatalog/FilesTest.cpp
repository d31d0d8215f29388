// Folders, files, and the fonts that are looked up in them.
#include "pane/fontcatalog/FontFileLookup.h"
#include "tests/fontcatalog/Files.h"

#include <map>

using namespace platform;
using fontcatalog::FontFileLookup;
using fontcatalogtest::Files;
using fontcatalogtest::Machine;

TEST(WellKnownFolders) {
    const std::map<std::string, FolderDomain> domains = {
        {"User", FolderDomain::User},       {"Local", FolderDomain::Local},   {"Network", FolderDomain::Network},
        {"Classic", FolderDomain::Classic}, {"System", FolderDomain::System},
    };
    const std::map<std::string, FolderKind> kinds = {{"Library", FolderKind::Library},
                                                     {"ApplicationSupport", FolderKind::ApplicationSupport},
                                                     {"Temporary", FolderKind::Temporary}};
    linux::LinuxFiles files;
    const check::ScopedEnvironment home("HOME", "/h/me/");
    const auto cases = check::casesIn(TEST_DATA "/folders.txt");
    for (const auto& c : cases) {
        CONTEXT(c.label + " " + c.argument + " " + c.text);
        std::string values[3];
        std::istringstream(c.text) >> values[0] >> values[1] >> values[2];
        const auto setting = [&](int i) { return values[i] == "-" ? nullptr : values[i].c_str(); };
        const check::ScopedEnvironment root("TYPESLATE_ROOT", setting(0)), data("XDG_DATA_HOME", setting(1)),
            wine("WINEPREFIX", setting(2));
        CHECK_EQ(files.folder(domains.at(c.label), kinds.at(c.argument)).value_or(""), c.expected);
    }
    CHECK(cases.size() == 16);
    const check::TemporaryFolder prefix;
    const check::ScopedEnvironment root("TYPESLATE_ROOT", nullptr), wine("WINEPREFIX", prefix.path().c_str());
    for (const char* programs : {"Program Files (x86)", "Program Files"}) {  // from now on there are both
        const std::string common = prefix / "drive_c/" + programs + "/Common Files";
        std::filesystem::create_directories(common + "/Adobe");
        CHECK_EQ(files.folder(FolderDomain::Classic, FolderKind::ApplicationSupport).value_or(""), common);
    }
    CHECK_EQ(files.expandTilde("~/a~ ~") + files.expandTilde("~") + files.expandTilde("~you/a"),
             "/h/me/a~ ~/h/me~you/a");
}

TEST(FolderListings) {
    Machine machine;
    const std::string top = machine.temporary.path() + "/";
    for (int i = 0; i < 100; ++i) Machine::write(top + "f" + std::to_string(1000 + i));
    Machine::fill(top, ".d/x\nl > .d\nn > nowhere\np |");
    for (const FolderDetail detail : {FolderDetail::Names, FolderDetail::Everything}) {
        OSStatus status = kIOErr;
        const auto iterator = linux::LinuxFiles().openFolder(top, detail, status);
        REQUIRE(iterator && status == kNoErr);
        std::vector<FolderEntry> all, batch;
        for (iterator->nextBatch(40, batch); !batch.empty(); iterator->nextBatch(40, batch)) {
            CHECK(batch.size() <= 40);
            all.insert(all.end(), batch.begin(), batch.end());
        }
        REQUIRE(all.size() == 104);
        const bool full = detail == FolderDetail::Everything;
        CHECK(all[0].name == ".d" && all[0].isInvisible && all[0].kind == ItemKind::Folder);
        CHECK(all[1].name == "f1000" && !all[1].isInvisible && all[1].kind == ItemKind::RegularFile);
        CHECK(all[101].name == "l" && all[101].kind == (full ? ItemKind::Folder : ItemKind::Unresolved));
        CHECK(!full || all[101].identity == all[0].identity);
        CHECK(all[102].kind == ItemKind::Unresolved && all[103].kind == ItemKind::Other);
        CHECK_EQ(all[1].modified.has_value(), full);
    }
    for (const auto& [path, expected] : {std::pair<std::string, OSStatus>{top + "x", kFileNotFound},
                                         {top + "f1000", kNotAFolder},
                                         {"", kFileNotFound}}) {
        OSStatus status = kNoErr;
        CHECK(!linux::LinuxFiles().openFolder(path, FolderDetail::Names, status));
        CHECK_EQ(status, expected);
    }
}

TEST(WholeFiles) {
    Machine machine;
    const std::string top = machine.temporary.path() + "/", large(5'000'000, 'x');
    Machine::fill(top, "empty\nvast\nlink > large\npipe |");
    Machine::write(top + "large", large);
    std::filesystem::resize_file(top + "vast", FileServices::kLargestFile + 1);
    linux::LinuxFiles files;
    CHECK(files.readFile(top + "link") && *files.readFile(top + "link") == large);
    CHECK(files.readFile(top + "empty") && files.readFile(top + "empty")->empty());
    CHECK(files.readFile("/proc/self/stat") && files.readFile("/proc/self/stat")->size() > 100);  // of stated size 0
    for (const std::string& path :
         {top + "pipe", top, top + "missing", top + "vast", std::string(), top + '\0' + "large"})
        CHECK(!files.readFile(path));
}

TEST(LookUpAnswersAsExistenceTestsDo) {
    Machine machine;
    const std::string fonts = machine.local + "Fonts/", listed = fonts + "Sub/";
    const auto cases = check::casesIn(TEST_DATA "/lookups.txt");
    REQUIRE(cases.size() == 2);
    Machine::fill(fonts, cases[0].text);
    std::vector<std::string> paths = check::linesIn(cases[1].text);
    paths.insert(paths.end(), {std::string(255, 'n'), std::string(256, 'n'), std::string(5000, '/') + "plain.pfb"});
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
