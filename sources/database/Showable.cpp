#include "sources/database/Showable.h"

namespace sources::database {

namespace {

using Tunnel::TunnelFib::TunnelFibEntry;
using Tunnel::TunnelTable::EncapKind;
using Tunnel::TunnelTable::TunnelKind;
using Tunnel::TunnelTable::TunnelVia;

/// What is wrong with a via of a tunnel; empty for nothing.
std::string faultOf(const TunnelFibEntry& entry, const TunnelVia& via) {
  if (via.encapId.kind() > EncapKind::mpls) return "an encapsulation of no known kind";
  if (isStrangeFec(via.intfId)) return "a FEC of no known type";
  const bool isConfigured = entry.key.kind() == TunnelKind::staticInterface;
  if (isConfigured && via.encapId.kind() == EncapKind::mpls) return "labels on a tunnel interface";
  return {};
}

void requireShowable(const TunnelFibEntry& entry, const std::string& place) {
  for (const auto* const vias : {&entry.tunnelVia, &entry.backupTunnelVia}) {
    for (const TunnelVia& via : *vias) {
      const auto fault = faultOf(entry, via);
      if (fault.empty()) continue;
      throw SourceError(place + ": tunnel " + std::to_string(entry.key.value()) + ": found " +
                        fault);
    }
  }
}

} // namespace

bool isStrangeFec(const Kesh::IntfId& intfId) {
  if (!Kesh::FecIdIntfId::isFecIdIntfId(intfId)) return false;
  return Vanta::Fib::FecId::hierarchicalIntfIdToFecId(intfId).rawAdjType() >=
         Vanta::Fib::adjTypeMax();
}

void requireShowable(const state::DeviceState& device, const std::string& place) {
  device.tunnelFib->entries.forEach(
      [&](const auto&, const TunnelFibEntry& entry) { requireShowable(entry, place); });
}

} // namespace sources::database
