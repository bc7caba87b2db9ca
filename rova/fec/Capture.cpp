#include "rova/fec/Capture.h"

namespace Rova {

namespace {

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

template <class Fec>
Lumo::Ptr<CachedFec> capture(const Forwarding& forwarding, Vanta::Fib::FecId fecId,
                             const Fec& record) {
  if (forwarding.hasV6Nexthop && isV6FecId(fecId)) *forwarding.hasV6Nexthop = true;
  const auto entity = cachedFecFactory(fecId);
  entity->backupViaIndexIs(Vanta::Fib::ViaIndex::fromRecord(record.backupViaIndex));
  if (record.backupViaIndex != 0 && record.viaCount > record.backupViaIndex) {
    captureWithBackup(*entity, record);
  } else {
    capturePlain(*entity, record);
  }
  forwarding.fec.insertOrAssign(fecId, entity);
  return entity;
}

} // namespace

Lumo::Ptr<CachedFec> cachedFecIs(const Forwarding& forwarding, Vanta::Fib::FecId fecId,
                                 const Vanta::Fib::Fec& record) {
  return capture(forwarding, fecId, record);
}

Lumo::Ptr<CachedFec> cachedFecIs(const Forwarding& forwarding, Vanta::Fib::FecId fecId,
                                 const Vanta::Fib6::Fec& record) {
  return capture(forwarding, fecId, record);
}

const CachedFec* copyAdjacency(const Forwarding& forwarding, Vanta::Fib::FecId fecId) {
  if (fecId.isNull()) return nullptr;
  if (const auto* const present = forwarding.fec.find(fecId)) return present->ptr();
  const auto captureFrom = [&](const auto& table) {
    bool found = false;
    return capture(forwarding, fecId, *table.safeLookup(fecId, found, 0)).ptr();
  };
  return isV6FecId(fecId) ? captureFrom(forwarding.forwarding6Status->fec)
                          : captureFrom(forwarding.forwardingStatus->fec);
}

} // namespace Rova
