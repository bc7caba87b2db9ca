#include "rova/nexthopgroup/Counters.h"

#include "lumo/Assert.h"
#include "lumo/OneAtATime.h"
#include "state/Mount.h"

namespace Rova {

using Gaugex::CounterTable;
using Routing::NexthopGroup::NexthopGroupEntryCounterKeyInfo;
using Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable;

LUMO_DEFINE_TYPE(CounterEntry);
LUMO_DEFINE_TYPE(CounterIndex);
LUMO_DEFINE_TYPE(NexthopGroupCliCounterInterface);
LUMO_DEFINE_TYPE(NexthopGroupCounterHelper);

namespace {

/// The table at the path, null when there is none or it is something else.
template <class Table>
Lumo::Ptr<Table> mounted(LumoVanta::Mount& mount, const char* path, const char* typeName) {
  mount.doMount(path, typeName, LumoVanta::MountInfo::reader());
  return Lumo::dynamicPtrCast<Table>(mount.getEntity(path));
}

Gaugex::VantaGaugexCounter counterOf(const CounterTable& table, const Gaugex::CounterIndex& index) {
  bool found = false;
  return *table.counter.safeLookup(index, found, 0);
}

} // namespace

std::uint32_t CounterIndex::hash() const {
  Lumo::OneAtATime hash;
  hash.add(counterIndex_);
  for (const std::uint64_t word : chipMask_.words()) hash.add(word);
  return hash.end();
}

const CounterEntry NexthopGroupCliCounterInterface::getCounters(const CounterIndex&) {
  LUMO_ASSERT(false, "0 && \"Need to implement getCounters in a derived class\"");
  return {};
}

void NexthopGroupCounterHelper::mountCounterVantaes(
    const Lumo::Ptr<Merrow::EntityManager>& entityManager) {
  LumoVanta::Mount mount(entityManager);
  mount.handleInitialized();
  constexpr const char* counterType = "Gaugex::CounterTable";
  counterKeyTable_ = mounted<NexthopGroupEntryToCounterKeyTable>(
      mount, NexthopGroupEntryToCounterKeyTable::path,
      "Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable");
  counterTable_ = mounted<CounterTable>(mount, CounterTable::path, counterType);
  snapshotTable_ = mounted<CounterTable>(mount, CounterTable::snapshotPath, counterType);
}

CounterEntry NexthopGroupCounterHelper::getCounters(Routing::NexthopGroup::NexthopGroupId nhgId,
                                                    unsigned int entryId) const {
  bool found = false;
  const auto info = *counterKeyTable_->counterKeyInfo.safeLookup({nhgId, entryId}, found, 0);
  if (info == NexthopGroupEntryCounterKeyInfo()) return {};
  const Gaugex::CounterIndex index(info.counterIndex);
  const auto now = counterOf(*counterTable_, index);
  const auto before = counterOf(*snapshotTable_, index);
  return {now.packets - before.packets, now.bytes - before.bytes};
}

Lumo::Ptr<NexthopGroupCounterHelper> nexthopGroupCounterHelperFactory() {
  return Lumo::newEntity<NexthopGroupCounterHelper>();
}

} // namespace Rova
