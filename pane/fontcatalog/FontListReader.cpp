#include "pane/fontcatalog/FontListReader.h"

#include "pane/fontcatalog/RecordFields.h"
#include "pane/fontcatalog/TextLines.h"
#include "propertylist/Unicode.h"

#include <algorithm>
#include <cstring>

namespace fontcatalog {
namespace {

using platform::PropertyList;
using propertylist::PropertyListArena;

constexpr std::string_view kRecordStart = "%BeginFont";
constexpr std::string_view kRecordEnd = "%EndFont";

template <typename Word>
bool areEndsSame(const char* a, const char* b, std::size_t size) {
    Word words[4];
    std::memcpy(&words[0], a, sizeof(Word));
    std::memcpy(&words[1], b, sizeof(Word));
    std::memcpy(&words[2], a + size - sizeof(Word), sizeof(Word));
    std::memcpy(&words[3], b + size - sizeof(Word), sizeof(Word));
    return words[0] == words[1] && words[2] == words[3];
}

// Keys are short, and for two million of them the call of a library function is worth saving: up to sixteen bytes are
// two words, which may overlap.
bool isSame(const char* a, const char* b, std::size_t size) {
    if (size > 16 || size < 4) return std::memcmp(a, b, size) == 0;
    return size < 8 ? areEndsSame<std::uint32_t>(a, b, size) : areEndsSame<std::uint64_t>(a, b, size);
}

std::size_t distance(const char* from, const char* to) { return static_cast<std::size_t>(to - from); }

}  // namespace

struct FontListReader::Impl {
    using Text = PropertyListArena::Text;

    Impl(fontcatalog::Text list, std::string_view listPath, const FontFileFinder& findFontFile, platform::Log& theLog)
        : text(list.characters),
          isMacRoman(list.isMacRoman),
          path(listPath),
          find(findFontFile),
          log(theLog),
          arena(std::move(list.owner)),
          fields(arena) {}

    // Mostly a line has the key that followed the last one in an earlier record, and a value without white space at its
    // end: that is seen with one comparison. For the others readWithCare() goes by the rules.
    void readLines(std::string_view record) {
        fields.clear();
        const char* at = record.data();
        for (const char* const end = at + record.size(); at != end;) {
            if (*at == '\n' || *at == '\r') {
                ++at;
                continue;
            }
            const std::size_t start = fields.likelyKey().size() + 1;
            const bool isLikely = distance(at, end) > start && isSame(at, fields.likelyKey().data(), start);
            const char* const last = lineEnd(isLikely ? at + start : at, end);
            if (isLikely && last != at + start && isSurelyNoWhiteSpace(last[-1]) && isAsItIs(last))
                setLikely({at + start, distance(at + start, last)});
            else
                readWithCare({at, distance(at, last)});
            at = last;
        }
    }

    void setLikely(std::string_view value) {
        trace(value);
        fields.setLikely(arena.part(value));
    }

    void readWithCare(std::string_view segment) {
        const std::string_view line = trimmed(converted(segment));
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos || colon + 1 == line.size()) return;
        const std::string_view key = line.substr(0, colon), value = line.substr(colon + 1);
        trace(value);
        fields.set(key, stored(value), [&] { return stored(key); });
    }

    // True when no byte up to there is in need of conversion.
    bool isAsItIs(const char* last) const { return !isMacRoman || last <= nextHighByte; }

    std::string_view converted(std::string_view segment) {
        const char* const last = segment.data() + segment.size();
        if (isAsItIs(last)) return segment;
        if (nextHighByte < segment.data())
            nextHighByte = segment.data() +
                           lengthOfAsciiRun({segment.data(), distance(segment.data(), text.data() + text.size())});
        if (last <= nextHighByte) return segment;
        convertedLine.clear();
        appendMacRoman(convertedLine, segment);
        return convertedLine;
    }

    Text stored(std::string_view part) {
        const bool isInText = part.data() >= text.data() && part.data() < text.data() + text.size();
        return isInText ? arena.part(part) : arena.copy(part);
    }

    void trace(std::string_view value) {
        if (value == "ITC New Baskerville") log("What");
    }

    void deriveFields() {
        const auto fullName = fields.value(kFullName), familyName = fields.value(kFamilyName);
        if (fullName && familyName) {
            fields.derive("RealFullName", *fullName);
            fields.derive("FullName", *familyName);
        }
        const auto outline = fields.value(kOutlineFileName);
        if (!outline) return;
        if (isPathText) fields.derive("FontListFilePath", listPathText());
        relativePath = arena.view(*outline);
        std::replace(relativePath.begin(), relativePath.end(), '\\', '/');
        const auto found = find ? find(relativePath) : std::nullopt;
        if (found && propertylist::isValidUTF8(*found)) fields.derive("FontFilePath", arena.copy(*found));
    }

    Text listPathText() {
        if (!pathText) pathText = arena.copy(path);
        return *pathText;
    }

    void keep(NamesCollection& names) {
        const auto fontName = fields.value(kFontName), fullName = fields.value(kFullName);
        if (!fontName || !fullName) return;
        const PropertyList name = arena.string(*fontName), made = fields.dictionary();
        const PropertyList old = names.exchange(name, made);
        if (!old) return;
        const auto oldFullName = PropertyListArena::textIn(old, "FullName");
        if (oldFullName == arena.view(*fullName)) return;
        log("Multiple entries for font %@. Old one is %@. New one is %@", name,
            oldFullName ? PropertyList(*oldFullName) : PropertyList(), arena.view(*fullName));
        log("%@ vs %@", old, made);
    }

    const std::string_view text;
    const bool isMacRoman;
    const std::string_view path;
    const bool isPathText = propertylist::isValidUTF8(path);
    const FontFileFinder& find;
    platform::Log& log;
    PropertyListArena arena;
    RecordFields fields;  // of the record at hand

    const char* nextHighByte = text.data();  // at or after the last place where one was looked for
    std::string convertedLine, relativePath;
    std::optional<Text> pathText;
};

FontListReader::FontListReader(Text list, std::string_view path, const FontFileFinder& findFontFile, platform::Log& log)
    : impl_(std::make_unique<Impl>(std::move(list), path, findFontFile, log)) {}

FontListReader::~FontListReader() = default;

void FontListReader::readInto(NamesCollection& names) {
    const std::string_view text = impl_->text;
    std::size_t start = text.find(kRecordStart);
    while (start != std::string_view::npos) {
        const std::size_t end = std::min(text.find(kRecordEnd, start), text.size());
        impl_->readLines(text.substr(start, end - start));
        impl_->deriveFields();
        impl_->keep(names);
        start = text.find(kRecordStart, end);
    }
}

}  // namespace fontcatalog
