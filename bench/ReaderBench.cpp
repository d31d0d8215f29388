// libtypeslate with 1,000 entries, held against what docs/reading.md promises.
#include "propertylist/Codec.h"
#include "reader/typeslate.h"
#include "settings/EntryList.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

using platform::PropertyList;

namespace {

template <typename Action>
double medianMicroseconds(int runs, Action action) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        auto start = std::chrono::steady_clock::now();
        action();
        times.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    std::ranges::nth_element(times, times.begin() + runs / 2);
    return times[static_cast<std::size_t>(runs / 2)];
}

// Removed at the end.
struct TemporaryFolder {
    std::string path = (std::filesystem::temp_directory_path() / "typeslate-bench-XXXXXX").string();
    TemporaryFolder() { path = ::mkdtemp(path.data()) ? path : ""; }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }
};

std::string folderWith(const TemporaryFolder& root, const char* type) {
    std::vector<PropertyList> list{settings::newGlobalEntry()};
    for (int i = 0; i < 1000; ++i) {
        std::string name = "org.example.Application" + std::to_string(i);
        list.push_back(PropertyList::dictionary({{"Type", type},
                                                 {"Name", name},
                                                 {"Data", name},
                                                 {"Path", "/usr/share/applications/" + name + ".desktop"},
                                                 {"RegEx Type", 1},
                                                 {"Settings", settings::newGlobalEntry()["Settings"]}}));
    }
    std::string folder = root.path + "/" + type;
    std::filesystem::create_directory(folder);
    std::ofstream(folder + "/com.tarnwick.typeslate.plist", std::ios::binary)
        << encodePropertyList(PropertyList::dictionary({{"TheExcList", PropertyList::array(std::move(list))}}),
                              propertylist::PropertyListFormat::Binary);
    return folder;
}

void tell(const char* what, double microseconds, double target) {
    std::printf("%-55s %9.2f us (target: at most %g)%s\n", what, microseconds, target,
                microseconds > target ? "  MISSED" : "");
}

}  // namespace

int main() {
    TemporaryFolder root;
    const std::string named = folderWith(root, "Identifier"), expressions = folderWith(root, "RegEx");
    tell("open, 1,000 entries",
         medianMicroseconds(201, [&] { typeslate_close(typeslate_open_folder(named.c_str(), nullptr)); }), 1000);

    auto resolve = [](const typeslate_settings* settings, const char* identifier) {
        typeslate_application application = {identifier, nullptr, "/opt/x", "Some Application"};
        typeslate_entry_free(typeslate_resolve(settings, &application));
    };
    typeslate_settings* settings = typeslate_open_folder(named.c_str(), nullptr);
    constexpr int kTogether = 1000;
    tell("an application that is named",
         medianMicroseconds(201,
                            [&] {
                                for (int i = 0; i < kTogether; ++i) resolve(settings, "org.example.Application777");
                            }) /
             kTogether,
         1);
    tell("refresh, nothing changed", medianMicroseconds(2001, [&] { typeslate_refresh(settings, nullptr); }), 10);
    typeslate_close(settings);

    double first = medianMicroseconds(51, [&] {
        settings = typeslate_open_folder(expressions.c_str(), nullptr);
        resolve(settings, "org.nobody.Knows");
        typeslate_close(settings);
    });
    std::printf("%-55s %9.2f us\n", "open, and the first miss through 1,000 expressions", first);
    settings = typeslate_open_folder(expressions.c_str(), nullptr);
    tell("a miss through 1,000 expressions", medianMicroseconds(501, [&] { resolve(settings, "org.nobody.Knows"); }),
         1000);
    typeslate_close(settings);
    return 0;
}
