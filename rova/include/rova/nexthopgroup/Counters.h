// Packet and byte counts of the entries of nexthop groups.
#pragma once

#include "lumo/Attribute.h"
#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"

namespace Rova {

/// What one counter has counted.
class ROVA_EXPORT CounterEntry {
  LUMO_TYPE(CounterEntry, "Rova::CounterEntry")
  LUMO_CTOR(std::uint64_t, packets)
  LUMO_CTOR(std::uint64_t, bytes)
  LUMO_END
  LUMO_VALUE(CounterEntry)

  CounterEntry() = default;
  CounterEntry(std::uint64_t packets, std::uint64_t bytes) : packets_(packets), bytes_(bytes) {}
};

/// A counter and the chips that count it.
class ROVA_EXPORT CounterIndex {
  LUMO_TYPE(CounterIndex, "Rova::CounterIndex")
  LUMO_CTOR(std::uint64_t, counterIndex)
  LUMO_CTOR(Dunlin::ChipSet, chipMask)
  LUMO_COMPUTED(std::uint32_t, hash)
  LUMO_END
  LUMO_VALUE(CounterIndex)

  CounterIndex() = default;
  CounterIndex(std::uint64_t counterIndex, const Dunlin::ChipSet& chipMask)
      : counterIndex_(counterIndex), chipMask_(chipMask) {}

  /// Jenkins one-at-a-time over the bytes of both in memory order.
  std::uint32_t hash() const;
};

/// Where a command could ask for counts by counter. A derived class has to answer: this one stops
/// the process.
class ROVA_EXPORT NexthopGroupCliCounterInterface : public Lumo::PtrInterface {
  LUMO_TYPE(NexthopGroupCliCounterInterface, "Rova::NexthopGroupCliCounterInterface")
  LUMO_METHOD(getCounters, "index")
  LUMO_END

  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }
  virtual const CounterEntry getCounters(const CounterIndex& index);
};

/// Reads the counts of entries from the tables that the agents of the hardware write.
class ROVA_EXPORT NexthopGroupCounterHelper : public Lumo::PtrInterface {
  LUMO_TYPE(NexthopGroupCounterHelper, "Rova::NexthopGroupCounterHelper")
  // The tables are null until they are mounted, and when that fails.
  LUMO_ATTR(Lumo::Ptr<Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable>, counterKeyTable)
  LUMO_ATTR(Lumo::Ptr<Gaugex::CounterTable>, counterTable)
  LUMO_ATTR(Lumo::Ptr<Gaugex::CounterTable>, snapshotTable)
  LUMO_ATTR(bool, counterEnabled) // whether displays read counters; only with all tables mounted
  LUMO_METHOD(mountCounterVantaes, "entityManager")
  LUMO_METHOD(getCounters, "nhgId", "entryId")
  LUMO_END

  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }

  /// Mounts the three tables by their paths.
  void mountCounterVantaes(const Lumo::Ptr<Merrow::EntityManager>& entityManager);
  /// The counts of an entry since its snapshot, as 64-bit differences: a snapshot above the count
  /// wraps around. Nothing for an entry without a counter. The tables must be mounted.
  CounterEntry getCounters(Routing::NexthopGroup::NexthopGroupId nhgId, unsigned int entryId) const;
};

/// A helper with nothing mounted.
ROVA_EXPORT Lumo::Ptr<NexthopGroupCounterHelper> nexthopGroupCounterHelperFactory();

} // namespace Rova
