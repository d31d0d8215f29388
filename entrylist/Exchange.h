// Entries on their way to another machine: the document that an export writes, and the plan by which an import changes
// a list.
//
// A document is a property list, whatever file it stands in (docs/exchange.md):
//     {"Format": "com.tarnwick.typeslate.entries", "Format Version": 1, "Entries": [entry, ...]}
// Entries stand in it exactly as they do in the list, keys that nobody here knows included; the Global entry is one of
// them, if it was chosen.
//
// All of this is plain functions on values. Time and memory are in proportion to the document and the list, whatever
// they hold.
#pragma once

#include "entrylist/ListEdits.h"
#include "platform/PlatformTypes.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace entrylist {

// A document's keys; others are passed over.
inline constexpr std::string_view kFormatKey = "Format";
inline constexpr std::string_view kVersionKey = "Format Version";  // integer
inline constexpr std::string_view kEntriesKey = "Entries";         // array

inline constexpr std::string_view kExchangeFormat = "com.tarnwick.typeslate.entries";
inline constexpr std::int64_t kExchangeVersion = 1;

// What a document may hold at most. A file is refused before it is read, anything else at its first place too many.
inline constexpr std::size_t kLargestExchangeFile = std::size_t{16} << 20;  // bytes
inline constexpr std::size_t kMostExchangedEntries = 100'000;
inline constexpr std::size_t kMostExchangedValues = 2'000'000;              // of all entries together
inline constexpr std::size_t kLongestExchangedText = std::size_t{1} << 16;  // bytes of a string, a key or data
inline constexpr unsigned kDeepestExchangedEntry = 32;                      // an entry's own keys have depth 1

// The text for an English one. A format's arguments are put in afterwards.
using Localizer = std::function<std::string(std::string_view english)>;

// Why a document is refused as a whole.
struct ExchangeProblem {
    std::string place = {};        // "Entries[3].Settings.FontSize", counted from 0; empty: the document itself
    std::string_view reason = {};  // a format in English, key of the localised strings; empty: there is no problem
    std::int64_t number = 0;       // the format's argument, where it has one

    explicit operator bool() const { return !reason.empty(); }
    std::string text(const Localizer& localized) const;  // one line
};

// The first thing for which the document would be refused: another format or a newer version, what is no entry (no
// dictionary, an unknown type), values that readers would not take (settings/DomainSchema.h), or more than the limits
// above. Numbers that no control has, and missing keys but "Type", are accepted, as they are in a list.
ExchangeProblem problemOf(const platform::PropertyList& document);

// The document of those rows of the list, in the order given. An element that is no entry makes a document with a
// problem: whoever writes it must ask for that first.
platform::PropertyList exchangeDocument(std::span<const platform::PropertyList> list,
                                        std::span<const std::size_t> rows);
platform::PropertyList exchangeDocument(std::span<const platform::PropertyList> list);  // of all

// What would become of one entry of a document. An entry is the one of the list that settings::EntryIdentity finds for
// it: the same "Type" and "Data", or both Global.
enum class ImportAction : unsigned char {
    Added,     // the list has none like it
    Replaced,  // the list's is another one: a conflict
    Left,      // the list's is equal
};
struct ImportItem {
    ImportAction action = ImportAction::Added;
    platform::PropertyList theirs;  // the document's entry
    platform::PropertyList mine;    // the list's; nothing for one that is added
};
struct ImportPlan {
    ExchangeProblem problem;            // when there is one, the rest is empty
    std::vector<ImportItem> items;      // in the document's order
    std::vector<std::size_t> repeated;  // places in the document, from 0, of entries that came earlier in it,
                                        // which are passed over
    List removed;                       // the list's entries that replacing it would remove

    std::size_t count(ImportAction action) const;
};
ImportPlan planImport(const platform::PropertyList& document, std::span<const platform::PropertyList> list);

enum class ImportMode : unsigned char {
    KeepMine,     // of two entries that differ the list's stays, unless decided otherwise
    TakeTheirs,   // the document's takes its place, unless decided otherwise
    ReplaceList,  // the list becomes the document's entries, in their order, Global first; a document without a Global
                  // entry leaves the present one
};
struct ImportDecisions {
    ImportMode mode = ImportMode::KeepMine;
    // For each item of the plan whether it is decided the other way; shorter than the plan: the rest is not. Without
    // meaning for what is no conflict, and for ReplaceList.
    std::vector<bool> otherwise{};
};

// What was done to a list.
struct ImportOutcome {
    std::size_t added = 0, replaced = 0, left = 0, removed = 0;
    bool operator==(const ImportOutcome&) const = default;
};
// Changes a list, which may be another one by now than the plan was made for: each entry is looked up again. What has
// become a conflict since goes by the mode; where the list's own entry was to be kept and is no more, none comes back.
// A list without a Global entry in front is repaired first. What is added goes to the end, in the document's order.
ImportOutcome applyImport(const ImportPlan& plan, const ImportDecisions& decisions, List& list);

// "Added 12, replaced 3, left 40."; of the whole list also what was removed.
std::string outcomeInWords(const ImportOutcome& outcome, const Localizer& localized);

}  // namespace entrylist
