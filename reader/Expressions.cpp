#include "reader/Expressions.h"

#include "reader/Matcher.h"

namespace reader {
namespace {

class Searched final : public platform::Expression {
public:
    explicit Searched(reader::Expression expression) : expression_(std::move(expression)) {}
    Answer search(std::string_view subject) override { return expression_.search(subject, matching_); }

private:
    const reader::Expression expression_;
    Matching matching_;
};

class Services final : public platform::ExpressionServices {
public:
    bool isAvailable() const override { return true; }
    std::unique_ptr<platform::Expression> compile(std::string_view text,
                                                  platform::ExpressionProblem& problem) override {
        ExpressionProblem found;
        Expression expression(text, found);
        if (expression) return std::make_unique<Searched>(std::move(expression));
        problem = {found.position, std::move(found.reason)};
        return nullptr;
    }
};

}  // namespace

std::unique_ptr<platform::ExpressionServices> expressionServices() { return std::make_unique<Services>(); }

}  // namespace reader
