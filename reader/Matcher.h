// Regular expressions as entries are matched by them: PCRE2 in UTF mode, searched and not anchored, within limits.
// docs/reading.md has the rules for those who write expressions.
#pragma once

#include "platform/Expressions.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct pcre2_real_code_8;
struct pcre2_real_match_context_8;
struct pcre2_real_match_data_8;

namespace reader {

inline constexpr std::size_t kLongestExpression = 10'000;       // bytes; a longer one is none
inline constexpr std::uint32_t kMostSteps = 100'000;            // that one search may take
inline constexpr std::uint32_t kCheapSteps = 1'000;             // a search that takes fewer counts as that many
inline constexpr std::int64_t kMostStepsTogether = 10'000'000;  // of the searches for one application
inline constexpr std::uint32_t kMostMatcherMemory = 8 << 10;    // KiB that one search may take
inline constexpr std::uint32_t kDeepestMatch = 10'000;          // nested groups and repeats that one search may enter

struct ExpressionProblem {
    int code = 0;              // an error number of PCRE2
    std::size_t position = 0;  // in bytes
    std::string reason = {};   // in English, within a sentence
};

// Where matches are looked for: holds the memory for it, and how many steps are left. Belongs to one thread.
class Matching {
public:
    Matching();
    Matching(const Matching&) = delete;
    ~Matching();

private:
    friend class Expression;
    std::int64_t stepsLeft_ = kMostStepsTogether;
    pcre2_real_match_data_8* data_;
    pcre2_real_match_context_8* context_;
};

// May be used by several threads at once.
class Expression {
public:
    // Nothing that could be matched for what is no expression, for the reason in `problem`.
    Expression(std::string_view text, ExpressionProblem& problem);

    explicit operator bool() const { return code_ != nullptr; }
    std::size_t memory() const;  // bytes
    // Given up: the search would take more than the limits allow.
    using Answer = platform::Expression::Answer;
    Answer search(std::string_view subject, Matching& matching) const;

private:
    struct Free {
        void operator()(pcre2_real_code_8* code) const;
    };
    std::unique_ptr<pcre2_real_code_8, Free> code_;
};

}  // namespace reader
