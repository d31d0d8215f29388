#include "propertylist/Unicode.h"
#include "qt/texts/RichTextCharacters.h"
#include "qt/texts/RichTextLinks.h"
#include "qt/texts/RichTextRuns.h"
#include "qt/texts/RichTextState.h"
#include "qt/texts/RichTextTokens.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace qt {

using namespace propertylist;

namespace {

using Destination = RichTextDestination;

constexpr std::size_t kDeepestGroup = 500;  // deeper ones are read as part of it
constexpr std::size_t kLongestAside = 4000;
constexpr char16_t kUnknown = u'\uFFFD';
constexpr int kMacRomanCodePage = 10000;

std::string utf8(std::u16string text) {
    constexpr ByteOrder kOrder =
        std::endian::native == std::endian::little ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
    replaceLoneSurrogates(text);
    return utf8FromUTF16({reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)}, kOrder)
        .value_or("");
}

std::string withoutBlanksAround(std::string text) {
    text.erase(std::min(text.find_last_not_of(' ') + 1, text.size()));
    return text.erase(0, text.find_first_not_of(' '));
}

class Reader {
public:
    explicit Reader(std::string_view rtf) : tokens_(rtf) {}

    RichTextDocument read() {
        for (RichTextToken token = tokens_.next(); token.kind != RichTextToken::Kind::End; token = tokens_.next())
            take(token);
        if (!paragraph_.runs.empty()) finishParagraph();
        return std::move(document_);
    }

private:
    struct Control {
        std::string_view name;
        void (Reader::*perform)(std::optional<int> parameter);
    };
    static const Control kControls[];

    void take(const RichTextToken& token) {
        using Kind = RichTextToken::Kind;
        bool isOptional = std::exchange(isOptional_, false);
        if (token.kind == Kind::OpenGroup) openGroup();
        if (token.kind == Kind::CloseGroup) closeGroup();
        if (token.kind == Kind::Byte) addSkippable(richTextCharacter(token.byte, characterSet_));
        if (token.kind == Kind::Control) perform(token, isOptional);
    }

    void openGroup() {
        toSkip_ = 0;
        if (groups_.size() < kDeepestGroup)
            groups_.push_back(state_);
        else
            ++groupsLeftOut_;
    }

    void closeGroup() {
        toSkip_ = 0;
        if (groupsLeftOut_ > 0) return void(--groupsLeftOut_);
        if (groups_.empty()) return;
        Destination closed = std::exchange(state_, groups_.back()).destination;
        groups_.pop_back();
        if (closed == state_.destination) return;
        if (closed == Destination::FieldInstruction) finishInstruction();
        if (closed == Destination::Picture) finishPicture();
    }

    void perform(const RichTextToken& token, bool isOptional);

    // What is inside an aside belongs to it.
    void enter(Destination destination) {
        if (state_.destination != Destination::Document) return;
        state_.destination = destination;
        aside_.clear();
        pictureWidth_ = pictureHeight_ = 0;
    }

    void markOptional(std::optional<int>) { isOptional_ = true; }
    void addHexByte(std::optional<int> byte) {
        addSkippable(richTextCharacter(static_cast<unsigned char>(byte.value_or('?')), characterSet_));
    }
    void skipBinary(std::optional<int> count) {
        tokens_.skip(static_cast<std::size_t>(std::max(count.value_or(0), 0)));
    }

    // A UTF-16 unit, often as a signed number.
    void addUnicode(std::optional<int> parameter) {
        int unit = parameter.value_or(kUnknown);
        if (unit < 0) unit += 0x10000;
        add(unit < 0 || unit > 0xFFFF ? kUnknown : static_cast<char16_t>(unit));
        toSkip_ = state_.bytesAfterUnicode;
    }

    void useMacRoman(std::optional<int>) { characterSet_ = RichTextCharacterSet::MacRoman; }
    void chooseCodePage(std::optional<int> page) {
        characterSet_ = page == kMacRomanCodePage ? RichTextCharacterSet::MacRoman : RichTextCharacterSet::Windows;
    }

    void chooseColour(std::optional<int> parameter) {
        auto index = static_cast<std::size_t>(std::max(parameter.value_or(0), 0));
        state_.style.colour = index < colours_.size() ? colours_[index] : std::nullopt;
    }
    template <int shift>
    void setColourPart(std::optional<int> value) {
        std::uint32_t rest = colour_.value_or(0) & ~(0xFFU << shift);
        colour_ = rest | static_cast<std::uint32_t>(std::clamp(value.value_or(0), 0, 255)) << shift;
    }

