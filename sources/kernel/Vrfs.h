// Which VRF a routing table is, and which VRF an interface is in.
#pragma once

#include "sources/kernel/KernelState.h"
#include "state/DeviceBuilder.h"

#include <map>
#include <set>
#include <unordered_map>

namespace sources::kernel {

/// The table of the VRF of that name, as far as it shows without the routes: nothing for "all", for
/// a name that none has, and wherever names of vrf devices and those of plain tables could be in
/// each other's way. `devices` are the vrf devices.
std::optional<std::uint32_t> tableOf(const std::string& vrf, const std::vector<Link>& devices);

/// A VRF that a kernel has.
struct VrfIdentity {
  std::uint32_t table; ///< as `vrfTable` gives it
  L3::VrfName name;
  Vrf::VrfIdMap::VrfId id;
  bool isPlain; ///< there by nothing but its routes
};

/// The VRFs of a device, each with a name and a number of its own: the default one, then by table
/// one for each table of a vrf device and one for each other table that has routes.
std::vector<VrfIdentity> vrfsOf(const KernelState& kernel);

/// The VRFs of a device by table.
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
