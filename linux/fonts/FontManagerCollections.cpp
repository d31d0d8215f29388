#include "linux/fonts/FontSetFiles.h"
#include "linux/texts/DisplayText.h"

#include <rapidjson/document.h>

#include <algorithm>
#include <cstdint>

using platform::FontSet;
using platform::SetOwner;

namespace linux {
namespace {

using Value = rapidjson::Value;

std::string textOf(const Value& value) {
    return value.IsString() ? displayText({value.GetString(), value.GetStringLength()}) : std::string();
}

const Value* memberOf(const Value& object, const char* name) {
    auto found = object.FindMember(name);
    return found == object.MemberEnd() ? nullptr : &found->value;
}

std::int64_t placeOf(const Value& collection) {
    const Value* index = collection.IsObject() ? memberOf(collection, "index") : nullptr;
    return index && index->IsInt64() ? index->GetInt64() : 0;
}

class Collections {
public:
    // Of an array, or of the values of an object.
    std::vector<FontSet> setsIn(const Value& values, std::size_t depth) {
        std::vector<const Value*> collections;
        if (values.IsArray())
            for (const Value& value : values.GetArray()) collections.push_back(&value);
        if (values.IsObject())
            for (const auto& [name, value] : values.GetObject()) collections.push_back(&value);
        if (values.IsObject()) std::ranges::stable_sort(collections, {}, [](const Value* v) { return placeOf(*v); });
        std::vector<FontSet> sets;
        for (const Value* collection : collections)
            if (collection->IsObject() && depth < kDeepestSets && sets_ < kMostSets) add(*collection, depth, sets);
        return sets;
    }

private:
    void add(const Value& collection, std::size_t depth, std::vector<FontSet>& sets) {
        const Value* name = memberOf(collection, "name");
        FontSet set{name ? textOf(*name) : std::string(), SetOwner::FontManager, {}, {}};
        if (set.name.empty()) return;
        ++sets_;
        if (const Value* families = memberOf(collection, "families"); families && families->IsArray())
            for (const Value& family : families->GetArray())
                if (std::string text = textOf(family); !text.empty() && members_ < kMostMembers) {
                    ++members_;
                    set.families.push_back(std::move(text));
                }
        if (const Value* children = memberOf(collection, "children")) set.children = setsIn(*children, depth + 1);
        sets.push_back(std::move(set));
    }

    std::size_t sets_ = 0, members_ = 0;
};

}  // namespace

std::vector<FontSet> fontManagerCollections(std::string_view json) {
    rapidjson::Document document;
    // Takes no stack for each level.
    document.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(json.data(), json.size());
    if (document.HasParseError()) return {};
    const Value* entries = document.IsObject() ? memberOf(document, "entries") : nullptr;
    return Collections().setsIn(entries ? *entries : document, 0);
}

}  // namespace linux
