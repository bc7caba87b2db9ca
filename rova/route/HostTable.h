// The host route table: all full-length routes of a VRF and an attached route for each of its
// neighbours. Templates over the sorter, instantiated for both.
#pragma once

#include "rova/route/Sorter.h"
#include "scrivo/Printer.h"

#include <cstdint>

namespace Rova {

/// Fills `sortedRoute` with the routes whose prefix is `mask` bits long, and with an attached route
/// for each neighbour of the VRF that is not on a management interface. A neighbour that has a
/// route adds a via to it.
template <class Family>
void filterHostPrefixes(Sorter<Family>& sorter, std::uint8_t mask);

/// Prints the table as a whole document; nothing at all when it is empty. Descriptor and format
/// are those of the printer and not looked at.
template <class Family>
void formatHostRouteOutput(Sorter<Family>& sorter, std::uint32_t fd, std::uint32_t format,
                           scrivo::Printer& printer);

} // namespace Rova
