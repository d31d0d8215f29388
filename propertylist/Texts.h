// The texts of a document's packed strings, each named by one word.
//
// A place below the size of the text that the document keeps, mostly the file that was read, lies in that text; behind
// it come copies of what that text does not hold, in chunks.
#pragma once

#include "propertylist/Arena.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace propertylist {

struct PackedText {
    std::uint64_t place : 40, length : 24;
};

class PackedTexts {
public:
    PackedTexts(Arena& arena, std::shared_ptr<const std::string> kept)
        : arena_(arena), kept_(std::move(kept)), start_(kept_ ? kept_->data() : ""), size_(kept_ ? kept_->size() : 0) {}

    std::string_view view(PackedText text) const {
        const char* at = text.place < size_ ? start_ + text.place : copied(text.place - size_);
        return text.length < kLong ? std::string_view(at, text.length) : longText(at);
    }
    std::size_t length(PackedText text) const { return text.length < kLong ? text.length : view(text).size(); }
    // A part of the text that is kept.
    PackedText part(std::string_view text) {
        if (text.size() >= kLong || text.empty()) return copy(text);
        return {static_cast<std::uint64_t>(text.data() - start_), text.size()};
    }
    PackedText copy(std::string_view text);

private:
    static constexpr std::uint64_t kLong = (1 << 24) - 1;  // the length then stands before the text
    static constexpr std::size_t kChunk = std::size_t{1} << 16;

    static std::string_view longText(const char* at);
    const char* copied(std::uint64_t place) const { return chunks_[place / kChunk] + place % kChunk; }

    Arena& arena_;
    std::shared_ptr<const std::string> kept_;
    const char* start_;
    std::uint64_t size_;
    std::vector<char*> chunks_;
    std::uint64_t used_ = 0;  // of the chunks, a long text is one that spans several
};

}  // namespace propertylist
