// The vias of a FEC print in one of three ways: as SR-TE policies, as tunnels with the tunnels' own
// vias below, or as they stand. Each way takes other things for granted.
#include "FecFault.h"

#include "Checks.h"
#include "rova/core/TypeNames.h"
#include "rova/fec/Tunnels.h"

#include <algorithm>

namespace rova_python {

namespace {

using Tunnel::TunnelFib::TunnelFib;
using Tunnel::TunnelTable::EncapKind;
using Tunnel::TunnelTable::TunnelId;
using Tunnel::TunnelTable::TunnelKind;
using Vanta::Fib::AdjType;
using Vanta::Fib::FecId;

constexpr const char* unknownFecKind = "leads to a FEC of a kind that does not exist";

bool isKnownFec(FecId id) { return id.rawAdjType() < Vanta::Fib::adjTypeMax(); }
bool isPolicy(FecId id) { return id.rawAdjType() == static_cast<unsigned>(AdjType::srTePolicy); }

/// Vias in an encapsulation without a kind stop who compares two of them that lead the same way.
/// One that leads to a FEC gives way to the vias of that.
class StrangeVias {
 public:
  explicit StrangeVias(const FecTables& tables) : tables_(tables) {}

  /// Whether they can be put in order, those behind FECs too.
  bool haveOrder(const std::vector<Tunnel::TunnelTable::TunnelVia>& vias) {
    for (const auto& via : vias) {
      if (!isKnownEncap(via.encapId)) add({via.nexthop, via.intfId, via.encapId.kind()});
    }
    for (std::size_t i = 0; ordered_ && i < ways_.size(); ++i) follow(Way(ways_[i]));
    return ordered_;
  }

 private:
  struct Way {
    Kesh::IpGenAddr hop;
    Kesh::IntfId interface;
    EncapKind kind;
    friend bool operator==(const Way&, const Way&) = default;
  };

  void add(const Way& way) {
    ordered_ = ordered_ && std::find(ways_.begin(), ways_.end(), way) == ways_.end();
    ways_.push_back(way);
  }

  void follow(const Way& way) {
    const FecId id = Rova::fecBehindTunnelVia(way.interface);
    if (id.isNull()) return;
    if (Vanta::Fib::isV6FecId(id)) {
      if (tables_.fecs6) addVias(tables_.fecs6->fec, id, way.kind);
    } else if (tables_.fecs) {
      addVias(tables_.fecs->fec, id, way.kind);
    }
  }

  template <class View>
  void addVias(const View& fecs, FecId id, EncapKind kind) {
    bool found = false;
    const auto record = *fecs.safeLookup(id, found, 0);
    for (std::uint32_t i = 0; i < record.viaCount; ++i) {
      const auto& via = record.via(Vanta::Fib::ViaIndex(i));
      add({Kesh::IpGenAddr(via.hop), via.intfId, kind});
    }
  }

  const FecTables& tables_;
  std::vector<Way> ways_;
  bool ordered_ = true;
};

const char* faultOfTunnel(const FecTables& tables, TunnelId id) {
  const auto& vias = tables.tunnels->entry(id).tunnelVia;
  return StrangeVias(tables).haveOrder(vias)
             ? nullptr
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
    if (const char* const fault = faultOfTunnel(tables, tunnel)) return fault;
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
const char* faultOfVias(const Rova::CachedFec& fec, const FecTables& tables) {
  const bool areTunnels = Rova::isValidDynamicTunnel(fec.viaMap().begin()->first);
  for (const auto& [via, present] : fec.viaMap()) {
    const auto id = via.tunnelId();
    if (id.isNull()) continue;
    const bool isTunnel = areTunnels || (via.isBackup() && Rova::isValidDynamicTunnel(via));
    const char* const fault = isTunnel ? faultOfTunnel(tables, id)
                              : id.kind() == TunnelKind::staticInterface
                                  ? faultOfInterfaceTunnel(*tables.tunnels, id)
                                  : nullptr;
    if (fault) return fault;
  }
  return nullptr;
}

const char* reasonOf(const Rova::CachedFec& fec, const FecTables& tables) {
  if (!isKnownFec(fec.fecId())) return "is of a kind that does not exist";
  if (fec.vias() == 0 ? !isPolicy(fec.fecId()) : fec.isNexthopGroup()) return nullptr;
  if (fec.isSrTePolicy()) return faultOfPolicies(fec, tables);
  return tables.tunnels ? faultOfVias(fec, tables) : nullptr;
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
