// Bringing FECs from the forwarding tables into a listing. The FEC table is chosen by the
// identifier and not by the listing's family, so each listing captures records of both.
#pragma once

#include "rova/fec/Forwarding.h"

namespace Rova {

/// Builds the entity of a FEC record under `fecId` and stores it, in place of one with the same
/// identifier. Range errors of the record pass up and leave no entity.
Lumo::Ptr<CachedFec> cachedFecIs(const Forwarding& forwarding, Vanta::Fib::FecId fecId,
                                 const Vanta::Fib::Fec& record);
Lumo::Ptr<CachedFec> cachedFecIs(const Forwarding& forwarding, Vanta::Fib::FecId fecId,
                                 const Vanta::Fib6::Fec& record);

/// Makes sure that the FEC is captured and gives it; null for the null identifier. A FEC is
/// captured once: what a listing shows is its state at that moment. One that is missing from the
/// table gets an entity without vias.
const CachedFec* copyAdjacency(const Forwarding& forwarding, Vanta::Fib::FecId fecId);

} // namespace Rova
