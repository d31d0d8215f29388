#include "pane/fontcatalog/FontListReader.h"

#include "pane/fontcatalog/TextLines.h"
#include "platform/PropertyListArena.h"
#include "platform/PropertyListHash.h"
#include "platform/Unicode.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace fontcatalog {
namespace {

using platform::PropertyList;
using platform::PropertyListArena;

constexpr std::string_view kRecordStart = "%BeginFont";
constexpr std::string_view kRecordEnd = "%EndFont";

// The keys that have a meaning here, interned first and so numbered from 0.
enum KnownKey : std::uint32_t {
    kFontName,
    kFullName,
    kFamilyName,
    kOutlineFileName,
    kRealFullName,
    kFontListFilePath,
    kFontFilePath
};
constexpr std::string_view kKnownKeys[] = {"FontName",     "FullName",         "FamilyName",  "OutlineFileName",
                                           "RealFullName", "FontListFilePath", "FontFilePath"};

template <typename Word>
bool areEndsSame(const char* a, const char* b, std::size_t size) {
    Word words[4];
    std::memcpy(&words[0], a, sizeof(Word));
    std::memcpy(&words[1], b, sizeof(Word));
    std::memcpy(&words[2], a + size - sizeof(Word), sizeof(Word));
    std::memcpy(&words[3], b + size - sizeof(Word), sizeof(Word));
    return words[0] == words[1] && words[2] == words[3];
}

// Keys and values are short, and for two million of them the call of a library function is worth saving: up to sixteen
// bytes are two words, which may overlap.
bool isSame(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    if (a.size() > 16 || a.size() < 4) return a == b;
    return a.size() < 8 ? areEndsSame<std::uint32_t>(a.data(), b.data(), a.size())
                        : areEndsSame<std::uint64_t>(a.data(), b.data(), a.size());
}

// The keys of a list: each is stored once. A key knows where the record at hand has it, so that a record of a million
// lines takes no longer for each than one of twenty.
class KeyTable {
public:
    struct Key {
        PropertyListArena::String name;
        std::string_view text;
        PropertyListArena::String value = nullptr;  // the last one stored: most are those of the record before
        std::uint32_t record = 0, field = 0;        // the last record that has the key, and its place there
        std::uint32_t follower = 0;                 // the key that came next the last time
    };

    explicit KeyTable(PropertyListArena& arena) : arena_(arena) {}

    Key& operator[](std::uint32_t key) { return keys_[key]; }
    const Key& operator[](std::uint32_t key) const { return keys_[key]; }

    std::uint32_t numberOf(std::string_view name) {
        const std::uint32_t hash = platform::hashText(name);
        const std::uint32_t found = table_.find(hash, [&](std::uint32_t key) { return isNamed(key, name); });
        if (found != platform::HashTable::kMissing) return found;
        const auto added = static_cast<std::uint32_t>(keys_.size());
        const PropertyListArena::String string = arena_.string(name);
        keys_.push_back({string, PropertyListArena::textOf(string)});
        table_.add(hash, added);
        return added;
    }

    // Records mostly have their keys in the same order: a guess, and its check, save most searches.
    std::uint32_t likelyAfter(std::uint32_t previous) const { return keys_[previous].follower; }
    std::uint32_t numberAfter(std::uint32_t previous, std::string_view name) {
        return keys_[previous].follower = numberOf(name);
    }
    bool begins(std::string_view line, std::uint32_t key) const {
        const std::string_view name = nameOf(key);
        return line.size() > name.size() && line[name.size()] == ':' && isSame(line.substr(0, name.size()), name);
    }
    std::string_view nameOf(std::uint32_t key) const { return keys_[key].text; }

private:
    bool isNamed(std::uint32_t key, std::string_view name) const { return nameOf(key) == name; }

    PropertyListArena& arena_;
    std::vector<Key> keys_;
    platform::HashTable table_;
};

}  // namespace

struct FontListReader::Impl {
    struct Field {
        std::uint32_t key;
        std::string_view value;
    };

    Impl(std::string_view list, std::string_view listPath, const FontFileFinder& findFontFile, platform::Log& theLog)
        : text(list), path(listPath), find(findFontFile), log(theLog), keys(arena) {
        for (const std::string_view key : kKnownKeys) keys.numberOf(key);
    }

