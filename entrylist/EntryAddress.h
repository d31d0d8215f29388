// How a user names an entry of the list: by its row, or by what stays with it when rows move.
#pragma once

#include "platform/PlatformTypes.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace entrylist {

struct EntryAddress {
    enum class Kind { Row, Identifier, Path, Name };
    Kind kind = Kind::Row;
    std::int64_t row = 0;   // of Row; it may be outside the list
    std::string text = {};  // of the others
};

// "2", "id:org.example.Editor", "path:/opt/Editor.app" or "name:Editor"; what follows the colon is taken as it is.
// Nothing for any other text.
std::optional<EntryAddress> entryAddress(std::string_view text);
std::string textOf(const EntryAddress& address);

// The rows of all entries that it names. Texts are compared byte by byte; an identifier or a path may be what the entry
// matches by, or be stored beside that.
std::vector<std::size_t> rowsAt(const EntryAddress& address, std::span<const platform::PropertyList> list);

// By which the entry can be named, its row left out.
std::vector<EntryAddress> addressesOf(const platform::PropertyList& entry);

}  // namespace entrylist
