#include "tests/fontcatalog/Files.h"

#include <sys/stat.h>

using namespace platform;
using fontcatalogtest::Machine;

TEST(WellKnownFolders) {
    const check::ScopedEnvironment home("HOME", "/h/me/");
    const struct {
        FolderDomain domain;
        FolderKind kind;
        const char *root, *data, *wine, *path;
    } cases[] = {
        {FolderDomain::User, FolderKind::Library, "/r", nullptr, nullptr, "/h/me/Library"},
        {FolderDomain::Local, FolderKind::Library, nullptr, nullptr, nullptr, "/Library"},
        {FolderDomain::Local, FolderKind::Library, "/r/", nullptr, nullptr, "/r/Library"},
        {FolderDomain::Network, FolderKind::Library, "/r", nullptr, nullptr, "/r/Network/Library"},
        {FolderDomain::User, FolderKind::ApplicationSupport, "/r", nullptr, nullptr, "/h/me/.local/share"},
        {FolderDomain::User, FolderKind::ApplicationSupport, "/r", "/d/", nullptr, "/d"},
        {FolderDomain::User, FolderKind::ApplicationSupport, nullptr, "relative", nullptr, "/h/me/.local/share"},
        {FolderDomain::Local, FolderKind::ApplicationSupport, "relative", nullptr, nullptr, "/usr/local/share"},
        {FolderDomain::Network, FolderKind::ApplicationSupport, "/r", "/d", nullptr, "/r/usr/share"},
        {FolderDomain::Classic, FolderKind::ApplicationSupport, "/r", nullptr, nullptr,
         "/h/me/.wine/drive_c/Program Files/Common Files"},
        {FolderDomain::Classic, FolderKind::ApplicationSupport, "/r", nullptr, "/w",
         "/r/w/drive_c/Program Files/Common Files"},
        {FolderDomain::Classic, FolderKind::ApplicationSupport, "/r", nullptr, "/h/me/w",
         "/h/me/w/drive_c/Program Files/Common Files"},
        {FolderDomain::System, FolderKind::Temporary, "/r", nullptr, nullptr, "/r/tmp"},
        {FolderDomain::User, FolderKind::Temporary, nullptr, nullptr, nullptr, ""},
        {FolderDomain::Classic, FolderKind::Library, nullptr, nullptr, nullptr, ""},
        {FolderDomain::System, FolderKind::ApplicationSupport, nullptr, nullptr, nullptr, ""},
    };
    for (const auto& c : cases) {
        CONTEXT(c.path);
        const check::ScopedEnvironment root("TYPESLATE_ROOT", c.root), data("XDG_DATA_HOME", c.data),
            wine("WINEPREFIX", c.wine);
        CHECK_EQ(LinuxFiles().folder(c.domain, c.kind).value_or(""), c.path);
    }
    CHECK_EQ(LinuxFiles().expandTilde("~/a~"), "/h/me/a~");
    CHECK_EQ(LinuxFiles().expandTilde("~"), "/h/me");
    CHECK_EQ(LinuxFiles().expandTilde("~you/a"), "~you/a");
}

TEST(FolderListings) {
    Machine machine;
    const std::string top = machine.temporary.path() + "/";
    for (int i = 0; i < 100; ++i) Machine::write(top + "f" + std::to_string(1000 + i));
    Machine::write(top + ".d/x");
    Machine::link(".d", top + "l");
    Machine::link("nowhere", top + "n");
    ::mkfifo((top + "p").c_str(), 0600);
    for (const FolderDetail detail : {FolderDetail::Names, FolderDetail::Everything}) {
        OSStatus status = kIOErr;
        const auto iterator = LinuxFiles().openFolder(top, detail, status);
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
    const struct {
        std::string path;
        OSStatus status;
    } failures[] = {{top + "x", kFileNotFound}, {top + "f1000", kNotAFolder}, {"", kFileNotFound}};
    for (const auto& c : failures) {
        OSStatus status = kNoErr;
        CHECK(!LinuxFiles().openFolder(c.path, FolderDetail::Names, status));
        CHECK_EQ(status, c.status);
    }
}

TEST(WholeFiles) {
    Machine machine;
    const std::string top = machine.temporary.path() + "/", large(5'000'000, 'x');
    Machine::write(top + "large", large);
    Machine::write(top + "empty");
    Machine::link("large", top + "link");
    ::mkfifo((top + "pipe").c_str(), 0600);
    std::filesystem::resize_file(top + "empty", 0);
    Machine::write(top + "vast");
    std::filesystem::resize_file(top + "vast", FileServices::kLargestFile + 1);
    LinuxFiles files;
    CHECK(files.readFile(top + "link") && *files.readFile(top + "link") == large);
    CHECK(files.readFile(top + "empty") && files.readFile(top + "empty")->empty());
    // Its size is stated as 0.
    CHECK(files.readFile("/proc/self/status") && files.readFile("/proc/self/status")->size() > 100);
    for (const std::string& path :
         {top + "pipe", top, top + "missing", top + "vast", std::string(), top + '\0' + "large"})
        CHECK(!files.readFile(path));
}
