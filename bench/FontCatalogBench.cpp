// The font catalogue's work, for fontcatalog_peers.py, which sets it beside other programs' work on the same files.
//
//     bench_fontcatalog parse FILE   reading and scanning for line ends; reading and parsing into a names collection
//     bench_fontcatalog memory FILE  the peak of reading a list once, and of encoding the names as they are stored
//     bench_fontcatalog rebuild      the start-up check once, in the folders that the environment names
//
// Prints one JSON object; times in seconds, memory in bytes. Of `parse` the rounds alternate, so that noise hits both,
// and the best round of each counts.
#include "linux/files/LinuxFiles.h"
#include "linux/preferences/DiskPreferences.h"
#include "pane/fontcatalog/AdobeNames.h"
#include "pane/fontcatalog/FontListReader.h"
#include "pane/fontcatalog/TextEncoding.h"
#include "propertylist/Codec.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

using namespace fontcatalog;

namespace {

constexpr int kRounds = 7;

struct SilentLog : platform::Log {
    void write(std::string_view) override {}
    bool isOn() override { return false; }
};

template <typename Work>
double secondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Since the program began: what getrusage tells includes the parent's memory at the fork.
long peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:")) return std::atol(line.c_str() + 6) * 1024;
    return 0;
}

std::size_t countLines(std::string_view text, char end) {
    std::size_t lines = 0;
    const char* last = text.data() + text.size();
    for (const char* at = text.data(); (at = static_cast<const char*>(std::memchr(at, end, last - at))); ++at) ++lines;
    return lines;
}

int parse(const char* path) {
    linux::LinuxFiles files;
    SilentLog log;
    double scanning = 1e9, parsing = 1e9;
    std::size_t bytes = 0, lines = 0, records = 0;
    for (int round = 0; round < kRounds; ++round) {
        scanning = std::min(scanning, secondsOf([&] {
                                const auto text = files.readFile(path);
                                bytes = text->size();
                                lines = countLines(*text, text->substr(0, 200).find('\n') < 200 ? '\n' : '\r');
                            }));
        NamesCollection names;
        parsing =
            std::min(parsing, secondsOf([&] { readFontList(listText(files.readFile(path)), path, {}, log, names); }));
        records = names.size();
    }
    std::printf("{\"bytes\": %zu, \"lines\": %zu, \"names\": %zu, \"scan\": %.6f, \"parse\": %.6f}\n", bytes, lines,
                records, scanning, parsing);
    return records > 0 ? 0 : 1;
}

int memory(const char* path) {
    linux::LinuxFiles files;
    SilentLog log;
    NamesCollection collection;
    std::size_t bytes = 0;
    const double parsing = secondsOf([&] {
        auto text = files.readFile(path);
        bytes = text->size();
        readFontList(listText(std::move(text)), path, {}, log, collection);
    });
    const long parsed = peakMemory();
    const auto names = std::move(collection).freeze();
    std::size_t stored = 0;
    const double encoding =
        secondsOf([&] { stored = encodePropertyList(names, propertylist::PropertyListFormat::Binary).size(); });
    std::printf(
        "{\"bytes\": %zu, \"names\": %zu, \"stored\": %zu, \"parse\": %.6f, \"encode\": %.6f, \"parsed\": %ld, "
        "\"encoded\": %ld}\n",
        bytes, names.size(), stored, parsing, encoding, parsed, peakMemory());
    return 0;
}

int rebuild() {
    linux::LinuxFiles files;
    SilentLog log;
    linux::DiskPreferences preferences(linux::preferencesFolder(), log);
    const auto cache = CFPreferencesWrapper_Typeslate::preferencesWithApplication(preferences, kCacheDomain);
    Catalogue catalogue;
    CacheCheck check;
    const double whole = secondsOf([&] { check = checkFontNameCache({files, log, log}, cache.get(), catalogue); });
    const long peak = peakMemory();
    Catalogue again;
    const double building = secondsOf([&] { adobeNames({files, log, log}, again); });
    std::printf("{\"files\": %zu, \"names\": %zu, \"whole\": %.6f, \"build\": %.6f, \"peak\": %ld}\n",
                check.files.size(), catalogue.names.size(), whole, building, peak);
    return check.isStored ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string_view(argv[1]) == "parse") return parse(argv[2]);
    if (argc == 3 && std::string_view(argv[1]) == "memory") return memory(argv[2]);
    if (argc == 2 && std::string_view(argv[1]) == "rebuild") return rebuild();
    std::fprintf(stderr, "usage: bench_fontcatalog parse FILE | memory FILE | rebuild\n");
    return 2;
}
