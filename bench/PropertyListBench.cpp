// Times the property-list value and its codecs. The font domain is that of the font-name cache: a dictionary of records
// of 21 strings each.
#include "propertylist/Codec.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

using propertylist::MutableDictionary;
using propertylist::PropertyList;
using propertylist::PropertyListFormat;

namespace {

PropertyList fontRecord(int number) {
    MutableDictionary record;
    for (int i = 0; i < 21; ++i)
        record.set("RecordKey" + std::to_string(i),
                   "Value " + std::to_string(i) + " of font " + std::to_string(number));
    return std::move(record).freeze();
}

PropertyList fontDomain(int count) {
    MutableDictionary names;
    for (int i = 0; i < count; ++i) names.set("FontName-" + std::to_string(i), fontRecord(i));
    return PropertyList::dictionary({{"AllNames", std::move(names).freeze()}, {"Version", 1}});
}

PropertyList entry(int number) {
    MutableDictionary settings, made;
    for (int i = 0; i < 16; ++i) {
        std::string key = "OptionNumber" + std::to_string(i);
        i % 4 == 3 ? settings.set(key, number % 30 + i) : settings.set(key, (number + i) % 2 == 0);
    }
    std::string suffix = std::to_string(number);
    for (const char* key : {"Type", "Name", "Data", "Identifier", "Creator", "Path"})
        made.set(key, (key[0] == 'T' ? "Identifier" : "com.example.application") + suffix);
    made.set("Settings", std::move(settings).freeze());
    return std::move(made).freeze();
}

PropertyList entryDomain(int count) {
    std::vector<PropertyList> entries;
    for (int i = 0; i < count; ++i) entries.push_back(entry(i));
    return PropertyList::dictionary({{"TheExcList", PropertyList::array(std::move(entries))}, {"Disabled", false}});
}

std::shared_ptr<const std::string> shared(const PropertyList& value,
                                          PropertyListFormat format = PropertyListFormat::Binary) {
    return std::make_shared<const std::string>(encodePropertyList(value, format));
}

void decode(benchmark::State& state, PropertyListFormat format) {
    auto bytes = shared(fontDomain(static_cast<int>(state.range(0))), format);
    for (auto _ : state) benchmark::DoNotOptimize(propertylist::decodePropertyList(bytes));
}
BENCHMARK_CAPTURE(decode, binary, PropertyListFormat::Binary)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode, xml, PropertyListFormat::XML)->Arg(10'000)->Unit(benchmark::kMillisecond);

void encodeDecoded(benchmark::State& state, PropertyListFormat format) {
    PropertyList domain = propertylist::decodePropertyList(shared(fontDomain(static_cast<int>(state.range(0)))));
    for (auto _ : state) benchmark::DoNotOptimize(encodePropertyList(domain, format));
}
BENCHMARK_CAPTURE(encodeDecoded, binary, PropertyListFormat::Binary)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeDecoded, xml, PropertyListFormat::XML)->Arg(10'000)->Unit(benchmark::kMillisecond);

void encodeBuilt(benchmark::State& state) {
    PropertyList domain = fontDomain(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(encodePropertyList(domain, PropertyListFormat::Binary));
}
BENCHMARK(encodeBuilt)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

// What one click does to the list: one option of one entry is replaced and the whole encoded.
PropertyList withOneOptionChanged(const PropertyList& domain, int turn) {
    std::vector<PropertyList> entries = mutableArray(domain["TheExcList"]);
    PropertyList& changed = entries[entries.size() / 2];
    MutableDictionary whole(domain), selected(changed), settings(changed["Settings"]);
    turn % 2 ? settings.set("OptionNumber3", turn % 1000) : settings.set("OptionNumber0", turn % 4 == 0);
    selected.set("Settings", std::move(settings).freeze());
    changed = std::move(selected).freeze();
    whole.set("TheExcList", PropertyList::array(std::move(entries)));
    return std::move(whole).freeze();
}

void click(benchmark::State& state) {
    PropertyList domain = propertylist::decodePropertyList(shared(entryDomain(static_cast<int>(state.range(0)))));
    int turn = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(encodePropertyList(withOneOptionChanged(domain, ++turn), PropertyListFormat::Binary));
}
BENCHMARK(click)->Arg(10)->Arg(1000)->Unit(benchmark::kMicrosecond);

void lookUp(benchmark::State& state) {
    int count = static_cast<int>(state.range(0)), i = 0;
    PropertyList names = propertylist::decodePropertyList(shared(fontDomain(count)))["AllNames"];
    std::vector<std::string> keys;
    for (int k = 0; k < 16; ++k) keys.push_back("FontName-" + std::to_string(k * (count / 16)));
    for (auto _ : state) benchmark::DoNotOptimize(&names[keys[static_cast<std::size_t>(++i % 16)]]);
}
BENCHMARK(lookUp)->Arg(16)->Arg(10'000);

// For propertylist_peers.py: the file that TYPESLATE_BENCH_FILE names, which the peers read too.
std::shared_ptr<const std::string> sharedFile() {
    const char* path = std::getenv("TYPESLATE_BENCH_FILE");
    std::ifstream file(path ? path : "", std::ios::binary);
    return std::make_shared<const std::string>(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void fileDecode(benchmark::State& state) {
    auto bytes = sharedFile();
    if (!propertylist::decodePropertyList(bytes))
        return state.SkipWithError("TYPESLATE_BENCH_FILE names no property list");
    for (auto _ : state) benchmark::DoNotOptimize(propertylist::decodePropertyList(bytes));
}
BENCHMARK(fileDecode)->Unit(benchmark::kMillisecond);

// The first decoding of a process, which touches every page of its memory for the first time.
void coldDecode(benchmark::State& state) {
    auto bytes = sharedFile();
    auto faults = [] {
        rusage used{};
        getrusage(RUSAGE_SELF, &used);
        return used.ru_minflt;
    };
    PropertyList value;
    const long before = faults();
    for (auto _ : state) value = propertylist::decodePropertyList(bytes);
    if (!value) return state.SkipWithError("TYPESLATE_BENCH_FILE names no property list");
    state.counters["faults"] = static_cast<double>(faults() - before);
}
BENCHMARK(coldDecode)->Iterations(1)->Unit(benchmark::kMillisecond);

void fileEncode(benchmark::State& state) {
    PropertyList value = propertylist::decodePropertyList(sharedFile());
    if (!value) return state.SkipWithError("TYPESLATE_BENCH_FILE names no property list");
    for (auto _ : state) benchmark::DoNotOptimize(encodePropertyList(value, PropertyListFormat::Binary));
}
BENCHMARK(fileEncode)->Unit(benchmark::kMillisecond);

}  // namespace
