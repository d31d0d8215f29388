// Regular expressions as programs that follow the settings read them.
//
// The services are complete and inert, as the toolkit is: by themselves they know no expressions.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

// What makes a text no expression.
struct ExpressionProblem {
    std::size_t position = 0;  // in bytes from the beginning
    std::string reason;        // in English, within a sentence: "missing closing parenthesis"
};

class Expression {
public:
    virtual ~Expression() = default;
    // Given up: the searches of this object so far took as much as those for one application may. For a program it is
    // no match.
    enum class Answer { No, Yes, GivenUp };
    virtual Answer search(std::string_view subject) = 0;
};

// For one thread.
class ExpressionServices {
public:
    virtual ~ExpressionServices() = default;
    virtual bool isAvailable() const { return false; }
    // Null for a text that is no expression, and the problem then says why.
    virtual std::unique_ptr<Expression> compile(std::string_view /*text*/, ExpressionProblem& /*problem*/) {
        return nullptr;
    }
};

}  // namespace platform
