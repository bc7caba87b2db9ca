#include "rova/fec/CachedFec.h"

#include <algorithm>

namespace Rova {

using Tunnel::TunnelTable::TunnelKind;
using Vanta::Fib::AdjType;

LUMO_DEFINE_TYPE(CachedFec);

namespace {

bool leadsToPolicy(const CachedVia& via) {
  return via.fecId().rawAdjType() == static_cast<unsigned>(AdjType::srTePolicy);
}

} // namespace

bool CachedFec::isNexthopGroup() const {
  return !via_.empty() &&
         Kesh::NexthopGroupIntfId::isNexthopGroupIntfId(via_.begin()->first.intfId());
}

bool CachedFec::isSrTePolicy() const {
  if (fecId_.adjType() == AdjType::srTePolicy) return true;
  return std::any_of(via_.begin(), via_.end(),
                     [](const auto& member) { return leadsToPolicy(member.first); });
}

bool CachedFec::forwards() const {
  const auto leads = [](const auto& member) { return static_cast<bool>(member.first.intfId()); };
  return via_.empty() || std::any_of(via_.begin(), via_.end(), leads);
}

Lumo::Ptr<CachedFec> cachedFecFactory(Vanta::Fib::FecId fecId) {
  return Lumo::newEntity<CachedFec>(fecId);
}

bool isNexthopGroupFec(const Lumo::Ptr<const CachedFec>& fec) {
  return fec && fec->isNexthopGroup();
}
bool isSrTePolicyFec(const Lumo::Ptr<const CachedFec>& fec) { return fec->isSrTePolicy(); }

bool isValidDynamicTunnel(CachedVia via) {
  const auto id = via.tunnelId();
  return !id.isNull() && id.kind() != TunnelKind::evpnVxlan &&
         id.kind() != TunnelKind::staticInterface;
}

Routing::NexthopGroup::NexthopGroupId nexthopGroupIdFromIntfId(const Kesh::IntfId& intfId) {
  return Kesh::NexthopGroupIntfId::nexthopGroupId(intfId);
}

} // namespace Rova
