#include "Samples.h"

#include <atomic>
#include <thread>

using platform::MutableDictionary;
using platform::PropertyList;

namespace {

PropertyList largeDictionary() {
    MutableDictionary large;
    for (int i = 0; i < 500; ++i) large.set("key " + std::to_string(i), PropertyList::array({i}));
    return std::move(large).freeze();
}

// For the thread sanitizer: the first look-ups race to make the index, and the last holder frees the value.
TEST(ThreadsShareAValue) {
    std::string bytes = encodePropertyList(largeDictionary(), platform::PropertyListFormat::Binary);
    for (bool isDecoded : {false, true}) {
        PropertyList shared = isDecoded ? platform::decodePropertyList(bytes) : largeDictionary();
        std::atomic<int> wrong{0};
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([copy = shared, thread, &wrong]() mutable {
                for (int i = thread; i < 500; i += 3) {
                    PropertyList found = copy["key " + std::to_string(i)];
                    if (found[0].integerValue() != i) ++wrong;
                }
                copy = {};
            });
        shared = {};
        for (std::thread& thread : threads) thread.join();
        CHECK_EQ(wrong.load(), 0);
    }
}

}  // namespace
