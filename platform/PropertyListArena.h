// Makes many dictionaries of strings at little cost: they share one storage, which is freed with the last of them, and
// most strings that come again and again are stored once.
#pragma once

#include "platform/PropertyList.h"

#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace platform {

struct PropertyListDocument;

class PropertyListArena {
public:
    // A string of this arena, good as long as the arena or any dictionary that it made.
    using String = const PropertyList::Node*;
    struct Field {
        String key, value;
    };

    PropertyListArena();
    ~PropertyListArena();
    PropertyListArena(const PropertyListArena&) = delete;

    String string(std::string_view validUtf8);  // valid UTF-8 is the caller's promise
    // Different keys are the caller's promise.
    PropertyList dictionary(std::span<const Field> fields);

    PropertyList value(String string);
    static std::string_view textOf(String string);

private:
    PropertyListDocument* document_;
    PropertyList holder_;                   // keeps the document alive
    std::array<String, 1024> recent_ = {};  // by hash: the same strings come again and again
};

}  // namespace platform
