// Whether a listing builds the rows of a FEC once.
#pragma once

#include "rova/CliSupport.h"
#include "state/DeviceBuilder.h"

#include <cstddef>

namespace bench {

/// What renders of one sorter over a changing device show of its rows.
struct RowsKept {
  std::size_t fecs = 0;  ///< FECs that have rows after the first render
  bool areKept = false;  ///< whether a render shows them when all that they are made of is gone
  bool wouldTell = true; ///< whether rows that are built again in that state show otherwise
};

/// Renders as text; takes the vias of all captured FECs and the tunnel FIB away and renders again;
/// forgets the rows and renders a third time. The device and the sorter are of no use afterwards.
RowsKept findRowsKept(state::DeviceBuilder& device, Rova::RouteSorter& sorter);

} // namespace bench
