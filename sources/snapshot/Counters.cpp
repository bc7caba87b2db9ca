// Which counter each entry of a nexthop group has, and the counts.
#include "Sections.h"

#include "state/Counters.h"

namespace sources::snapshot {

namespace {

using Gaugex::CounterTable;
using Gaugex::VantaGaugexCounter;
using Routing::NexthopGroup::NexthopGroupEntryCounterKeyInfo;
using Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable;

constexpr Field<NexthopGroupEntryCounterKeyInfo> keyInfoFields[] = {
    field<NexthopGroupEntryCounterKeyInfo, &NexthopGroupEntryCounterKeyInfo::counterIndex>(
        "counterIndex"),
    field<NexthopGroupEntryCounterKeyInfo, &NexthopGroupEntryCounterKeyInfo::firstHalf>(
        "firstHalf"),
};

constexpr Field<VantaGaugexCounter> counterFields[] = {
    field<VantaGaugexCounter, &VantaGaugexCounter::packets>("packets"),
    field<VantaGaugexCounter, &VantaGaugexCounter::bytes>("bytes"),
};

/// A section that is one shared table of records: `Table` is the writer's side, `View` the reader's
/// in the entity `Handle`.
template <auto Handle, auto View, auto Table, const auto& Fields>
constexpr Section tableSection(std::string_view name) {
  return {
      name,
      [](Node& node, Target& builder) {
        using Map = std::decay_t<decltype((*(builder.state.*Handle)).*View)>;
        readMap<typename Map::KeyType>(node, [&](const auto& key, Node& value) {
          typename Map::ValueType record;
          record.key = key;
          readFields(value, Fields, record);
          (builder.*Table)->insert(record);
        });
      },
      [](const state::DeviceState& device) { return ((*(device.*Handle)).*View).members() > 0; },
      [](Output& out, const state::DeviceState& device) {
        writeTable(out, (*(device.*Handle)).*View,
                   [&](const auto& record) { writeFields(out, Fields, record); });
      }};
}

} // namespace

Section counterKeySection() {
  return tableSection<&state::DeviceState::counterKeyTable,
                      &NexthopGroupEntryToCounterKeyTable::counterKeyInfo,
                      &state::DeviceBuilder::counterKeys, keyInfoFields>("counterKeyTable");
}

Section counterSection() {
  return tableSection<&state::DeviceState::counterTable, &CounterTable::counter,
                      &state::DeviceBuilder::counters, counterFields>("counterTable");
}

Section counterSnapshotSection() {
  return tableSection<&state::DeviceState::snapshotTable, &CounterTable::counter,
                      &state::DeviceBuilder::counterSnapshots, counterFields>("snapshotTable");
}

} // namespace sources::snapshot
