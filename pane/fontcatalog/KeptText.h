// Sees to it that a few names do not keep the whole files that they were read from in memory.
#pragma once

#include "pane/fontcatalog/NamesCollection.h"

#include <cstddef>

namespace fontcatalog {

// What a reader puts into a collection keeps its file's text. From time to time, so that all together takes time in
// proportion to the text, this looks how much of it the names still need, and copies that out when at least half of the
// memory comes free.
class KeptText {
public:
    // After a file of so many bytes was read into the collection.
    void add(std::size_t bytes, NamesCollection& names);

private:
    static constexpr std::size_t kWorthwhile = std::size_t{1} << 20;  // bytes

    std::size_t held_ = 0;
    std::size_t next_ = kWorthwhile;  // looks when so much is held
};

}  // namespace fontcatalog
