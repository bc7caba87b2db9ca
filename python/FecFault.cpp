// The vias of a FEC print in one of three ways: as SR-TE policies, as tunnels with the tunnels' own
// vias below, or as they stand. Each way takes other things for granted.
#include "FecFault.h"

#include "Checks.h"
#include "rova/core/TypeNames.h"
#include "rova/fec/SortedTunVia.h"

namespace rova_python {

namespace {

using Tunnel::TunnelFib::TunnelFib;
using Tunnel::TunnelTable::EncapKind;
using Tunnel::TunnelTable::TunnelId;
using Tunnel::TunnelTable::TunnelKind;
using Vanta::Fib::AdjType;
using Vanta::Fib::FecId;

/// The library counts the vias of a tunnel in 16 bits.
constexpr std::size_t maxTunnelVias = 0xffff;
constexpr const char* unknownFecKind = "leads to a FEC of a kind that does not exist";

bool isKnownFec(FecId id) { return id.rawAdjType() < Vanta::Fib::adjTypeMax(); }
bool isPolicy(FecId id) { return id.rawAdjType() == static_cast<unsigned>(AdjType::srTePolicy); }

/// Vias in an encapsulation without a kind stop who orders them. One that leads to a FEC stands for
/// the vias of that.
bool hasOrder(const std::vector<Tunnel::TunnelTable::TunnelVia>& vias) {
  unsigned strange = 0;
  for (const auto& via : vias) {
    if (isKnownEncap(via.encapId)) continue;
    strange += Kesh::FecIdIntfId::isFecIdIntfId(via.intfId) ? 2 : 1;
  }
  return strange < 2;
}

const char* faultOfTunnel(const TunnelFib& tunnels, TunnelId id) {
  const auto& vias = tunnels.entry(id).tunnelVia;
  if (vias.size() > maxTunnelVias) return "leads into a tunnel of more than 65535 vias";
  return hasOrder(vias) ? nullptr
                        : "leads into a tunnel with vias in an encapsulation that does not exist";
}

const char* faultOfInterfaceTunnel(const TunnelFib& tunnels, TunnelId id) {
  const auto& vias = tunnels.entry(id).tunnelVia;
  const bool isMpls = !vias.empty() && vias.front().encapId.kind() == EncapKind::mpls;
  return isMpls ? "leads into a tunnel interface in MPLS" : nullptr;
}

const char* faultOfPolicy(const FecTables& tables, FecId id) {
  if (!tables.policies || !tables.tunnels) return nullptr;
  bool found = false;
  const Vanta::Fib::Fec record = *tables.policies->fec.safeLookup(id, found, 0);
  for (std::uint32_t i = 0; i < record.viaCount; ++i) {
    const auto tunnel = record.via(Vanta::Fib::ViaIndex(i)).tunnelId();
    if (const char* const fault = faultOfTunnel(*tables.tunnels, tunnel)) return fault;
  }
  return nullptr;
}

const char* faultOfPolicies(const Rova::CachedFec& fec, const FecTables& tables) {
  if (isPolicy(fec.fecId())) return faultOfPolicy(tables, fec.fecId());
  for (const auto& [via, present] : fec.viaMap()) {
    if (!isKnownFec(via.fecId())) return unknownFecKind;
    if (!isPolicy(via.fecId())) continue;
    if (const char* const fault = faultOfPolicy(tables, via.fecId())) return fault;
  }
  return nullptr;
}

/// The first via decides for all whether they print as tunnels; a backup via does so by itself.
const char* faultOfVias(const Rova::CachedFec& fec, const TunnelFib& tunnels) {
  const bool areTunnels = Rova::isValidDynamicTunnel(fec.viaMap().begin()->first);
  for (const auto& [via, present] : fec.viaMap()) {
    const auto id = via.tunnelId();
    if (id.isNull()) continue;
    const bool isTunnel = areTunnels || (via.isBackup() && Rova::isValidDynamicTunnel(via));
    const char* const fault = isTunnel ? faultOfTunnel(tunnels, id)
                              : id.kind() == TunnelKind::staticInterface
                                  ? faultOfInterfaceTunnel(tunnels, id)
                                  : nullptr;
    if (fault) return fault;
  }
  return nullptr;
}

const char* reasonOf(const Rova::CachedFec& fec, const FecTables& tables) {
  if (!isKnownFec(fec.fecId())) return "is of a kind that does not exist";
  if (fec.vias() == 0 ? !isPolicy(fec.fecId()) : fec.isNexthopGroup()) return nullptr;
  if (fec.isSrTePolicy()) return faultOfPolicies(fec, tables);
  return tables.tunnels ? faultOfVias(fec, *tables.tunnels) : nullptr;
}

} // namespace

bool isKnownEncap(Tunnel::TunnelTable::EncapId encapId) {
  return encapId.kind() <= EncapKind::mpls;
}

std::string faultOf(const Rova::CachedFec& fec, const FecTables& tables) {
  const char* const reason = reasonOf(fec, tables);
  if (!reason) return {};
  const auto id = fec.fecId();
  return "its FEC " + std::to_string(id.rawAdjType()) + "." +
         std::to_string(FecId(AdjType::fib, id.value()).value()) + " " + reason;
}

void needEncapsulation(const Call& call) {
  const auto encapId = call.value<Tunnel::TunnelTable::EncapId>("encapId");
  if (isKnownEncap(encapId)) return;
  call.refuseValue("encapId is of kind " + std::to_string(static_cast<int>(encapId.kind())) +
                   ", its uppermost 4 bits: they are 0 to 3");
}

void needEncapsulations(const Call& call) {
  const auto tunnels = call.value<Lumo::Ptr<const TunnelFib>>("tunnelFib");
  const auto id = call.value<TunnelId>("tunnelId");
  if (!tunnels || id.isNull()) return;
  for (const auto& via : tunnels->entry(id).tunnelVia) {
    if (isKnownEncap(via.encapId)) continue;
    call.refuse(
        "the tunnelId " + std::to_string(id.value()) +
        " of tunnelFib has a via in an encapsulation that does not exist: correct the state");
  }
}

} // namespace rova_python
