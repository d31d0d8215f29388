#include "Samples.h"

#include "platform/PropertyListArena.h"

#include <atomic>
#include <thread>

using platform::MutableDictionary;
using platform::PropertyList;

namespace {

constexpr int kKeys = 500;

std::string key(int i) { return "key " + std::to_string(i); }

PropertyList built() {
    MutableDictionary large;
    for (int i = 0; i < kKeys; ++i) large.set(key(i), std::to_string(i));
    return std::move(large).freeze();
}

PropertyList decoded() {
    return platform::decodePropertyList(encodePropertyList(built(), platform::PropertyListFormat::Binary));
}

PropertyList packed() {
    platform::PropertyListArena arena;
    std::vector<platform::PropertyListArena::Text> keys, values;
    for (int i = 0; i < kKeys; ++i) {
        keys.push_back(arena.copy(key(i)));
        values.push_back(arena.copy(std::to_string(i)));
    }
    return arena.dictionary(arena.keys(keys), values);
}

// For the thread sanitizer: the first look-ups race to make the entries and the index, and the last holder frees the
// value.
TEST(ThreadsShareAValue) {
    for (const auto make : {built, decoded, packed}) {
        PropertyList shared = make();
        std::atomic<int> wrong{0};
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([copy = shared, thread, &wrong]() mutable {
                for (int i = thread; i < kKeys; i += 3) {
                    PropertyList found = copy[key(i)];
                    if (found.stringValue() != std::to_string(i)) ++wrong;
                }
                copy = {};
            });
        shared = {};
        for (std::thread& thread : threads) thread.join();
        CHECK_EQ(wrong.load(), 0);
    }
}

}  // namespace
