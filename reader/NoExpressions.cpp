#include "reader/Expressions.h"

namespace reader {

std::unique_ptr<platform::ExpressionServices> expressionServices() {
    return std::make_unique<platform::ExpressionServices>();
}

}  // namespace reader
