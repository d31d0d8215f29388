// What a row of the entry table shows of its entry. Nothing is kept: an application that has moved is shown at its new
// place and under its new name, and the stored ones stay as they are.
#pragma once

#include "platform/AliasClass.h"
#include "platform/Platform.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class EntryRows {
public:
    // What is referred to must outlive the object. Without an alias class (null) an application keeps its stored name.
    // The menu's titles name the kinds of regular expressions.
    EntryRows(const platform::Platform& platform, platform::AliasClass* aliases, const platform::PopUpButton& kinds)
        : platform_(platform), aliases_(aliases), kinds_(kinds) {}

    // An entry as it is found now: what costs a search of the machine. One that is no dictionary, or lacks a key, has
    // no path, an empty name and the generic icon.
    struct Found {
        platform::PropertyList entry;
        std::optional<std::string> path;  // nothing: the entry has none
        std::string name;
        bool isThere = false;    // a file at the path
        bool isMissing = false;  // an application that is nowhere on this computer
    };
    Found find(const platform::PropertyList& entry) const;

    std::vector<platform::AttributedLine> lines(const Found& row) const;  // two
    platform::ImageRef icon(const Found& row) const;                      // null when the pane's own image is missing
    // More about an application than the lines have: what expressions may be held against.
    std::vector<std::string> details(const Found& row) const;

private:
    std::optional<std::string> findApplication(const platform::PropertyList& entry) const;
    std::string secondLine(const Found& row) const;

    const platform::Platform& platform_;
    platform::AliasClass* aliases_;
    const platform::PopUpButton& kinds_;
};

// The image among the pane's resources that has this file name; folders in front of it count for nothing. Null when
// there is none.
platform::ImageRef paneImage(const platform::Platform& platform, std::string_view file);
