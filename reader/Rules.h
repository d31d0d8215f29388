// Which entry of the list applies to an application. docs/reading.md is the same for people.
#pragma once

#include "platform/PlatformTypes.h"
#include "propertylist/Hash.h"
#include "reader/Matcher.h"

#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace reader {

inline constexpr std::size_t kMostExpressions = 10'000;                      // of a list; those behind match nothing
inline constexpr std::size_t kMostExpressionMemory = std::size_t{16} << 20;  // bytes of them together, compiled

// What is known of an application; empty is what is not. Any bytes.
struct Application {
    std::string_view identifier, creator, path, name;
};

// In the order of the C interface's numbers.
enum class Reason { Default, Global, Identifier, Creator, Path, Expression };

struct Resolution {
    Reason reason = Reason::Default;
    int row = -1;                  // -1: by default
    platform::PropertyList entry;  // a dictionary; by default a new Global entry
};

// A stored domain, made ready for any number of questions from any number of threads.
class Rules {
public:
    // Anything may be passed; what is no domain is an empty one.
    explicit Rules(platform::PropertyList domain);
    Rules(const Rules&) = delete;

    bool isOn() const;  // the master switch
    Resolution resolve(const Application& application) const;
    const platform::PropertyList& domain() const { return domain_; }

private:
    struct Name {
        Reason reason;
        std::string_view data;
        std::size_t row;
    };
    struct Pattern {
        std::int64_t kind;
        std::string_view text;
        std::size_t row;
    };

    void addEntry(const platform::PropertyList& entry, std::size_t row);
    void addName(const Name& name);
    const Name* find(Reason reason, std::string_view data) const;
    const Name* firstNaming(const Application& application) const;
    const Pattern* firstMatching(const Application& application) const;
    void compile() const;
    Resolution at(Reason reason, std::size_t row) const;

    const platform::PropertyList domain_;
    std::vector<Name> names_;  // the first of each
    propertylist::HashTable byName_;
    std::vector<Pattern> patterns_;
    std::optional<std::size_t> global_;
    // Made by the first question that needs them.
    mutable std::once_flag isCompiled_;
    mutable std::vector<Expression> expressions_;
};

// An option as programs take it: what the editor shows for it, numbers that no control has brought to those that one
// has.
int optionValue(const platform::PropertyList& entry, std::size_t option);

}  // namespace reader
