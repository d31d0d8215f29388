#include "linux/documents/LinuxDocuments.h"

#include "linux/documents/Json.h"
#include "linux/files/Paths.h"
#include "linux/files/WholeFile.h"
#include "linux/texts/DisplayText.h"
#include "linux/texts/Localized.h"
#include "platform/Localizable.h"
#include "propertylist/ASCII.h"
#include "propertylist/Codec.h"

#include <algorithm>
#include <cstring>

using namespace platform;
using namespace propertylist;

namespace linux {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr mode_t kNewFileMode = 0600;

// The system's own words, which speak the user's language.
std::string problemWith(std::string_view path, const Failure& failure) {
    const std::string why = failure.error ? std::strerror(failure.error) : localized(failure.reason);
    return displayText(path) + ": " + why;
}

bool isUTF16(std::string_view bytes) { return bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE"); }

char firstCharacter(std::string_view text) {
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    const std::size_t at = text.find_first_not_of(" \t\r\n");
    return at == text.npos ? '\0' : text[at];
}

// Where a person finds a place in a text: its line and its character in that, each from 1.
std::string placeIn(std::string_view text, std::size_t position) {
    const std::string_view before = text.substr(0, position);
    const std::string_view line = before.substr(before.rfind('\n') + 1);
    auto startsCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    return localizedFormat("line %d, character %d", std::ranges::count(before, '\n') + 1,
                           std::ranges::count_if(line, startsCharacter) + 1);
}

std::string damaged(std::string_view name, const std::string& place, std::string_view why) {
    return localizedFormat("%@ cannot be read: %@ (%@)", displayText(name), why, place);
}

bool isJSONName(std::string_view path) {
    constexpr std::string_view kEnding = ".json";
    return path.size() >= kEnding.size() &&
           std::ranges::equal(path.substr(path.size() - kEnding.size()), kEnding, {}, lowerASCII);
}

}  // namespace

DocumentServices::Document documentIn(std::string_view bytes, std::string_view name) {
    const char first = firstCharacter(bytes);
    const bool isBinary = bytes.starts_with("bplist"), isWide = isUTF16(bytes);
    if (isBinary || isWide || first == '<') {
        DecodeProblem problem;
        PropertyList value = decodePropertyList(bytes, &problem);
        if (value) return {value, {}};
        const bool hasLines = !isBinary && !isWide;
        return {
            {},
            damaged(name, hasLines ? placeIn(bytes, problem.position) : localizedFormat("byte %d", problem.position),
                    problem.reason)};
    }
    if (first == '{' || first == '[') {
        JsonResult parsed = parseJson(bytes);
        if (parsed.error.empty()) return {parsed.value, {}};
        return {{}, damaged(name, placeIn(bytes, parsed.position), parsed.error)};
    }
    return {{}, localizedFormat("%@ is neither a property list nor JSON", displayText(name))};
}

std::optional<std::string> documentText(const PropertyList& value, DocumentForm form) {
    std::string text = form == DocumentForm::JSON ? jsonText(value, JsonLayout::Indented)
                                                  : encodePropertyList(value, PropertyListFormat::XML);
    if (text.empty()) return std::nullopt;
    if (text.back() != '\n') text += '\n';
    return text;
}

DocumentServices::Document LinuxDocuments::read(std::string_view path, std::size_t most) {
    if (!isUsablePath(path)) return {{}, problemWith(path, {"open", ENOENT})};
    Descriptor file = openForReading(files_, AT_FDCWD, std::string(path).c_str());
    if (!file) return {{}, problemWith(path, {"open", file.error()})};
    std::string bytes;
    FileIdentity identity;
    if (Failure failure = readWhole(files_, file, most, bytes, identity)) return {{}, problemWith(path, failure)};
    return documentIn(bytes, path);
}

std::string LinuxDocuments::write(std::string_view path, const PropertyList& value) {
    if (!isUsablePath(path)) return problemWith(path, {"open", ENOENT});
    std::optional<std::string> text = documentText(value, isJSONName(path) ? DocumentForm::JSON : DocumentForm::XML);
    if (!text)
        return localizedFormat("%@ cannot be written: it holds a text that this form has no way to write",
                               displayText(path));
    struct stat status;
    const std::string name(path);
    const bool isThere = files_.stat(name.c_str(), status) == 0;
    if (isThere && S_ISDIR(status.st_mode)) return problemWith(path, {"open", EISDIR});
    if (isThere && !S_ISREG(status.st_mode)) return problemWith(path, {"open", 0, localizable("not a regular file")});
    Failure failure = writeWhole(files_, name, *text, kNewFileMode);
    return failure ? problemWith(path, failure) : std::string();
}

}  // namespace linux
