// An immutable property-list value: a string, boolean, integer, real, date, data, array or dictionary, or nothing.
//
// Copying a value copies one pointer; the storage is shared and freed with its last holder. A value may be read from
// several threads at once, and copies of it made and dropped in each. A value that is part of a decoded file or of an
// arena keeps all of it in memory.
//
// Nothing here throws but std::bad_alloc; what cannot be made is nothing.
//
// "Nothing" (a default-constructed PropertyList) stands for a missing value. Every reader accepts it and answers as for
// an empty or zero value, so look-ups can be chained without a test at each step:
//     entry["Settings"]["FontSize"].integerValue()
#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace propertylist {

// A point in time, in microseconds since 1970-01-01T00:00:00Z (proleptic Gregorian calendar, no leap seconds).
struct Date {
    std::int64_t microseconds = 0;
    auto operator<=>(const Date&) const = default;  // NOLINT(modernize-use-nullptr)
};

class PropertyList {
public:
    enum class Type : std::uint8_t { Nothing, String, Boolean, Integer, Real, Date, Data, Array, Dictionary };

    struct Entry;  // a key (always a string) and its value, defined below
    struct Node;   // the shared storage, private to the implementation

    // The deepest nesting that a codec reads or writes: a plain string has depth 1, an array of strings depth 2.
    static constexpr unsigned kMaximumDepth = 512;

    PropertyList() noexcept = default;
    PropertyList(const PropertyList& other) noexcept;
    PropertyList(PropertyList&& other) noexcept : node_(std::exchange(other.node_, nullptr)) {}
    PropertyList& operator=(const PropertyList& other) noexcept;
    PropertyList& operator=(PropertyList&& other) noexcept;
    ~PropertyList();

    // Strings are UTF-8, may hold U+0000, and are copied. Nothing when the bytes are not valid UTF-8 or take 4 GiB. A
    // `const char*` must not be null.
    PropertyList(std::string_view text);
    PropertyList(const std::string& text) : PropertyList(std::string_view(text)) {}
    PropertyList(const char* text) : PropertyList(std::string_view(text)) {}
    PropertyList(std::same_as<bool> auto value) : PropertyList(makeBoolean(value)) {}
    template <std::integral Number>
        requires(!std::same_as<Number, bool>)
    PropertyList(Number value) : PropertyList(makeInteger(value)) {}
    // Any double, infinities and NaN too; -0 stays what it is.
    PropertyList(double value);
    // Kept to the microsecond where the binary form's seconds since 2001 can tell microseconds apart (some 270 years to
    // either side), else to the nearest value that it can hold: what is written always equals what is read back.
    PropertyList(Date value);
    // Copies the bytes; nothing when they take 4 GiB.
    static PropertyList data(std::string_view bytes);
    // Elements that are nothing are left out. Nesting has no limit but that of the codecs.
    static PropertyList array(std::vector<PropertyList> elements);
    // As if the pairs were set one after the other in a MutableDictionary: the last value of a key counts.
    static PropertyList dictionary(std::initializer_list<std::pair<std::string_view, PropertyList>> pairs);

    Type type() const noexcept;
    // False for nothing alone: an empty string, false and 0 are values.
    explicit operator bool() const noexcept { return node_ != nullptr; }
    bool isString() const noexcept { return type() == Type::String; }
    bool isBoolean() const noexcept { return type() == Type::Boolean; }
    bool isDate() const noexcept { return type() == Type::Date; }
    bool isData() const noexcept { return type() == Type::Data; }
    bool isArray() const noexcept { return type() == Type::Array; }
    bool isDictionary() const noexcept { return type() == Type::Dictionary; }
    // A boolean is a number to its readers.
    bool isNumber() const noexcept;

    // Views live as long as some holder of this value; each is empty for a value of another type.
    std::string_view stringValue() const noexcept;
    std::string_view dataValue() const noexcept;
    std::span<const PropertyList> elements() const noexcept;
    std::span<const Entry> entries() const noexcept;  // in insertion order

    // Numbers of every kind; 0 and false for anything else. A real is cut off towards zero and limited to the range of
    // the result; NaN reads as 0.
    bool boolValue() const noexcept;
    std::int64_t integerValue() const noexcept;
    double realValue() const noexcept;
    // Only an integer above INT64_MAX has a value here that integerValue() cannot give.
    bool isUnsigned() const noexcept;
    std::uint64_t unsignedValue() const noexcept;  // 0 for what is negative
    std::optional<Date> dateValue() const noexcept;

