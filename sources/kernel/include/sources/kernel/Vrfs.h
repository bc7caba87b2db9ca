// Which VRF a routing table is, and which VRF an interface is in.
#pragma once

#include "sources/kernel/Gather.h"
#include "state/DeviceBuilder.h"

#include <map>
#include <set>
#include <unordered_map>

namespace sources::kernel {

/// The table that stands for a VRF: addresses of the default VRF are in the table `local`, its
/// other routes in `main`.
constexpr std::uint32_t vrfTable(std::uint32_t table) {
  return table == RT_TABLE_LOCAL ? std::uint32_t{RT_TABLE_MAIN} : table;
}

/// The VRFs of a device: the default one, one for each table of a vrf device, and one for each
/// other table that has routes.
class Vrfs {
 public:
  Vrfs(const KernelState& kernel, state::DeviceBuilder& builder);

  state::VrfTables& tables(std::uint32_t table) const {
    return *places_.at(vrfTable(table)).tables;
  }
  state::VrfState& vrf(std::uint32_t table) const {
    return builder_.state.vrfs[places_.at(vrfTable(table)).index];
  }

 private:
  struct Place {
    state::VrfTables* tables;
    std::size_t index;
  };
  void enter(std::uint32_t table, const L3::VrfName& name, Vrf::VrfIdMap::VrfId id);

  state::DeviceBuilder& builder_;
  std::unordered_map<std::uint32_t, Place> places_;
};

/// The interfaces by the kernel's index.
class Interfaces {
 public:
  struct Entry {
    Kesh::IntfId id; ///< null for an interface that is not there
    std::uint32_t table = RT_TABLE_MAIN;
  };
  explicit Interfaces(const std::vector<Link>& links);
  const Entry& find(std::uint32_t index) const;

 private:
  std::unordered_map<std::uint32_t, Entry> entries_;
};

} // namespace sources::kernel
