// JSON's texts and numbers. Texts are what a NUL ends, of any bytes; what is not UTF-8 in them
// becomes U+FFFD, so that the output is valid whatever a device holds.
#pragma once

#include <cstdint>

namespace scrivo {

class OutputBuffer;

/// True if the text stands in a JSON string as it is.
bool isPlainJson(const char* text);

/// The text as a JSON string with its quotes.
void putJsonString(OutputBuffer& out, const char* text);

void putJsonInteger(OutputBuffer& out, std::int64_t number);
void putJsonUnsigned(OutputBuffer& out, std::uint64_t number);
/// The shortest text that reads back as the same double; null for what is not finite.
void putJsonDouble(OutputBuffer& out, double number);

} // namespace scrivo
