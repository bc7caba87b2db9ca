// What a listing works out of a FEC at the first route on it and needs again for every other. The
// answers of a FEC and what its lines share stand in one place here; the entity with its vias takes
// six cache misses a route to ask.
#pragma once

#include "rova/fec/Rows.h"
#include "rova/route/SharedVias.h"
#include "rova/route/Sorter.h"

namespace Rova {

struct FecLook {
  CachedFec* fec = nullptr; ///< null for one that was not captured
  bool forwards = true;     ///< whether a route on it may print outside a detail listing
  bool isDirect = false;    ///< whether its only via prints without a row
  bool isNexthopGroup = false;
  bool isSrTePolicy = false;
  SharedVias vias;
};

/// The looks of one listing. The vias of the FECs must not change meanwhile.
template <class Family>
class FecLooks {
 public:
  explicit FecLooks(const Forwarding& forwarding) : forwarding_(forwarding) {}

  /// Valid until the next call.
  FecLook& look(Vanta::Fib::FecId fecId) {
    if (next_ && fecId == nextId_ && looks_.size() == sizeAtNext_) return *next_;
    if (FecLook* const known = looks_.find(fecId)) return *known;
    const auto* const captured = forwarding_.fec.find(fecId);
    return looks_.insertOrAssign(fecId, makeLook(captured ? captured->ptr() : nullptr));
  }

  /// Tells that the FEC will be looked at soon.
  [[gnu::always_inline]] void expect(Vanta::Fib::FecId fecId) const { looks_.prefetch(fecId); }
  /// Tells that it will be looked at next, and what its lines share be printed.
  void expectOutput(Vanta::Fib::FecId fecId) {
    next_ = looks_.find(fecId);
    nextId_ = fecId;
    sizeAtNext_ = looks_.size();
    if (next_) next_->vias.output.prefetch();
  }

 private:
  using TunnelKind = Tunnel::TunnelTable::TunnelKind;

  static FecLook makeLook(CachedFec* fec) {
    FecLook look;
    look.fec = fec;
    if (!fec) return look;
    look.forwards = fec->forwards();
    look.isNexthopGroup = fec->isNexthopGroup();
    look.isSrTePolicy = fec->isSrTePolicy();
    look.isDirect = fec->numEntries() == 0 && !look.isNexthopGroup && !look.isSrTePolicy &&
                    printsDirectly(*fec);
    return look;
  }

  static bool printsDirectly(const CachedFec& fec) {
    if (fec.vias() != 1) return false;
    const auto tunnel = fec.viaMap().begin()->first.tunnelId();
    return tunnel.isNull() || tunnel.kind() == TunnelKind::staticInterface ||
           (Family::printsSingleEvpnViaDirectly && tunnel.kind() == TunnelKind::evpnVxlan);
  }

  const Forwarding& forwarding_;
  Lumo::HashMap2018<Vanta::Fib::FecId, FecLook> looks_;
  FecLook* next_ = nullptr; ///< as long as there are no more looks than `sizeAtNext_`
  Vanta::Fib::FecId nextId_;
  std::size_t sizeAtNext_ = 0;
};

} // namespace Rova