    std::size_t size() const noexcept;  // elements of an array, entries of a dictionary, else 0
    // Nothing beyond the end, for a missing key and for a value of another type. The reference lives as long as some
    // holder of this value. Look-up by key takes constant time in a dictionary of more than 24 entries; the index
    // behind it, some 16 bytes for an entry, is built by the first look-up and kept.
    const PropertyList& operator[](std::size_t index) const noexcept;
    const PropertyList& operator[](int index) const noexcept { return (*this)[static_cast<std::size_t>(index)]; }
    const PropertyList& operator[](std::string_view key) const noexcept;
    const PropertyList& operator[](const char* key) const noexcept { return (*this)[std::string_view(key)]; }

    // Same type and value; dictionaries compare without regard to order. Numbers of different kinds differ. NaN equals
    // itself. Nothing equals nothing. Takes no stack for deep nesting.
    friend bool operator==(const PropertyList& a, const PropertyList& b) noexcept { return equal(a, b); }

    // A readable form for logs: strings as they are at the top level, containers as {key = value;} and (a, b), data in
    // hexadecimal, "..." for what is nested deeper than 512. Empty for nothing. Not meant to be read back.
    std::string description() const;

    const Node* node() const noexcept { return node_; }  // for the codecs

private:
    friend struct PropertyListStorage;
    explicit PropertyList(const Node* adopted) noexcept : node_(adopted) {}
    static PropertyList makeBoolean(bool value) noexcept;
    static PropertyList makeSigned(std::int64_t value);
    static PropertyList makeUnsigned(std::uint64_t value);
    template <std::integral Number>
    static PropertyList makeInteger(Number value) {
        if constexpr (std::signed_integral<Number>)
            return makeSigned(value);
        else
            return makeUnsigned(value);
    }
    static bool equal(const PropertyList& a, const PropertyList& b) noexcept;

    const Node* node_ = nullptr;
};

struct PropertyList::Entry {
    PropertyList key;
    PropertyList value;
};

// A dictionary under construction: a mutable copy. Setting and finding take constant time in a large one. Belongs to
// one thread at a time, for reading too.
class MutableDictionary {
public:
    MutableDictionary() = default;
    explicit MutableDictionary(const PropertyList& source);  // empty unless the source is a dictionary
    // A new key goes to the end; an existing one keeps its place. Nothing as value removes the key. A key that is not
    // valid UTF-8 is ignored.
    void set(std::string_view key, PropertyList value);
    void remove(std::string_view key);
    // As set(), but keeps the very key, which must be a string, and returns the value that it had. One search does
    // both.
    PropertyList exchange(PropertyList key, PropertyList value);
    // Nothing when the key is missing. The reference is good until the next change.
    const PropertyList& operator[](std::string_view key) const noexcept;
    std::size_t size() const noexcept { return entries_.size() - removed_; }
    // In the order in which the keys came first; good until the next change.
    std::span<const PropertyList::Entry> entries();
    // The dictionary as a value, an empty one too; this one is empty from then on.
    PropertyList freeze() &&;

private:
    struct Index;
    struct IndexDeleter {
        void operator()(Index* index) const noexcept;
    };
    std::size_t find(std::string_view key) const;  // entries_.size() when missing
    void append(PropertyList key, PropertyList value);
    void makeIndex() const;
    void compact();

    std::vector<PropertyList::Entry> entries_;  // without a key where one was removed
    std::size_t removed_ = 0;
    mutable std::unique_ptr<Index, IndexDeleter> index_;  // made when the dictionary has grown large
};

// Values that people or scripts may have stored as text: booleans and numbers as they are; of strings true/yes/1 and
// false/no/0 in any case of letters, and for integers decimal numbers that fit into 64 bits, too. Anything else reads
// as false and 0.
bool coercedBoolean(const PropertyList& value);
std::int64_t coercedInteger(const PropertyList& value);

// A mutable copy of an array's elements; empty unless the source is an array.
std::vector<PropertyList> mutableArray(const PropertyList& source);

}  // namespace propertylist
