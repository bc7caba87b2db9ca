// Turning the vias of a captured FEC into rows: one row is one line of via output, its texts
// already made.
#pragma once

#include "rova/fec/Forwarding.h"

namespace Rova {

/// The texts that one via shows, whether in a row of its own or straight from its FEC.
DirectViaText viaTexts(const Forwarding& forwarding, const CachedVia& via);

/// Fills `nhgVia` from the vias in their order. A via that is no nexthop group leaves a gap.
void buildNexthopGroupRows(const Forwarding& forwarding, CachedFec& fec);

/// Builds the rows of a FEC, unless that is done. The first via decides for all whether they show
/// as tunnels. `prefix` is that of the route whose print builds the rows.
void buildRows(const Forwarding& forwarding, CachedFec& fec, const Kesh::IpGenPrefix& prefix);

} // namespace Rova
