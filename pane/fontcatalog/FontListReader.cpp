#include "pane/fontcatalog/FontListReader.h"

#include "pane/fontcatalog/TextLines.h"
#include "platform/PropertyListArena.h"
#include "platform/PropertyListHash.h"
#include "platform/Unicode.h"

#include <algorithm>
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

// The keys of a list: each is stored once. A key knows where the record at hand has it, so that a record of a million
// lines takes no longer for each than one of twenty.
class KeyTable {
public:
    struct Key {
        PropertyListArena::String name;
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
        keys_.push_back({arena_.copiedString(name)});
        table_.add(hash, added);
        return added;
    }

    // The same, faster when the keys come in an order that has been seen before.
    std::uint32_t numberAfter(std::uint32_t previous, std::string_view name) {
        const std::uint32_t likely = keys_[previous].follower;
        if (isNamed(likely, name)) return likely;
        const std::uint32_t key = numberOf(name);
        keys_[previous].follower = key;
        return key;
    }

private:
    bool isNamed(std::uint32_t key, std::string_view name) const {
        return PropertyListArena::textOf(keys_[key].name) == name;
    }

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

    Impl(const Text& list, std::string_view listPath, const FontFileFinder& findFontFile, platform::Log& theLog)
        : text(list.characters), path(listPath), find(findFontFile), log(theLog), arena(list.owner), keys(arena) {
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
            const std::size_t colon = line.find(':');
            if (colon == std::string_view::npos) continue;
            const std::string_view lineValue = line.substr(colon + 1);
            if (lineValue == "ITC New Baskerville") log("What");
            if (lineValue.empty()) continue;
            key = keys.numberAfter(key, line.substr(0, colon));
            set(key, lineValue);
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
        if (last && PropertyListArena::textOf(last) == field.value) return last;
        const bool isOutsideText = field.key == kFontListFilePath || field.key == kFontFilePath;
        return last = isOutsideText ? arena.copiedString(field.value) : arena.stringWithin(field.value);
    }

    PropertyList storedRecord() {
        if (fields.empty()) return {};
        storedFields.clear();
        for (const Field& field : fields) storedFields.push_back({keys[field.key].name, stored(field)});
        return arena.dictionary(storedFields);
    }

    void keep(NamesCollection& names) {
        const std::string_view fontName = value(kFontName), fullName = value(kFullName);
        const PropertyList made = storedRecord();
        if (const PropertyList old = names[fontName]; old && old["FullName"].stringValue() != fullName) {
            log("Multiple entries for font %@. Old one is %@. New one is %@", fontName, old["FullName"], fullName);
            log("%@ vs %@", old, made);
        }
        names.set(fontName, made);
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

FontListReader::FontListReader(const Text& list, std::string_view path, const FontFileFinder& findFontFile,
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
