// What is wrong with a FEC that was captured for a listing, when a route on it cannot be shown.
#pragma once

#include "rova/fec/CachedFec.h"

#include <string>

namespace rova_python {

/// The tables that the FECs of a listing lead into; null ones hold nothing.
struct FecTables {
  const Tunnel::TunnelFib::TunnelFib* tunnels;
  const Vanta::Fib::ForwardingStatus* policies;
  const Vanta::Fib::ForwardingStatus* fecs;
  const Vanta::Fib6::ForwardingStatus* fecs6;
};

/// Whether an encapsulation is of a kind that exists.
bool isKnownEncap(Tunnel::TunnelTable::EncapId encapId);

/// Why routes on the FEC stop a listing; empty when they do not.
std::string faultOf(const Rova::CachedFec& fec, const FecTables& tables);

} // namespace rova_python
