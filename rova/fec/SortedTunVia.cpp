#include "rova/fec/SortedTunVia.h"

#include "lumo/Assert.h"

#include <algorithm>

namespace Rova {

using Tunnel::L3TunnelInfo;
using Tunnel::TunnelFib::TunnelFib;
using Tunnel::TunnelTable::EncapId;
using Tunnel::TunnelTable::EncapKind;

LUMO_DEFINE_TYPE(SortedTunVia);
LUMO_DEFINE_TYPE(SortedTunViaSet);

namespace {

/// The order of two infos by the base that decides first, then by the word at their end.
template <class Base, class Info>
std::strong_ordering compareByBase(const Info& a, const Info& b) {
  const auto order = static_cast<const Base&>(a) <=> static_cast<const Base&>(b);
  return order != 0 ? order : a.profile <=> b.profile;
}

/// The order of two encapsulations of one kind, by meaning.
std::strong_ordering compareEncaps(const TunnelFib& fib, EncapId a, EncapId b) {
  switch (a.kind()) {
  case EncapKind::gre:
    return fib.greEncap(a) <=> fib.greEncap(b);
  case EncapKind::ipsecVti:
    return compareByBase<L3TunnelInfo>(fib.ipsecVtiEncap(a), fib.ipsecVtiEncap(b));
  case EncapKind::ipsecGre:
    return compareByBase<Tunnel::GreTunnelInfo>(fib.ipsecGreEncap(a), fib.ipsecGreEncap(b));
  case EncapKind::mpls:
    return fib.labelStack(a) <=> fib.labelStack(b);
  }
  LUMO_ASSERT(false, "false && \"encap type not implemented\"");
  return std::strong_ordering::equal;
}

/// A via that stands in no table has encapsulations without meaning: all of a kind are alike.
const TunnelFib& fibOf(const SortedTunVia& via) {
  static const auto none = Lumo::newEntity<TunnelFib>();
  return via.tunnelFib() ? *via.tunnelFib() : *none;
}

bool isSameHop(const SortedTunVia& a, const SortedTunVia& b) {
  return a.nexthop == b.nexthop && a.intfId == b.intfId && a.encapId.kind() == b.encapId.kind();
}

} // namespace

bool operator==(const SortedTunVia& a, const SortedTunVia& b) {
  return isSameHop(a, b) && compareEncaps(fibOf(a), a.encapId, b.encapId) == 0;
}

bool operator<(const SortedTunVia& a, const SortedTunVia& b) {
  if (!(a.nexthop == b.nexthop)) return a.nexthop < b.nexthop;
  if (!(a.intfId == b.intfId)) return a.intfId < b.intfId;
  if (a.encapId.kind() != b.encapId.kind()) return a.encapId.kind() < b.encapId.kind();
  return compareEncaps(fibOf(a), a.encapId, b.encapId) < 0;
}

void SortedTunViaSet::handleInitialized() {
  if (tunnelId_.isNull() || !tunnelFib_) return;
  for (const auto& from : tunnelFib_->entry(tunnelId_).tunnelVia) {
    viaIs(SortedTunVia(from.nexthop, from.intfId, from.encapId, tunnelFib_), true);
  }
}

} // namespace Rova
