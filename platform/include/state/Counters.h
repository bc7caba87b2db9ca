// Packet and byte counts of nexthop group entries: which counter an entry has, and the counts.
#pragma once

#include "lumo/Ptr.h"
#include "state/NexthopGroup.h"
#include "vanta/VantaMap.h"

#include <compare>
#include <cstdint>
#include <memory>

namespace Routing::NexthopGroup {

/// One entry of one group.
struct NexthopGroupEntryCounterKey {
  NexthopGroupId nhgId = 0;
  std::uint32_t entryIndex = 0;
  friend auto operator<=>(const NexthopGroupEntryCounterKey&,
                          const NexthopGroupEntryCounterKey&) = default;
};

/// Which counter an entry has. The default one stands for an entry without a counter.
struct NexthopGroupEntryCounterKeyInfo {
  NexthopGroupEntryCounterKey key;
  std::uint64_t firstHalf = 0xffffffff; ///< the writer's own; readers only compare it
  std::uint64_t counterIndex = 0;

  /// Compares what is known of the counter, whosever it is.
  friend bool operator==(const NexthopGroupEntryCounterKeyInfo& a,
                         const NexthopGroupEntryCounterKeyInfo& b) {
    return a.firstHalf == b.firstHalf && a.counterIndex == b.counterIndex;
  }
};

/// Which counter each entry of a nexthop group has.
class NexthopGroupEntryToCounterKeyTable : public Lumo::PtrInterface {
 public:
  using Table = Vanta::VantaBase<NexthopGroupEntryCounterKey, NexthopGroupEntryCounterKeyInfo>;
  /// The path at which the entity manager has it.
  static constexpr const char* path = "tunnel/nexthop/counterkeyinfo";

  explicit NexthopGroupEntryToCounterKeyTable(std::unique_ptr<Table> table)
      : counterKeyInfo(std::move(table), "counterKeyInfo") {}
  Vanta::VantaMap<NexthopGroupEntryCounterKey, NexthopGroupEntryCounterKeyInfo> counterKeyInfo;
};

} // namespace Routing::NexthopGroup

namespace Gaugex {

/// The key of a counter: its index in the first 64 bits, the rest zero.
class CounterIndex {
 public:
  constexpr CounterIndex() = default;
  constexpr explicit CounterIndex(std::uint64_t index) : index_(index) {}
  constexpr std::uint64_t index() const { return index_; }
  friend constexpr auto operator<=>(const CounterIndex&, const CounterIndex&) = default;

 private:
  std::uint64_t index_ = 0;
  std::uint64_t reserved_ = 0;
};

/// The default counter, of nothing counted, stands for one that is not in the table.
struct VantaGaugexCounter {
  CounterIndex key;
  std::uint64_t packets = 0;
  std::uint64_t bytes = 0;
  friend bool operator==(const VantaGaugexCounter&, const VantaGaugexCounter&) = default;
};

/// Counts by counter: those by now, or those at the last clearing.
class CounterTable : public Lumo::PtrInterface {
 public:
  using Table = Vanta::VantaBase<CounterIndex, VantaGaugexCounter>;
  /// Where the counters of nexthop groups stand, as their writer numbers them.
  static constexpr const char* path = "gaugex/counterTable/17/4294967295";
  /// Where those of the last clearing stand.
  static constexpr const char* snapshotPath = "gaugex/snapshotCounterTable/17/4294967295";

  explicit CounterTable(std::unique_ptr<Table> table) : counter(std::move(table), "counter") {}
  Vanta::VantaMap<CounterIndex, VantaGaugexCounter> counter;
};

} // namespace Gaugex

// platform/state/Tables.cpp has it.
extern template class Vanta::VantaMap<Routing::NexthopGroup::NexthopGroupEntryCounterKey,
                                      Routing::NexthopGroup::NexthopGroupEntryCounterKeyInfo>;
extern template class Vanta::VantaMap<Gaugex::CounterIndex, Gaugex::VantaGaugexCounter>;
