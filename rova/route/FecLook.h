// What a listing asks of a FEC for each route on it.
#pragma once

#include "rova/fec/Rows.h"
#include "rova/route/FecLooks.h"
#include "rova/route/SharedVias.h"
#include "rova/route/Sorter.h"

namespace Rova {

/// The vias of the FEC must not change meanwhile.
struct FecLook {
  CachedFec* fec = nullptr; ///< null for one that was not captured
  bool forwards = true;     ///< whether a route on it may print outside a detail listing
  bool isDirect = false;    ///< whether its only via prints without a row
  bool isNexthopGroup = false;
  bool isSrTePolicy = false;
  SharedVias vias;

  const scrivo::Stretch& output() const { return vias.output; }
};

/// Whether the only via of a FEC prints straight from it.
template <class Family>
bool printsDirectly(const CachedFec& fec) {
  using Tunnel::TunnelTable::TunnelKind;
  if (fec.vias() != 1) return false;
  const auto tunnel = fec.viaMap().begin()->first.tunnelId();
  return tunnel.isNull() || tunnel.kind() == TunnelKind::staticInterface ||
         (Family::printsSingleEvpnViaDirectly && tunnel.kind() == TunnelKind::evpnVxlan);
}

template <class Family>
FecLook lookAt(const Forwarding& forwarding, Vanta::Fib::FecId fecId) {
  FecLook look;
  const auto* const captured = forwarding.fec.find(fecId);
  look.fec = captured ? captured->ptr() : nullptr;
  if (!look.fec) return look;
  look.forwards = look.fec->forwards();
  look.isNexthopGroup = look.fec->isNexthopGroup();
  look.isSrTePolicy = look.fec->isSrTePolicy();
  look.isDirect = look.fec->numEntries() == 0 && !look.isNexthopGroup && !look.isSrTePolicy &&
                  printsDirectly<Family>(*look.fec);
  return look;
}

} // namespace Rova
