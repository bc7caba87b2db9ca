// JSON strings and the bytes that they stand for. A JSON string holds characters, while names and
// texts of a device are any bytes: a byte that is no part of a UTF-8 character is written as the
// lone surrogate of its value, 0x80 as \udc80 to 0xff as \udcff. No character is written so, since
// all others stand as themselves: what comes back is what was written.
#pragma once

#include <string>
#include <string_view>

namespace sources::snapshot {

/// Appends the bytes as a JSON string, in quotes.
void appendQuoted(std::string& out, std::string_view bytes);

/// Appends what stands between the quotes of a JSON string as the bytes that it is for. False, with
/// `out` undefined, for an escape that JSON does not have, and for a surrogate that is neither half
/// of a pair nor a byte.
bool appendUnescaped(std::string& out, std::string_view inside);

} // namespace sources::snapshot
