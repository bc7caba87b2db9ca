// The SR-TE policies that a route forwards over, as its line shows them.
#pragma once

#include "rova/fec/CachedFec.h"
#include "rova/fec/SortedTunVia.h"
#include "scrivo/Printer.h"

namespace Rova {

struct Forwarding;

/// One policy: its endpoint and color, and by tunnel the vias, label, label stack and weight of the
/// segment list that the tunnel stands for.
class ROVA_EXPORT PolicyInfo {
  LUMO_TYPE(PolicyInfo, "Rova::PolicyInfo")
  LUMO_CTOR(std::uint16_t, index) // its place among the vias of the route's FEC
  LUMO_CTOR(SrTePolicy::PolicyKey, policyKey)
  LUMO_HASHED(Tunnel::TunnelTable::TunnelId, SortedTunViaSet, sortedVia, SortedVia)
  LUMO_HASHED(Tunnel::TunnelTable::TunnelId, Kesh::MplsLabelAndAction, viaLabel, ViaLabel)
  LUMO_HASHED(Tunnel::TunnelTable::TunnelId, Kesh::MplsLabelOperation, tunnelLabelStack,
              TunnelLabelStack)
  LUMO_HASHED(Tunnel::TunnelTable::TunnelId, SrTePolicy::Weight, weight, Weight)
  LUMO_END
  LUMO_VALUE(PolicyInfo)

  PolicyInfo() = default;
  PolicyInfo(std::uint16_t index, const SrTePolicy::PolicyKey& policyKey)
      : index_(index), policyKey_(policyKey) {}
};

/// The policies of one route.
class ROVA_EXPORT PolicyInfoSet {
  LUMO_TYPE(PolicyInfoSet, "Rova::PolicyInfoSet")
  LUMO_HASHED_VALUES(std::uint16_t, PolicyInfo, policyInfo, PolicyInfo, index)
  LUMO_END
  LUMO_VALUE(PolicyInfoSet)

  PolicyInfoSet() = default;
};

/// Prints the policies behind a line's " via", the further ones on lines of their own behind
/// `policyIndent` blanks; below each, behind `viaIndent` blanks, its segment lists. The model has
/// the endpoints and colors alone, as the list `srTePolicy`. Raises the label's range error for one
/// that is none.
void printSrTePolicySetModel(scrivo::Printer& printer, const PolicyInfoSet& policySet,
                             std::uint32_t policyIndent, std::uint32_t viaIndent);

/// The policy that a FEC of type SR-TE stands for: with a default key when no policy is known for
/// it, without segment lists when it is in no forwarding table. Policies stand in the IPv4 table,
/// whatever the family of the listing. Raises the range errors of via indexes and weights.
PolicyInfo copySrTePolicyInfo(const Forwarding& forwarding, Vanta::Fib::FecId fecId,
                              std::uint16_t index);

/// The policies of a FEC: the one that it stands for itself, else those that its vias lead to,
/// under the places of the vias. Policies that nobody knows are left out.
PolicyInfoSet collectPolicies(const Forwarding& forwarding, const CachedFec& fec);

} // namespace Rova
