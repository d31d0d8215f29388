// Makes many dictionaries of strings at little cost in time and memory. They share one storage, which is freed with the
// last of them; their strings are parts of one text wherever they can be.
//
// An arena and what it has made belong to one thread until the arena is gone.
#pragma once

#include "propertylist/PropertyList.h"
#include "propertylist/Texts.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace propertylist {

struct PackedKeys;
struct PropertyListDocument;

class PropertyListArena {
public:
    // A string of this arena, good as long as the arena or any value that it made.
    using Text = PackedText;
    // Keys of dictionaries, in order, which any number of dictionaries of this arena may share.
    using Keys = const PackedKeys*;

    // The text is kept as long as the arena or any value that it made.
    explicit PropertyListArena(std::shared_ptr<const std::string> text = nullptr);
    ~PropertyListArena();
    PropertyListArena(const PropertyListArena&) = delete;

    // A part of the arena's text, by reference; that it is valid UTF-8 is the caller's promise, as in copy().
    Text part(std::string_view text) { return texts_.part(text); }
    Text copy(std::string_view validUtf8) { return texts_.copy(validUtf8); }
    std::string_view view(Text text) const { return texts_.view(text); }

    Keys keys(std::span<const Text> different);
    // One value for each key.
    PropertyList dictionary(Keys keys, std::span<const Text> values);
    PropertyList string(Text text);

    // What stands for a key in a dictionary of strings, without the entries that a look-up there would make.
    static std::optional<std::string_view> textIn(const PropertyList& dictionary, std::string_view key);

private:
    PropertyListDocument* document_;
    PropertyList holder_;  // keeps the document alive
    PackedTexts& texts_;   // the document's
};

}  // namespace propertylist
