// Bringing FECs from the forwarding tables into a sorter.
//
// These are templates over the sorter, which names its family and has the tables
// `forwardingStatus`, `forwarding6Status` and the collection `fec`. The FEC table is chosen by the
// identifier and not by the route's family, so each sorter captures records of both.
#pragma once

#include "rova/fec/CachedFec.h"

namespace Rova {

namespace detail {

/// The vias of a FEC record with backup vias: no weights, no indexes.
template <class Fec>
void captureWithBackup(CachedFec& entity, const Fec& record) {
  entity.hasBackupIs(true);
  for (std::uint32_t i = 0; i < record.viaCount; ++i) {
    const auto& from = record.via(Vanta::Fib::ViaIndex(i));
    CachedVia via;
    via.intfIdIs(from.intfId);
    via.hopIs(from.hop);
    via.isBackupIs(i >= record.backupViaIndex);
    via.tunnelIdIs(from.tunnelId());
    via.viaLabelIs(from.mplsLabel());
    entity.viaIs(via, true);
  }
}

template <class Fec>
std::uint32_t totalWeight(const Fec& record) {
  std::uint32_t total = 0;
  for (std::uint32_t i = 0; i < record.viaCount; ++i) {
    total += record.via(Vanta::Fib::ViaIndex(i)).weight;
  }
  return total;
}

template <class Fec>
void capturePlain(CachedFec& entity, const Fec& record) {
  entity.weightIs(totalWeight(record));
  const bool weighted = record.viaCount < entity.weight();
  for (std::uint32_t i = 0; i < record.viaCount; ++i) {
    const auto& from = record.via(Vanta::Fib::ViaIndex(i));
    CachedVia via;
    via.intfIdIs(from.intfId);
    via.hopIs(from.hop);
    via.viaLabelIs(from.mplsLabel());
    via.tunnelIdIs(from.tunnelId());
    if (from.fecId().rawAdjType() == static_cast<unsigned>(Vanta::Fib::AdjType::srTePolicy)) {
      via.viaIndexIs(static_cast<std::uint16_t>(i));
    }
    if (weighted) via.viaWeightIs(std::to_string(from.weight));
    entity.viaIs(via, true);
  }
}

} // namespace detail

/// Builds the entity of a FEC record under `fecId` and stores it in the sorter, in place of one
/// with the same identifier. Range errors of the record pass up and leave no entity.
template <class Sorter, class Fec>
Lumo::Ptr<CachedFec> cachedFecIs(Sorter& sorter, Vanta::Fib::FecId fecId, const Fec& record) {
  if constexpr (Sorter::Family::remembersV6Nexthops) {
    if (isV6FecId(fecId)) sorter.hasV6NexthopIs(true);
  }
  const auto entity = cachedFecFactory(fecId);
  entity->backupViaIndexIs(Vanta::Fib::ViaIndex::fromRecord(record.backupViaIndex));
  if (record.backupViaIndex != 0 && record.viaCount > record.backupViaIndex) {
    detail::captureWithBackup(*entity, record);
  } else {
    detail::capturePlain(*entity, record);
  }
  sorter.fecIs(entity);
  return entity;
}

/// Makes sure that the sorter holds the FEC and gives it; null for the null identifier. A FEC is
/// captured once: what a sorter shows is its state at that moment. One that is missing from the
/// table gets an entity without vias.
template <class Sorter>
const CachedFec* copyAdjacency(Sorter& sorter, Vanta::Fib::FecId fecId) {
  if (fecId.isNull()) return nullptr;
  if (const auto& present = sorter.fec(fecId)) return present.ptr();
  const auto capture = [&](const auto& table) {
    bool found = false;
    return cachedFecIs(sorter, fecId, *table.safeLookup(fecId, found, 0)).ptr();
  };
  return isV6FecId(fecId) ? capture(sorter.forwarding6Status()->fec)
                          : capture(sorter.forwardingStatus()->fec);
}

} // namespace Rova
