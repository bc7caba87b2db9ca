// What displays tell of a configured tunnel interface beside its name.
#pragma once

#include "rova/core/TypeNames.h"

namespace Rova {

/// Fills `info` from the tunnel's first via; leaves it as it is when the tunnel or its vias are not
/// in the table, which may be null. MPLS, which no interface can have, stops the process.
void fillStaticIntfTunnelInfo(const Tunnel::TunnelFib::TunnelFib* tunnelFib,
                              Tunnel::TunnelTable::TunnelId tunnelId,
                              Tunnel::CliSupport::CachedStaticIntfTunnelInfo& info);

template <class Sorter>
void lookupStaticIntfTunnelEncap(const Sorter& sorter, Tunnel::TunnelTable::TunnelId tunnelId,
                                 Tunnel::CliSupport::CachedStaticIntfTunnelInfo& info) {
  fillStaticIntfTunnelInfo(sorter.tunnelFib().ptr(), tunnelId, info);
}

} // namespace Rova
