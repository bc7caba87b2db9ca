// The rows of a FEC whose vias lead into tunnels. Templates over the sorter, which has the query
// and the tables.
#pragma once

#include "rova/fec/InterfaceDescription.h"
#include "rova/fec/TunnelWalk.h"

#include <cstdlib>

namespace Rova {

namespace detail {

/// Shares the weight of a via out among the vias of its tunnel, as evenly as whole numbers allow:
/// the division is repeated on what is left, so that the last ones take the remainder. None gets
/// less than 1. All numbers have 16 bits.
class WeightShare {
 public:
  WeightShare(const Lumo::String& weight, std::size_t vias)
      : left_(static_cast<std::uint16_t>(std::strtol(weight.c_str(), nullptr, 10))),
        vias_(static_cast<std::uint16_t>(vias)) {}

  /// The share of the next via.
  std::uint16_t next() const {
    const auto share = static_cast<std::uint16_t>(left_ / vias_);
    return share == 0 ? 1 : share;
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
template <class Sorter>
std::uint32_t weightLimit(const Sorter& sorter) {
  const auto& hardware = sorter.routingHardwareStatus();
  return hardware ? hardware->maxUcmpWeight : 0xffffffff;
}

/// Builds rows one below the other.
template <class Sorter>
class DirectTunnelRows {
 public:
  DirectTunnelRows(CachedFec& fec, Sorter& sorter) : fec_(fec), sorter_(sorter) {}

  /// The rows of one via; false when the hardware's limit ends all rows.
  bool add(const CachedVia& via) {
    const auto id = via.tunnelId();
    const auto& entry = tunnelFibEntry(sorter_, id);
    if (!entry) return true;
    WeightShare share(via.viaWeight(), entry.tunnelVia.size());
    const SortedTunViaSet set(id, sorter_.tunnelFib());
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
    if (total_ > weightLimit(sorter_)) {
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
    fec_.interfaceDescriptionIs(row_, interfaceDescriptionOf(sorter_, tunnelVia.intfId));
    if (tunnelVia.encapId.kind() == Tunnel::TunnelTable::EncapKind::mpls) {
      fec_.labelIs(row_, via.viaLabel());
      fec_.viaLabelStackIs(row_, labelStackOf(sorter_, tunnelVia.encapId));
    }
    ++row_;
  }

  CachedFec& fec_;
  Sorter& sorter_;
  std::uint16_t row_ = 0;
  std::uint16_t total_ = 0;
};

/// The prefix that the protocol of a tunnel says it leads to; empty when its table does not know
/// it.
template <class Sorter>
Lumo::String tunnelEndpoint(const Sorter& sorter, Tunnel::TunnelTable::TunnelId id) {
  using Tunnel::TunnelTable::TunnelKind;
  const auto read = [id](const auto& table) -> Lumo::String {
    if (!table) return {};
    const auto& entry = table->entry(id);
    return !entry ? Lumo::String() : entry.endpoint.stringValue();
  };
  switch (id.kind()) {
  case TunnelKind::bgpLu:
    return read(sorter.bgpLuTunnelTable());
  case TunnelKind::ldp:
    return read(sorter.ldpTunnelTable());
  case TunnelKind::staticTunnel:
    return read(sorter.staticTunnelTable());
  case TunnelKind::sr:
    return read(sorter.srTunnelTable());
  default:
    return {};
  }
}

/// The vias of a tunnel as it shows them: its own, or those behind its FECs when its first one
/// leads to a FEC.
template <class Sorter>
SortedTunViaSet shownTunnelVias(Sorter& sorter, Tunnel::TunnelTable::TunnelId id) {
  const auto& vias = tunnelFibEntry(sorter, id).tunnelVia;
  const bool hierarchical = !vias.empty() && Kesh::FecIdIntfId::isFecIdIntfId(vias.front().intfId);
  return hierarchical ? resolveTunnelToFec(sorter, id) : SortedTunViaSet(id, sorter.tunnelFib());
}

} // namespace detail

/// Rows for a FEC on tunnels that resolve straight from the tunnel FIB: one for each via of each
/// tunnel, with the weight of the FEC's via spread over them. A tunnel that is not in the FIB gives
/// no row. Rows end where their weights would pass the hardware's limit, and the FEC then weighs
/// what they sum to. All rows are active, those of backup vias too.
template <class Sorter>
void updateTunSortedVia(CachedFec& fec, Sorter& sorter) {
  detail::DirectTunnelRows<Sorter> rows(fec, sorter);
  for (const auto& [via, present] : fec.viaMap()) {
    if (!rows.add(via)) break;
  }
  fec.connectedIs(false);
  fec.numEntriesIs(static_cast<int>(fec.viaTypeStrings()));
}

/// One row for a via on a tunnel, with the tunnel's own vias below it; none for a tunnel that is
/// not in the FIB.
template <class Sorter>
void updateTunSortedViaHierarchyEntry(CachedFec& fec, Sorter& sorter, const CachedVia& via,
                                      std::uint16_t row) {
  const auto id = via.tunnelId();
  if (!tunnelFibEntry(sorter, id)) return;
  fec.viaTypeStringIs(row, via.isBackup() ? "backup" : "active");
  fec.nexthopAddrIs(row, via.hop().isAddrZero() ? Lumo::String() : via.hop().stringValue());
  fec.interfaceIs(row, {});
  fec.labelIs(row, via.viaLabel());
  if (!via.isBackup() && fec.isUnequalCost()) fec.viaWeightIs(row, via.viaWeight());

  auto tunnel = Tunnel::CliSupport::getCachedTunnelInfo(id, detail::tunnelEndpoint(sorter, id));
  Tunnel::CliSupport::TunnelViaIndex at = 0;
  const SortedTunViaSet set = detail::shownTunnelVias(sorter, id);
  for (const auto& [tunnelVia, present] : set.viaMap()) {
    tunnel.newNexthopAddr(at) = tunnelVia.nexthop.stringValue();
    tunnel.newInterface(at) = tunnelVia.intfId.stringValue();
    tunnel.newInterfaceDescription(at) = interfaceDescriptionOf(sorter, tunnelVia.intfId);
    tunnel.newViaLabelStack(at) = labelStackOf(sorter, tunnelVia.encapId);
    ++at;
  }
  tunnel.numVias = at;
  fec.tunViaIs(row, std::move(tunnel));
}

/// Rows for a FEC on tunnels of the protocols. Row numbers are those of the vias, so that a via
/// without a row leaves a gap.
template <class Sorter>
void updateTunSortedViaHierarchy(CachedFec& fec, Sorter& sorter) {
  std::uint16_t row = 0;
  for (const auto& [via, present] : fec.viaMap()) {
    updateTunSortedViaHierarchyEntry(fec, sorter, via, row++);
  }
  fec.connectedIs(false);
  fec.numEntriesIs(static_cast<int>(fec.viaTypeStrings()));
}

} // namespace Rova
