// An escaped name in both forms: the decoder against the plain rules.
#include "fuzz/Reference.h"
#include "pane/fontcatalog/EscapedName.h"
#include "propertylist/Unicode.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fontcatalog::FileText text =
        fontcatalog::decodedText(std::make_shared<const std::string>(reinterpret_cast<const char*>(data), size));
    for (const bool isUnicode : {false, true}) {
        const std::string name = fontcatalog::escapedNameForString_isUnicode(text.characters, isUnicode);
        if (!propertylist::isValidUTF8(name) || name != reference::escapedName(text.characters, isUnicode))
            std::abort();
    }
    return 0;
}
