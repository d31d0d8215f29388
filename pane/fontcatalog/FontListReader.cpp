#include "pane/fontcatalog/FontListReader.h"

#include "pane/fontcatalog/TextLines.h"
#include "propertylist/Hash.h"
#include "propertylist/PropertyListArena.h"

#include <algorithm>
#include <vector>

namespace fontcatalog {
namespace {

using platform::PropertyList;
using propertylist::PropertyListArena;
using String = PropertyListArena::String;

constexpr std::string_view kRecordStart = "%BeginFont";
constexpr std::string_view kRecordEnd = "%EndFont";

// Numbers of the keys that have a meaning here.
enum KnownKey : std::uint32_t {
    kNoKey,
    kFontName,
    kFullName,
    kFamilyName,
    kRealFullName,
    kOutlineFileName,
    kFontListFilePath,
    kFontFilePath,
};
// No line begins with a line end, so that "no key" is never found.
constexpr std::string_view kKnownKeys[] = {"\n",           "FontName",        "FullName",         "FamilyName",
                                           "RealFullName", "OutlineFileName", "FontListFilePath", "FontFilePath"};

// The keys and values of the record at hand, in the order in which the keys came first. The keys of a list are few and
// come in few orders: they have numbers, and the one that followed a key the last time is tried first.
class RecordFields {
public:
    explicit RecordFields(PropertyListArena& arena) : arena_(arena) { forgetKeys(); }

    void clear() {
        fields_.clear();
        last_ = kNoKey;
        if (keys_.size() > kMostKept) forgetKeys();
    }

    // The key of the line that most likely comes next.
    std::string_view likelyKey() const { return keys_[keys_[last_].next].text; }
    void addLikely(String value) { add(keys_[last_].next, value); }
    // A line of the record. The last value of a key counts.
    void add(std::string_view key, String value) { add(numberOf(key), value); }

    // Without a word on what comes next.
    void set(std::uint32_t number, String value) {
        Key& key = keys_[number];
        if (isThere(key)) {
            fields_[key.place].value = value;
            return;
        }
        key.place = static_cast<std::uint32_t>(fields_.size());
        fields_.push_back({key.string, value});
    }
    String value(KnownKey key) const { return isThere(keys_[key]) ? fields_[keys_[key].place].value : String(); }
    // The keys of a vast record make room.
    PropertyList dictionary() {
        if (keys_.size() > kMostKept) forgetKeys();
        return arena_.dictionary(fields_);
    }

private:
    struct Key {
        String string;
        std::string_view text;    // of the string
        std::uint32_t place = 0;  // in the record, if it is there
        std::uint32_t next = kNoKey;
    };
    static constexpr std::size_t kMostKept = 4096;

    bool isThere(const Key& key) const { return key.place < fields_.size() && fields_[key.place].key == key.string; }

    void add(std::uint32_t number, String value) {
        keys_[last_].next = number;
        last_ = number;
        set(number, value);
    }

    std::uint32_t numberOf(std::string_view key) {
        const std::uint32_t hash = propertylist::hashText(key);
        const auto isSame = [&](std::uint32_t other) { return keys_[other].text == key; };
        std::uint32_t number = numbers_.find(hash, isSame);
        if (number == propertylist::HashTable::kMissing) {
            numbers_.add(hash, number = static_cast<std::uint32_t>(keys_.size()));
            const String string = arena_.string(key);
            keys_.push_back({string, string.text()});
        }
        return number;
    }

    void forgetKeys() {
        keys_ = {};
        numbers_.clear(0);
        last_ = kNoKey;
        for (const std::string_view key : kKnownKeys) numberOf(key);
    }

    PropertyListArena& arena_;
    std::vector<PropertyListArena::Field> fields_;
    std::vector<Key> keys_;            // of the list, by number
    propertylist::HashTable numbers_;  // by text
    std::uint32_t last_ = kNoKey;      // the key of the line before
};

class ListReader {
public:
    ListReader(const FileText& list, std::string_view path, const FontFileFinder& find, platform::Log& log,
               NamesCollection& names)
        : text_(list.characters),
          isMacRoman_(list.isMacRoman),
          path_(path),
          find_(find),
          log_(log),
          names_(names),
          arena_(list.owner) {}

    void readAll() {
        LineTaker lines(text_);
        for (std::size_t start = text_.find(kRecordStart); start != std::string_view::npos;) {
            const std::size_t end = std::min(text_.find(kRecordEnd, start), text_.size());
            fields_.clear();
            lines.goTo(text_.substr(start, end - start));
            for (std::string_view line; lines.take(line);) readLine(trimmedLine(inUTF8(line)));
            deriveFields();
            keep();
            start = text_.find(kRecordStart, end);
        }
    }

private:
    std::string_view inUTF8(std::string_view line) {
        if (!isMacRoman_ || propertylist::isASCII(line)) return line;
        converted_.clear();
        appendMacRoman(converted_, line);
        return converted_;
    }

    void readLine(std::string_view line) {
        const std::string_view likely = fields_.likelyKey();
        const bool isLikely = line.size() > likely.size() && line[likely.size()] == ':' && line.starts_with(likely);
        const std::size_t colon = isLikely ? likely.size() : line.find(':');
        if (colon == std::string_view::npos || colon + 1 == line.size()) return;
        const std::string_view value = line.substr(colon + 1);
        if (value == "ITC New Baskerville") log_("What");
        isLikely ? fields_.addLikely(arena_.string(value)) : fields_.add(line.substr(0, colon), arena_.string(value));
    }

    void setPath(KnownKey key, std::string_view path) {
        if (propertylist::isValidUTF8(path)) fields_.set(key, arena_.string(path));
    }

    void deriveFields() {
        const String fullName = fields_.value(kFullName), familyName = fields_.value(kFamilyName);
        if (fullName && familyName) {
            fields_.set(kRealFullName, fullName);
            fields_.set(kFullName, familyName);
        }
        const String outline = fields_.value(kOutlineFileName);
        if (!outline) return;
        setPath(kFontListFilePath, path_);
        std::string relative(outline.text());
        for (char& c : relative) c = c == '\\' ? '/' : c;  // without a branch, unlike the library's
        if (const auto found = find_ ? find_(relative) : std::nullopt) setPath(kFontFilePath, *found);
    }

    void keep() {
        const String fontName = fields_.value(kFontName), fullName = fields_.value(kFullName);
        if (!fontName || !fullName) return;
        const PropertyList name = arena_.value(fontName), made = fields_.dictionary();
        const PropertyList old = names_.exchange(name, made);
        const PropertyList& oldFullName = old["FullName"];
        if (!old || (oldFullName && oldFullName.stringValue() == fullName.text())) return;
        log_("Multiple entries for font %@. Old one is %@. New one is %@", name, oldFullName, fullName.text());
        log_("%@ vs %@", old, made);
    }

    const std::string_view text_;
    const bool isMacRoman_;
    const std::string_view path_;
    const FontFileFinder& find_;
    platform::Log& log_;
    NamesCollection& names_;
    PropertyListArena arena_;
    RecordFields fields_{arena_};
    std::string converted_;
};

}  // namespace

void readFontList(const FileText& list, std::string_view listPath, const FontFileFinder& find, platform::Log& log,
                  NamesCollection& names) {
    ListReader(list, listPath, find, log, names).readAll();
}

}  // namespace fontcatalog
