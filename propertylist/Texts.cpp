#include "propertylist/Texts.h"

#include <cstring>

namespace propertylist {

std::string_view PackedTexts::longText(const char* at) {
    std::uint64_t length;
    std::memcpy(&length, at, sizeof length);
    return {at + sizeof length, length};
}

PackedText PackedTexts::copy(std::string_view text) {
    const std::uint64_t length = text.size();
    const bool isLong = length >= kLong;
    const std::size_t size = text.size() + (isLong ? sizeof length : 0);
    const std::uint64_t end = chunks_.size() * kChunk;
    if (end - used_ < size || used_ == end) {
        used_ = end;
        const std::size_t chunks = size / kChunk + 1;
        char* block = arena_.allocate(chunks * kChunk);
        for (std::size_t i = 0; i < chunks; ++i) chunks_.push_back(block + i * kChunk);
    }
    char* at = chunks_[used_ / kChunk] + used_ % kChunk;
    if (isLong) std::memcpy(at, &length, sizeof length);
    if (!text.empty()) std::memcpy(at + (size - text.size()), text.data(), text.size());
    const PackedText made{size_ + used_, isLong ? kLong : length};
    used_ += size;
    return made;
}

}  // namespace propertylist
