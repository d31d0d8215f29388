// A font name database: the reader against the plain rules, and the version.
#include "fuzz/Reference.h"
#include "pane/fontcatalog/NameDatabaseReader.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fontcatalog::FileText text =
        fontcatalog::decodedText(std::make_shared<const std::string>(reinterpret_cast<const char*>(data), size));
    fontcatalog::NamesCollection names, expected;
    fontcatalog::readNameDatabase(text, names);
    reference::readNameDatabase(text.characters, expected);
    if (!(std::move(names).freeze() == std::move(expected).freeze())) std::abort();

    const float version = fontcatalog::nameDatabaseVersion(text.characters);
    if (std::isnan(version)) std::abort();
    if (text.characters.find("version=") == std::string_view::npos && version != 0) std::abort();
    return 0;
}
