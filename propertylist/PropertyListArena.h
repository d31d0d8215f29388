// Makes many dictionaries of strings at little cost in time and memory. They share one storage, which is freed with the
// last of them and of their strings; the strings are parts of one text wherever they can be.
//
// An arena and what it has made belong to one thread until the arena is gone; from then on the values are as any other.
#pragma once

#include "propertylist/PropertyList.h"

#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace propertylist {

struct PropertyListDocument;

class PropertyListArena {
public:
    // A string of this arena, good as long as the arena or any value that it made. Equal texts may be different
    // strings.
    class String {
    public:
        String() = default;
        explicit operator bool() const { return node_ != nullptr; }
        // Whether they are one string, not whether their texts are equal.
        friend bool operator==(String a, String b) { return a.node_ == b.node_; }
        std::string_view text() const;  // not of a default-constructed one

    private:
        friend class PropertyListArena;
        explicit String(const PropertyList::Node* node) : node_(node) {}
        const PropertyList::Node* node_ = nullptr;
    };
    struct Field {
        String key, value;
    };

    // The text is kept as long as the arena or any value that it made. Null for no text.
    explicit PropertyListArena(std::shared_ptr<const std::string> text = nullptr);
    ~PropertyListArena();
    PropertyListArena(const PropertyListArena&) = delete;

    // Must be valid UTF-8, which is not checked, and shorter than 4 GiB. A part of the arena's text is not copied. What
    // comes again soon is mostly stored once.
    String string(std::string_view validUTF8);
    // The keys must be different, which is not checked.
    PropertyList dictionary(std::span<const Field> fields);
    PropertyList value(String string) const;

private:
    struct Recent {
        std::uint32_t mark = 0;
        const PropertyList::Node* node = nullptr;
    };
    static constexpr std::size_t kRecent = 1024;

    PropertyListDocument* document_;
    PropertyList holder_;  // keeps the document alive
    std::array<Recent, kRecent> recent_;
};

}  // namespace propertylist