    void setPictureWidth(std::optional<int> twips) { pictureWidth_ = std::abs(pointsFromTwips(twips.value_or(0))); }
    void setPictureHeight(std::optional<int> twips) { pictureHeight_ = std::abs(pointsFromTwips(twips.value_or(0))); }

    // The stand-in after a Unicode character is left out, in whatever form it comes.
    void addSkippable(char16_t c) {
        if (toSkip_ > 0)
            --toSkip_;
        else
            add(c);
    }

    void add(char16_t c) {
        if (state_.destination == Destination::Nowhere) return;
        if (state_.destination == Destination::ColourTable) {
            if (c == ';') colours_.push_back(std::exchange(colour_, std::nullopt));
        } else if (state_.destination == Destination::Document) {
            if (char16_t allowed = allowedInText(c)) currentText() += allowed;
        } else if (aside_.size() < kLongestAside) {
            aside_ += c;
        }
    }

    std::u16string& currentText() {
        std::vector<RichTextRun>& runs = paragraph_.runs;
        bool fits = !runs.empty() && runs.back().picture.empty() && runs.back().style == state_.style;
        if (!fits) addRun({{}, state_.style, {}, 0, 0});
        return runs.back().text;
    }

    void addRun(RichTextRun run) {
        if (paragraph_.runs.size() >= RichTextParagraph::kMostRuns) finishParagraph();
        paragraph_.style = state_.paragraph;
        paragraph_.runs.push_back(std::move(run));
    }

    void finishInstruction() {
        std::string address = richTextLink(utf8(std::move(aside_)));
        if (address.empty()) return;
        state_.fieldLink = static_cast<int>(document_.links.size());
        document_.links.push_back(std::move(address));
    }

    // One character follows that stands for the picture where there can be none.
    void finishPicture() {
        std::string name = withoutBlanksAround(utf8(std::move(aside_)));
        if (!name.empty()) addRun({{}, state_.style, name, pictureWidth_, pictureHeight_});
        toSkip_ = 1;
    }

    void endParagraph(std::optional<int>) {
        if (state_.destination != Destination::Document) return;
        paragraph_.style = state_.paragraph;
        finishParagraph();
    }

    void finishParagraph() {
        for (RichTextRun& run : paragraph_.runs) replaceLoneSurrogates(run.text);
        document_.paragraphs.push_back(std::exchange(paragraph_, {}));
    }

    RichTextTokens tokens_;
    RichTextDocument document_;
    RichTextParagraph paragraph_;  // the one being read
    RichTextState state_;
    std::vector<RichTextState> groups_;  // the states to go back to
    std::size_t groupsLeftOut_ = 0;
    std::vector<std::optional<std::uint32_t>> colours_;
    std::optional<std::uint32_t> colour_;  // the one being read
    std::u16string aside_;                 // a field's instruction, a picture's name
    int pictureWidth_ = 0, pictureHeight_ = 0;
    int toSkip_ = 0;  // characters
    bool isOptional_ = false;
    RichTextCharacterSet characterSet_ = RichTextCharacterSet::Windows;
};

const Reader::Control Reader::kControls[] = {
    {"'", &Reader::addHexByte},          {"u", &Reader::addUnicode},          {"par", &Reader::endParagraph},
    {"\n", &Reader::endParagraph},       {"\r", &Reader::endParagraph},       {"*", &Reader::markOptional},
    {"bin", &Reader::skipBinary},        {"mac", &Reader::useMacRoman},       {"ansicpg", &Reader::chooseCodePage},
    {"cf", &Reader::chooseColour},       {"red", &Reader::setColourPart<16>}, {"green", &Reader::setColourPart<8>},
    {"blue", &Reader::setColourPart<0>}, {"width", &Reader::setPictureWidth}, {"height", &Reader::setPictureHeight},
};

void Reader::perform(const RichTextToken& token, bool isOptional) {
    auto control = std::ranges::find(kControls, token.control, &Control::name);
    if (control != std::end(kControls)) return (this->*control->perform)(token.parameter);
    if (auto destination = richTextDestination(token.control)) return enter(*destination);
    if (char16_t character = richTextSymbol(token.control)) return addSkippable(character);
    if (!applyRichTextFormat(token.control, token.parameter, state_) && isOptional) enter(Destination::Nowhere);
}

}  // namespace

std::optional<RichTextDocument> readRichTextRuns(std::string_view rtf) {
    if (!rtf.starts_with("{\\rtf")) return std::nullopt;
    return Reader(rtf).read();
}

}  // namespace qt
