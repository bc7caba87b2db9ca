// What the help says of expressions.
#pragma once

#include <string>

namespace command::filter {

/// The fields with their types and meanings, the operators, and examples.
std::string helpText();

} // namespace command::filter
