// The document of a route listing: warnings, flags, legend, gateway of last resort, routes, timing.
#pragma once

#include "rova/route/Sorter.h"
#include "scrivo/Printer.h"

namespace Rova {

/// Prints the whole listing of a sorter. IPv4 removes the default route from `sortedRoute` when it
/// prints it as the gateway of last resort.
template <class Family>
void formatOutput(Sorter<Family>& sorter, scrivo::Printer& printer);

} // namespace Rova
