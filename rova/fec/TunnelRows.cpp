#include "rova/fec/TunnelRows.h"

#include "rova/fec/Tunnels.h"

#include <cstdlib>

namespace Rova {

namespace {

/// Shares the weight of a via out among the vias of its tunnel, as evenly as whole numbers allow:
/// the division is repeated on what is left, so that the last ones take the remainder. None gets
/// less than 1. All numbers have 16 bits: where that many vias make their count 0, each gets 1.
class WeightShare {
 public:
  WeightShare(const Lumo::String& weight, std::size_t vias)
      : left_(static_cast<std::uint16_t>(std::strtol(weight.c_str(), nullptr, 10))),
        vias_(static_cast<std::uint16_t>(vias)) {}

  /// The share of the next via.
  std::uint16_t next() const {
    const int share = vias_ == 0 ? 0 : left_ / vias_;
    return static_cast<std::uint16_t>(share == 0 ? 1 : share);
  }
  void take(std::uint16_t share) {
    if (left_ > share) left_ = static_cast<std::uint16_t>(left_ - share);
    --vias_;
  }

 private:
  std::uint16_t left_;
  std::uint16_t vias_;
};

/// The largest total of weights that the hardware takes.
std::uint32_t weightLimit(const Forwarding& forwarding) {
  return forwarding.maxUcmpWeight ? *forwarding.maxUcmpWeight : 0xffffffff;
}

/// Builds rows one below the other.
class DirectTunnelRows {
 public:
  DirectTunnelRows(CachedFec& fec, const Forwarding& forwarding)
      : fec_(fec), forwarding_(forwarding) {}

  /// The rows of one via; false when the hardware's limit ends all rows.
  bool add(const CachedVia& via) {
    const auto id = via.tunnelId();
    const auto& entry = tunnelFibEntry(forwarding_, id);
    if (!entry) return true;
    WeightShare share(via.viaWeight(), entry.tunnelVia.size());
    const SortedTunViaSet set(id, forwarding_.tunnelFib);
    for (const auto& [tunnelVia, present] : set.viaMap()) {
      if (fec_.isUnequalCost() && !addWeight(share)) return false;
      addRow(via, tunnelVia);
    }
    return true;
  }

 private:
  bool addWeight(WeightShare& share) {
    const auto weight = share.next();
    total_ = static_cast<std::uint16_t>(total_ + weight);
    if (total_ > weightLimit(forwarding_)) {
      fec_.weightIs(static_cast<std::uint32_t>(total_ - weight));
      return false;
    }
    share.take(weight);
    fec_.viaWeightIs(row_, std::to_string(weight));
    return true;
  }

  void addRow(const CachedVia& via, const SortedTunVia& tunnelVia) {
    fec_.viaTypeStringIs(row_, "active");
    fec_.nexthopAddrIs(row_, tunnelVia.nexthop.stringValue());
    fec_.interfaceIs(row_, tunnelVia.intfId.stringValue());
    fec_.interfaceDescriptionIs(row_, interfaceDescriptionOf(forwarding_, tunnelVia.intfId));
    if (tunnelVia.encapId.kind() == Tunnel::TunnelTable::EncapKind::mpls) {
      fec_.labelIs(row_, via.viaLabel());
      fec_.viaLabelStackIs(row_, labelStackOf(forwarding_, tunnelVia.encapId));
    }
    ++row_;
  }

  CachedFec& fec_;
  const Forwarding& forwarding_;
  std::uint16_t row_ = 0;
  std::uint16_t total_ = 0;
};

/// The vias of a tunnel as it shows them: its own, or those behind its FECs when its first one
/// leads to a FEC.
SortedTunViaSet shownTunnelVias(const Forwarding& forwarding, Tunnel::TunnelTable::TunnelId id) {
  const auto& vias = tunnelFibEntry(forwarding, id).tunnelVia;
  const bool hierarchical = !vias.empty() && Kesh::FecIdIntfId::isFecIdIntfId(vias.front().intfId);
  return hierarchical ? resolveTunnelToFec(forwarding, id)
                      : SortedTunViaSet(id, forwarding.tunnelFib);
}

} // namespace

void updateTunSortedVia(CachedFec& fec, const Forwarding& forwarding) {
  DirectTunnelRows rows(fec, forwarding);
  for (const auto& [via, present] : fec.viaMap()) {
    if (!rows.add(via)) break;
  }
  fec.connectedIs(false);
  fec.numEntriesIs(static_cast<int>(fec.viaTypeStrings()));
}

void updateTunSortedViaHierarchyEntry(CachedFec& fec, const Forwarding& forwarding,
                                      const CachedVia& via, std::uint16_t row) {
  const auto id = via.tunnelId();
  if (!tunnelFibEntry(forwarding, id)) return;
  fec.viaTypeStringIs(row, via.isBackup() ? "backup" : "active");
  fec.nexthopAddrIs(row, via.hop().isAddrZero() ? Lumo::String() : via.hop().stringValue());
  fec.interfaceIs(row, {});
  fec.labelIs(row, via.viaLabel());
  if (!via.isBackup() && fec.isUnequalCost()) fec.viaWeightIs(row, via.viaWeight());

  auto tunnel = Tunnel::CliSupport::getCachedTunnelInfo(id, tunnelEndpoint(forwarding, id));
  Tunnel::CliSupport::TunnelViaIndex at = 0;
  const SortedTunViaSet set = shownTunnelVias(forwarding, id);
  for (const auto& [tunnelVia, present] : set.viaMap()) {
    tunnel.newNexthopAddr(at) = tunnelVia.nexthop.stringValue();
    tunnel.newInterface(at) = tunnelVia.intfId.stringValue();
    tunnel.newInterfaceDescription(at) = interfaceDescriptionOf(forwarding, tunnelVia.intfId);
    tunnel.newViaLabelStack(at) = labelStackOf(forwarding, tunnelVia.encapId);
    ++at;
  }
  tunnel.numVias = at;
  fec.tunViaIs(row, std::move(tunnel));
}

void updateTunSortedViaHierarchy(CachedFec& fec, const Forwarding& forwarding) {
  std::uint16_t row = 0;
  for (const auto& [via, present] : fec.viaMap()) {
    updateTunSortedViaHierarchyEntry(fec, forwarding, via, row++);
  }
  fec.connectedIs(false);
  fec.numEntriesIs(static_cast<int>(fec.viaTypeStrings()));
}

} // namespace Rova
