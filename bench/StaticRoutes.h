// What saving, checking and clearing static routes costs.
#pragma once

#include <string>

namespace bench {

/// Saves 100,000 routes of three vias each, checks an address against 10,000 interfaces, and clears
/// an interface that half of the routes lead through, also of twice as many routes; the lowest of
/// `repeats`. One JSON object on a line: seconds, lines, bytes of peak memory beyond the tables.
std::string measureStaticRoutes(int repeats);

} // namespace bench
