// The fatal assertion: an internal failure ends the process, in release builds too.
#pragma once

#include "lumo/Export.h"

namespace Lumo {

/// Writes "Assertion failed: TEXT" as one line to standard error and aborts.
[[noreturn]] LUMO_EXPORT void assertionFailed(const char* text);

} // namespace Lumo

/// Ends the process with `text` unless `condition` holds. The text is given apart from the
/// condition because it is an interface: scripts and test beds look for it to the letter.
#define LUMO_ASSERT(condition, text)                                                               \
  do {                                                                                             \
    if (__builtin_expect(!(condition), 0)) ::Lumo::assertionFailed(text);                          \
  } while (false)