    bool has(std::uint32_t key) const { return keys[key].record == record; }
    std::string_view value(std::uint32_t key) const { return has(key) ? fields[keys[key].field].value : ""; }

    void set(std::uint32_t number, std::string_view value) {
        KeyTable::Key& key = keys[number];
        if (key.record == record) {
            fields[key.field].value = value;
            return;
        }
        key.record = record;
        key.field = static_cast<std::uint32_t>(fields.size());
        fields.push_back({number, value});
    }

    void readLines(std::string_view recordText) {
        ++record;
        fields.clear();
        std::uint32_t key = 0;
        TextLines lines(recordText);
        for (std::string_view line; lines.next(line);) {
            std::uint32_t next = keys.likelyAfter(key);
            std::size_t colon = keys.nameOf(next).size();
            if (!keys.begins(line, next)) {
                colon = line.find(':');
                if (colon == std::string_view::npos) continue;
                next = keys.numberAfter(key, line.substr(0, colon));
            }
            const std::string_view lineValue = line.substr(colon + 1);
            if (lineValue == "ITC New Baskerville") log("What");
            if (!lineValue.empty()) set(key = next, lineValue);
        }
    }

    void deriveFields() {
        if (has(kFullName) && has(kFamilyName)) {
            set(kRealFullName, value(kFullName));
            set(kFullName, value(kFamilyName));
        }
        if (!has(kOutlineFileName)) return;
        if (isPathText) set(kFontListFilePath, path);
        relativePath = value(kOutlineFileName);
        std::replace(relativePath.begin(), relativePath.end(), '\\', '/');
        auto found = find ? find(relativePath) : std::nullopt;
        if (!found || !platform::isValidUTF8(*found)) return;
        fontFilePath = std::move(*found);
        set(kFontFilePath, fontFilePath);
    }

    PropertyListArena::String stored(const Field& field) {
        PropertyListArena::String& last = keys[field.key].value;
        if (last && isSame(PropertyListArena::textOf(last), field.value)) return last;
        return last = arena.string(field.value);
    }

    PropertyList storedRecord() {
        if (fields.empty()) return {};
        storedFields.clear();
        for (const Field& field : fields) storedFields.push_back({keys[field.key].name, stored(field)});
        return arena.dictionary(storedFields);
    }

    void keep(NamesCollection& names) {
        const PropertyList made = storedRecord();
        const PropertyList name = arena.value(keys[kFontName].value);
        const PropertyList old = names.exchange(name, made);
        if (!old || old["FullName"].stringValue() == value(kFullName)) return;
        log("Multiple entries for font %@. Old one is %@. New one is %@", name, old["FullName"], made["FullName"]);
        log("%@ vs %@", old, made);
    }

    const std::string_view text, path;
    const bool isPathText = platform::isValidUTF8(path);
    const FontFileFinder& find;
    platform::Log& log;
    PropertyListArena arena;
    KeyTable keys;

    std::uint32_t record = 0;
    std::vector<Field> fields;  // of the record at hand, in the order in which their keys came first
    std::vector<PropertyListArena::Field> storedFields;
    std::string relativePath, fontFilePath;
};

FontListReader::FontListReader(std::string_view list, std::string_view path, const FontFileFinder& findFontFile,
                               platform::Log& log)
    : impl_(std::make_unique<Impl>(list, path, findFontFile, log)) {}

FontListReader::~FontListReader() = default;

PropertyList FontListReader::recordIn(std::string_view recordText) {
    impl_->readLines(recordText);
    impl_->deriveFields();
    return impl_->storedRecord();
}

void FontListReader::readInto(NamesCollection& names) {
    const std::string_view text = impl_->text;
    std::size_t start = text.find(kRecordStart);
    while (start != std::string_view::npos) {
        const std::size_t end = std::min(text.find(kRecordEnd, start), text.size());
        impl_->readLines(text.substr(start, end - start));
        impl_->deriveFields();
        if (impl_->has(kFontName) && impl_->has(kFullName)) impl_->keep(names);
        start = text.find(kRecordStart, end);
    }
}

}  // namespace fontcatalog
