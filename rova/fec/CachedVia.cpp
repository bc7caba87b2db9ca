#include "rova/fec/CachedVia.h"

#include <tuple>

namespace Rova {

using Tunnel::TunnelTable::TunnelId;
using Tunnel::TunnelTable::TunnelKind;

LUMO_DEFINE_TYPE(CachedVia);
LUMO_DEFINE_TYPE(CachedNhgVia);

TunnelId CachedVia::tunnelId() const { return Tunnel::TunnelTable::tunnelIdOfIntf(intfId_); }

void CachedVia::tunnelIdIs(TunnelId id) {
  if (id.isNull() || id.kind() == TunnelKind::staticInterface) return;
  intfId_ = Kesh::DynamicTunnelIntfId::tunnelIdToIntfId(id.value());
}

void CachedVia::fecIdIs(Vanta::Fib::FecId id) {
  if (const auto intfId = Vanta::Fib::FecId::fecIdToHierarchicalIntfId(id)) intfId_ = intfId;
}

bool operator<(const CachedVia& a, const CachedVia& b) {
  const auto key = [](const CachedVia& via) {
    return std::tie(via.isBackup_, via.intfId_, via.hop_, via.viaLabel_, via.viaWeight_,
                    via.viaIndex_);
  };
  return key(a) < key(b);
}

} // namespace Rova
