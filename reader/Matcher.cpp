#define PCRE2_CODE_UNIT_WIDTH 8
#include "reader/Matcher.h"

#include <pcre2.h>

#include <algorithm>
#include <array>
#include <new>

namespace reader {
namespace {

// \C would match a part of a character.
constexpr std::uint32_t kOptions = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF | PCRE2_NEVER_BACKSLASH_C;

PCRE2_SPTR units(std::string_view text) { return reinterpret_cast<PCRE2_SPTR>(text.data() ? text.data() : ""); }

std::string errorText(int code) {
    std::array<PCRE2_UCHAR, 256> text{};
    int length = pcre2_get_error_message(code, text.data(), text.size());
    return {text.begin(), text.begin() + std::max(length, 0)};
}

bool isLimit(int result) {
    return result == PCRE2_ERROR_MATCHLIMIT || result == PCRE2_ERROR_DEPTHLIMIT || result == PCRE2_ERROR_HEAPLIMIT ||
           result == PCRE2_ERROR_NOMEMORY || result == PCRE2_ERROR_RECURSELOOP;
}

}  // namespace

Matching::Matching() : data_(pcre2_match_data_create(1, nullptr)), context_(pcre2_match_context_create(nullptr)) {
    if (data_ && context_) {
        pcre2_set_depth_limit(context_, kDeepestMatch);
        pcre2_set_heap_limit(context_, kMostMatcherMemory);
        return;
    }
    pcre2_match_data_free(data_);
    pcre2_match_context_free(context_);
    throw std::bad_alloc();
}

Matching::~Matching() {
    pcre2_match_data_free(data_);
    pcre2_match_context_free(context_);
}

void Expression::Free::operator()(pcre2_real_code_8* code) const { pcre2_code_free(code); }

Expression::Expression(std::string_view text, ExpressionProblem& problem) {
    std::unique_ptr<pcre2_compile_context, decltype(&pcre2_compile_context_free)> context(
        pcre2_compile_context_create(nullptr), pcre2_compile_context_free);
    if (!context) throw std::bad_alloc();
    pcre2_set_max_pattern_length(context.get(), kLongestExpression);
    int code = 0;
    std::size_t position = 0;
    code_.reset(pcre2_compile(units(text), text.size(), kOptions, &code, &position, context.get()));
    if (code_) return;
    if (code == PCRE2_ERROR_HEAP_FAILED) throw std::bad_alloc();
    problem = {code, std::min(position, text.size()), errorText(code)};
}

std::size_t Expression::memory() const {
    std::size_t size = 0;
    if (code_) pcre2_pattern_info(code_.get(), PCRE2_INFO_SIZE, &size);
    return size;
}

// How many steps a search took is not told. So it is tried with few first: then lists of many ordinary expressions and
// those of a few costly ones fit into the same sum, and the answer depends on nothing but expression and subject.
Expression::Answer Expression::search(std::string_view subject, Matching& matching) const {
    if (!code_) return Answer::No;
    for (std::uint32_t steps : {kCheapSteps, kMostSteps}) {
        if (matching.stepsLeft_ < steps) return Answer::GivenUp;
        matching.stepsLeft_ -= steps;
        pcre2_set_match_limit(matching.context_, steps);
        int result = pcre2_match(code_.get(), units(subject), subject.size(), 0, 0, matching.data_, matching.context_);
        if (result != PCRE2_ERROR_MATCHLIMIT)
            return result >= 0 ? Answer::Yes : isLimit(result) ? Answer::GivenUp : Answer::No;
    }
    return Answer::GivenUp;
}

}  // namespace reader
