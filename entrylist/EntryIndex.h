// Finds the entries of a list by what makes each the one that it is (settings::EntryIdentity), in constant time.
#pragma once

#include "platform/PlatformTypes.h"
#include "propertylist/Hash.h"

#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace entrylist {

// Two entries are the same one exactly when these are equal.
std::string identityOf(const platform::PropertyList& entry);

class EntryIndex {
public:
    explicit EntryIndex(std::span<const platform::PropertyList> list);
    void add(const platform::PropertyList& entry, std::size_t row);
    void remove(const platform::PropertyList& entry, std::size_t row);

    // The row of the entry; of several alike the one at or nearest to the row given, the first of two as near.
    std::optional<std::size_t> find(const platform::PropertyList& entry, std::size_t near) const;

private:
    // Seeded, so that no file can hold entries that collide.
    struct Hash {
        std::size_t operator()(const std::string& identity) const { return propertylist::hashText(identity); }
    };
    std::unordered_map<std::string, std::vector<std::size_t>, Hash> rows_;
};

}  // namespace entrylist
