// What the user is shown before entries are imported, and what he decides.
#pragma once

#include <string>
#include <vector>

namespace platform {

struct ImportRow {
    enum class Group : unsigned char {
        Added,
        Conflict,  // in the list already, as another one: mine or theirs
        Left,      // in the list already, equal
        Removed,   // only in the list: it goes when the whole list is replaced
    };
    Group group = Group::Added;
    std::string name;
    std::string difference;  // of a conflict, in words
};

struct ImportRequest {
    std::string source;     // where the entries come from, as the user knows it
    std::string note = {};  // what else there is to say; empty: nothing
    std::vector<ImportRow> rows = {};
};

struct ImportAnswer {
    bool replacesList = false;
    std::vector<bool> takesTheirs;  // for each row of the request; false for what is no conflict
};

}  // namespace platform
