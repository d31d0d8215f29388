// Makes many dictionaries of strings at little cost: they share one block of storage, and their strings stay where they
// are, in a text that the storage keeps alive.
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

    // The text stays alive, whole, as long as the arena or any dictionary that it made.
    explicit PropertyListArena(std::shared_ptr<const std::string> text);
    ~PropertyListArena();
    PropertyListArena(const PropertyListArena&) = delete;

    // Valid UTF-8 is the caller's promise. `stringWithin` is not copied: it must lie within the arena's text.
    String stringWithin(std::string_view validUtf8);
    String copiedString(std::string_view validUtf8);
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
