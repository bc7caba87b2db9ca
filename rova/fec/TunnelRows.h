// The rows of a FEC whose vias lead into tunnels.
#pragma once

#include "rova/fec/Forwarding.h"

namespace Rova {

/// Rows for a FEC on tunnels that resolve straight from the tunnel FIB: one for each via of each
/// tunnel, with the weight of the FEC's via spread over them. A tunnel that is not in the FIB gives
/// no row. Rows end where their weights would pass the hardware's limit, and the FEC then weighs
/// what they sum to. All rows are active, those of backup vias too.
void updateTunSortedVia(CachedFec& fec, const Forwarding& forwarding);

/// One row for a via on a tunnel, with the tunnel's own vias below it; none for a tunnel that is
/// not in the FIB.
void updateTunSortedViaHierarchyEntry(CachedFec& fec, const Forwarding& forwarding,
                                      const CachedVia& via, std::uint16_t row);

/// Rows for a FEC on tunnels of the protocols. Row numbers are those of the vias, so that a via
/// without a row leaves a gap.
void updateTunSortedViaHierarchy(CachedFec& fec, const Forwarding& forwarding);

} // namespace Rova
