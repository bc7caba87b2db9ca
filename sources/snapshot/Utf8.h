// The shape of UTF-8 texts: JSON is UTF-8, while names and descriptions are any bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace sources::snapshot {

/// Bytes of the character that a non-empty text begins with; 0 when no valid one stands there
/// (RFC 3629: no overlong forms, no surrogates, nothing above U+10FFFF).
std::size_t characterBytes(std::string_view text);

/// Whether a non-empty text is the beginning of a character that lacks its end.
bool isCutCharacter(std::string_view text);

/// Appends the character of a code point that is none of a surrogate.
void appendCharacter(std::string& out, std::uint32_t code);

} // namespace sources::snapshot
