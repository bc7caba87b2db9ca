// What access by name costs.
#pragma once

#include <string>

namespace bench {

/// Reads an attribute, builds a value, writes its strep text and reads it back, all by name; the
/// lowest of `repeats`. One JSON object on a line: nanoseconds of processor time for each.
std::string measureByName(int repeats);

} // namespace bench
