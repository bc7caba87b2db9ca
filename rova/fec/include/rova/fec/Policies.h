// Collecting the SR-TE policies behind a FEC. Templates over the sorter, which has the tables.
#pragma once

#include "rova/fec/PolicyInfo.h"
#include "rova/fec/TunnelWalk.h"

namespace Rova {

namespace detail {

/// Enters what one via of a policy's FEC says: a segment list, if the via is on a tunnel that the
/// tunnel FIB knows. Of two vias on one tunnel the later one counts.
template <class Sorter>
void addSegmentList(Sorter& sorter, PolicyInfo& policy, const Vanta::Fib::Via& via) {
  const auto tunnel = via.tunnelId();
  if (tunnel.isNull() || !tunnelFibEntry(sorter, tunnel)) return;
  policy.sortedViaIs(tunnel, resolveTunnelToFec(sorter, tunnel));
  const auto& tunnelVias = tunnelFibEntry(sorter, tunnel).tunnelVia;
  const auto encapId =
      tunnelVias.empty() ? Tunnel::TunnelTable::EncapId() : tunnelVias.front().encapId;
  policy.tunnelLabelStackIs(tunnel, labelStackOf(sorter, encapId));
  policy.viaLabelIs(tunnel, via.labelAndAction);
  policy.weightIs(tunnel, SrTePolicy::Weight(via.weight));
}

} // namespace detail

/// The policy that a FEC of type SR-TE stands for: with a default key when no policy is known for
/// it, without segment lists when it is in no forwarding table. Policies stand in the IPv4 table,
/// whatever the family of the sorter. Raises the range errors of via indexes and weights.
template <class Sorter>
PolicyInfo copySrTePolicyInfo(Sorter& sorter, Vanta::Fib::FecId fecId, std::uint16_t index) {
  LUMO_ASSERT(sorter.srTePolicyStatus(), "srTePolicyStatus()");
  const auto* const key = sorter.srTePolicyStatus()->fecIdToPolicyKey.find(fecId);
  PolicyInfo policy(index, key ? *key : SrTePolicy::PolicyKey());
  if (policy.policyKey() == SrTePolicy::PolicyKey() || !sorter.policyForwardingStatus()) {
    return policy;
  }
  bool found = false;
  const Vanta::Fib::Fec record = *sorter.policyForwardingStatus()->fec.safeLookup(fecId, found, 0);
  for (std::uint32_t i = 0; i < record.viaCount; ++i) {
    detail::addSegmentList(sorter, policy, record.via(Vanta::Fib::ViaIndex(i)));
  }
  return policy;
}

/// The policies of a FEC: the one that it stands for itself, else those that its vias lead to,
/// under the places of the vias. Policies that nobody knows are left out.
template <class Sorter>
PolicyInfoSet collectPolicies(Sorter& sorter, const CachedFec& fec) {
  PolicyInfoSet set;
  const auto add = [&](Vanta::Fib::FecId fecId, std::uint16_t index) {
    auto policy = copySrTePolicyInfo(sorter, fecId, index);
    if (policy == PolicyInfo(index, SrTePolicy::PolicyKey())) return;
    set.policyInfoIs(std::move(policy));
  };
  if (fec.fecId().adjType() == Vanta::Fib::AdjType::srTePolicy) {
    add(fec.fecId(), 0);
    return set;
  }
  std::uint16_t index = 0;
  for (const auto& [via, present] : fec.viaMap()) {
    const auto fecId = via.fecId();
    if (fecId.adjType() == Vanta::Fib::AdjType::srTePolicy) add(fecId, index);
    ++index;
  }
  return set;
}

} // namespace Rova
