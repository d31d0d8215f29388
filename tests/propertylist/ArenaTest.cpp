#include "Samples.h"

#include "propertylist/PropertyListArena.h"

#include <atomic>
#include <thread>

using propertylist::MutableDictionary;
using propertylist::PropertyList;
using propertylist::PropertyListArena;
using propertylist::PropertyListFormat;

namespace {

struct Pair {
    const char* label;
    std::string key, value;
};

// The same pairs packed, built, and as they are read from a file.
std::vector<PropertyList> inAllForms(const std::vector<Pair>& pairs) {
    std::string kept = "before";
    for (const Pair& pair : pairs) kept += pair.key + pair.value;
    const auto text = std::make_shared<const std::string>(kept);
    PropertyListArena arena(text);
    std::vector<PropertyListArena::Text> keys, values;
    MutableDictionary built;
    std::size_t at = 6;
    for (const Pair& pair : pairs) {
        const std::string_view key(text->data() + at, pair.key.size());
        const std::string_view value(key.data() + key.size(), pair.value.size());
        const bool isCopied = keys.size() % 2;
        keys.push_back(isCopied ? arena.copy(pair.key) : arena.part(key));
        values.push_back(isCopied ? arena.part(value) : arena.copy(pair.value));
        built.set(pair.key, pair.value);
        at += pair.key.size() + pair.value.size();
    }
    const auto shared = arena.keys(keys);
    const PropertyList packed = arena.dictionary(shared, values);
    const std::string file = encodePropertyList(arena.dictionary(shared, values), PropertyListFormat::Binary);
    return {packed, std::move(built).freeze(), propertylist::decodePropertyList(file)};
}

}  // namespace

TEST(CompactDictionariesAreLikeAnyOther) {
    std::vector<Pair> pairs = {{"plain", "key", "value"},
                               {"empty", "", ""},
                               {"beyond ASCII", "cl\u00e9", "\U0001F600"},
                               {"the same value", "again", "value"},
                               {"larger than a chunk", "long", std::string(70'000, 'l')},
                               {"with a length of its own", "longer", std::string((1 << 24) + 5, 'L')},
                               {"behind it", "last", "end"}};
    for (int extra : {0, 30}) {
        for (int i = 0; i < extra; ++i) pairs.push_back({"enough for an index", "k" + std::to_string(i), "v"});
        const std::vector<PropertyList> forms = inAllForms(pairs);
        for (std::size_t form = 0; form < forms.size(); ++form) {
            CONTEXT("form " + std::to_string(form));
            const PropertyList& dictionary = forms[form];
            CHECK_EQ(dictionary.description() == forms[1].description(), true);
            CHECK_EQ(encodePropertyList(dictionary, PropertyListFormat::XML) ==
                         encodePropertyList(forms[1], PropertyListFormat::XML),
                     true);
            for (const Pair& pair : pairs) {
                CONTEXT(pair.label);
                CHECK_EQ(PropertyListArena::textIn(dictionary, pair.key) == pair.value, true);
                CHECK_EQ(dictionary[pair.key].stringValue() == pair.value, true);
            }
            CHECK(!PropertyListArena::textIn(dictionary, "missing") && !dictionary["missing"]);
            for (const PropertyList& other : forms) CHECK_EQ(dictionary == other, true);
            MutableDictionary changed(dictionary);
            changed.set("key", "other");
            CHECK_EQ(std::move(changed).freeze()["key"].stringValue(), "other");
        }
    }
}

// For the thread sanitizer: the first look-ups race to make the entries and the index, and the last holder frees the
// value.
TEST(ThreadsShareAValue) {
    std::vector<Pair> pairs;
    for (int i = 0; i < 500; ++i) pairs.push_back({"", "key " + std::to_string(i), std::to_string(i)});
    for (PropertyList& shared : inAllForms(pairs)) {
        std::atomic<int> wrong{0};
        std::vector<std::thread> threads;
        for (std::size_t thread = 0; thread < 4; ++thread)
            threads.emplace_back([copy = shared, thread, &pairs, &wrong]() mutable {
                for (std::size_t i = thread; i < pairs.size(); i += 3)
                    if (copy[pairs[i].key].stringValue() != pairs[i].value) ++wrong;
                copy = {};
            });
        shared = {};
        for (std::thread& thread : threads) thread.join();
        CHECK_EQ(wrong.load(), 0);
    }
}

TEST(CompactDictionariesOutliveTheirArena) {
    PropertyList array;
    {
        PropertyListArena arena(std::make_shared<const std::string>("text"));
        const PropertyListArena::Text text = arena.copy("copied");
        array = PropertyList::array({arena.dictionary(arena.keys({&text, 1}), {&text, 1}), arena.string(text)});
    }
    const PropertyList read = propertylist::decodePropertyList(encodePropertyList(array, PropertyListFormat::Binary));
    CHECK_EQ(read, PropertyList::array({PropertyList::dictionary({{"copied", "copied"}}), "copied"}));
    array = array[0]["copied"];
    CHECK_EQ(array.stringValue(), "copied");
}
