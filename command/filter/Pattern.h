// Patterns of names.
#pragma once

#include <string_view>

namespace command::filter {

/// Whether the whole text fits the pattern, in which "*" stands for any bytes and "?" for one
/// character of UTF-8. Takes no more steps than the lengths multiplied.
bool fits(std::string_view text, std::string_view pattern);

} // namespace command::filter
