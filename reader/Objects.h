// What is behind the pointers of the C interface.
#pragma once

#include "reader/FolderWatch.h"
#include "reader/Rules.h"
#include "reader/StoredFile.h"
#include "reader/typeslate.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

struct typeslate_settings {
    // The folder of the two files.
    explicit typeslate_settings(const std::string& folder);

    int refresh(bool& hasChanged);  // the caller holds `reading`
    int readCatalogue();            // unless it was read
    std::shared_ptr<const reader::Rules> currentRules() const {
        std::scoped_lock lock(current);
        return rules;
    }
    platform::PropertyList currentNames() const {
        std::scoped_lock lock(current);
        return names;
    }

    std::mutex reading;  // of the files, one thread at a time
    reader::StoredFile settings, catalogue;
    std::optional<int> catalogueStatus;  // nothing: nobody has asked for it yet
    reader::FolderWatch watch;

    mutable std::mutex current;  // held for no longer than it takes to copy a pointer
    std::shared_ptr<const reader::Rules> rules = std::make_shared<reader::Rules>(platform::PropertyList());
    platform::PropertyList names;
};

struct typeslate_entry {
    reader::Resolution resolution;
    bool isOn;
    std::string name, data;
};

namespace reader {

inline std::string_view textOf(const char* bytes) { return bytes ? std::string_view(bytes) : std::string_view(); }

inline void report(int* place, int value) {
    if (place) *place = value;
}

// What a function gives where there is no memory left.
template <typename Result, typename Function>
Result guarded(Result otherwise, Function function) noexcept {
    try {
        return function();
    } catch (...) {
        return otherwise;
    }
}

}  // namespace reader
