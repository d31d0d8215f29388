// Memory that is freed as a whole.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>
#include <vector>

namespace propertylist {

class Arena {
public:
    Arena() = default;
    Arena(const Arena&) = delete;
    ~Arena() {
        for (void* block : blocks_) std::free(block);
    }
    // Aligned for pointers.
    char* allocate(std::size_t size) {
        size = (size + 7) & ~std::size_t{7};
        if (size > left_) addBlock(size);
        left_ -= size;
        return std::exchange(next_, next_ + size);
    }

private:
    void addBlock(std::size_t atLeast) {
        std::size_t size = std::max(atLeast, blockSize_);
        blocks_.push_back(nullptr);
        blocks_.back() = std::malloc(size);
        if (!blocks_.back()) throw std::bad_alloc();
        blockSize_ = std::min<std::size_t>(blockSize_ * 2, std::size_t{1} << 22);
        next_ = static_cast<char*>(blocks_.back());
        left_ = size;
    }

    std::vector<void*> blocks_;
    char* next_ = nullptr;
    std::size_t left_ = 0, blockSize_ = 4096;
};

}  // namespace propertylist
