// What the pane and the command line ask about expressions, answered by the matcher of the library.
#pragma once

#include "platform/Expressions.h"

#include <memory>

namespace reader {

// Where it is built without PCRE2, services that are not available.
std::unique_ptr<platform::ExpressionServices> expressionServices();

}  // namespace reader
