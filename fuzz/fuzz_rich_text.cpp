// Rich text: whatever the bytes, what is read can be handed to a toolkit as it is.
#include "qt/texts/RichTextCharacters.h"
#include "qt/texts/RichTextLinks.h"
#include "qt/texts/RichTextRuns.h"

#include <algorithm>
#include <cstdlib>

using namespace qt;

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

void checkText(const std::u16string& text) {
    std::u16string repaired = text;
    replaceLoneSurrogates(repaired);
    require(repaired == text);
    require(std::ranges::all_of(text, [](char16_t unit) { return allowedInText(unit) == unit; }));
}

void checkRun(const RichTextRun& run, std::size_t links) {
    require(run.text.empty() != run.picture.empty());
    checkText(run.text);
    require(run.width >= 0 && run.width <= 1000 && run.height >= 0 && run.height <= 1000);
    require(run.style.halfPoints > 0 && run.style.halfPoints <= 144);
    require(run.style.link >= -1 && run.style.link < static_cast<int>(links));
    require(run.style.colour.value_or(0) <= 0xFFFFFF);
}

bool couldBeOne(const RichTextRun& a, const RichTextRun& b) {
    return a.picture.empty() && b.picture.empty() && a.style == b.style;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto document = readRichTextRuns({reinterpret_cast<const char*>(data), size});
    if (!document) return 0;
    std::size_t units = 0;
    for (const RichTextParagraph& paragraph : document->paragraphs) {
        require(paragraph.runs.size() <= RichTextParagraph::kMostRuns);
        require(std::ranges::adjacent_find(paragraph.runs, couldBeOne) == paragraph.runs.end());
        for (const RichTextRun& run : paragraph.runs) {
            checkRun(run, document->links.size());
            units += run.text.size();
        }
    }
    require(units <= size && document->paragraphs.size() <= size);
    for (const std::string& link : document->links) require(richTextLink("HYPERLINK \"" + link + "\"") == link);
    return 0;
}
