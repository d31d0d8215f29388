// A font list: the reader against the plain rules, records, their order and log lines.
#include "fuzz/Reference.h"

#include "propertylist/Unicode.h"

#include <cstdlib>

namespace {

std::optional<std::string> findEverySecond(std::string_view path) {
    if (path.size() % 2) return std::nullopt;
    return "/Fonts/" + std::string(path);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::string_view kPath = "/Lists/AdobeFnt.lst";
    const auto bytes = std::make_shared<const std::string>(reinterpret_cast<const char*>(data), size);
    const fontcatalog::FileText text = fontcatalog::decodedText(bytes);
    if (!propertylist::isValidUTF8(text.characters)) std::abort();

    fontcatalog::NamesCollection names, expected;
    reference::RecordingLog log, expectedLog;
    fontcatalog::readFontList(fontcatalog::listText(bytes), kPath, findEverySecond, log, names);
    reference::readFontList(text.characters, kPath, findEverySecond, expected, expectedLog);
    const auto catalogue = std::move(names).freeze(), plain = std::move(expected).freeze();
    if (!(catalogue == plain) || catalogue.description() != plain.description()) std::abort();
    if (log.lines != expectedLog.lines) std::abort();
    return 0;
}
