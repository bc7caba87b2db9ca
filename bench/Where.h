// What choosing routes by an expression adds to a listing.
#pragma once

#include "Case.h"

namespace bench {

/// Prints a plain device's listing with and without expressions that hold for all of its routes, in
/// turn; the lowest processor time of `repeats` each. One JSON object on a line: the routes, the
/// seconds without, and for each expression the nanoseconds that it adds to a route.
std::string measureWhere(const CaseOptions& options);

} // namespace bench
