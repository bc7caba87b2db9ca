#include "sources/kernel/Vrfs.h"

#include <algorithm>
#include <charconv>

namespace sources::kernel {

namespace {

using Vrf::VrfIdMap::VrfId;
using Names = std::map<std::uint32_t, std::string>; // VRF names by table

constexpr std::string_view plainTable = "table-"; // with the number behind it

std::string plainName(std::uint32_t table) {
  return std::string(plainTable) + std::to_string(table);
}

std::optional<std::uint32_t> plainTableOf(const std::string& name) {
  std::uint32_t table = 0;
  if (!name.starts_with(plainTable)) return {};
  std::from_chars(name.data() + plainTable.size(), name.data() + name.size(), table);
  return plainName(table) == name ? std::optional(table) : std::nullopt;
}

template <class Row>
void addTables(const std::vector<Row>& rows, Names& names) {
  std::uint32_t last = RT_TABLE_MAIN;
  for (const Row& row : rows) { // routes of a table come in one run
    if (row.table == last) continue;
    last = row.table;
    names.try_emplace(vrfTable(row.table), plainName(row.table));
  }
}

Names vrfNames(const KernelState& kernel) {
  Names names{{RT_TABLE_MAIN, L3::defaultVrfName}};
  for (const Link& link : kernel.links) {
    if (link.vrfTable != 0) names.try_emplace(vrfTable(link.vrfTable), link.name);
  }
  addTables(kernel.routes, names);
  addTables(kernel.routes6, names);
  return names;
}

/// The numbers of VRFs, asked for in ascending order of their tables. A number has 24 bits and a
/// table 32: a table whose number does not fit takes the highest one that no table has.
class Numbers {
 public:
  explicit Numbers(const Names& names) : names_(names) {}

  VrfId of(std::uint32_t table) {
    if (table != 0 && table < VrfId::none) return VrfId(table);
    while (names_.contains(next_)) --next_;
    return VrfId(next_--);
  }

 private:
  const Names& names_;
  std::uint32_t next_ = VrfId::none - 1;
};

/// A name that no other table has: the kernel lets a vrf device be called "default" or "table-7".
std::string uniqueName(std::string name, std::uint32_t table, std::set<std::string>& used) {
  while (!used.insert(name).second) name += "-" + std::to_string(table);
  return name;
}

} // namespace

std::optional<std::uint32_t> tableOf(const std::string& vrf, const std::vector<Link>& devices) {
  if (vrf == L3::defaultVrfName) return RT_TABLE_MAIN;
  const auto plain = plainTableOf(vrf);
  std::optional<std::uint32_t> found = plain;
  std::set<std::uint32_t> tables{RT_TABLE_MAIN};
  for (const Link& device : devices) {
    const bool looksPlain =
        device.name == L3::defaultVrfName || device.name.starts_with(plainTable);
    const bool isFirst = tables.insert(vrfTable(device.vrfTable)).second;
    if (looksPlain || !isFirst) return {};
    if (device.name == vrf) found = device.vrfTable;
  }
  if (plain && tables.contains(vrfTable(*plain))) return {};
  return found;
}

std::vector<VrfIdentity> vrfsOf(const KernelState& kernel) {
  const Names names = vrfNames(kernel);
  std::vector<VrfIdentity> vrfs{{RT_TABLE_MAIN, L3::defaultVrfName, VrfId(0), false}};
  std::set<std::uint32_t> ofDevices;
  for (const Link& link : kernel.links) {
    if (link.vrfTable != 0) ofDevices.insert(vrfTable(link.vrfTable));
  }
  std::set<std::string> used{L3::defaultVrfName};
  Numbers numbers(names);
  for (const auto& [table, name] : names) {
    if (table == RT_TABLE_MAIN) continue;
    vrfs.push_back({table, uniqueName(name, table, used).c_str(), numbers.of(table),
                    !ofDevices.contains(table)});
  }
  return vrfs;
}

Vrfs::Vrfs(const KernelState& kernel, state::DeviceBuilder& builder) : builder_(builder) {
  for (const auto& [table, name, id, isPlain] : vrfsOf(kernel)) {
    places_[table] = {&builder.vrf(name, id), builder.vrfPlace(name, id)};
  }
  for (state::VrfState& vrf : builder.state.vrfs) {
    vrf.routingConfig->routing = kernel.forwarding.ip4;
    vrf.routing6Config->routing = kernel.forwarding.ip6;
  }
}

Interfaces::Interfaces(const std::vector<Link>& links) {
  std::unordered_map<std::uint32_t, std::uint32_t> tables; // of vrf devices, by index
  for (const Link& link : links) {
    if (link.vrfTable != 0) tables[link.index] = vrfTable(link.vrfTable);
  }
  for (const Link& link : links) {
    // A vrf device is in its own VRF, what it is master of too.
    const auto own = tables.find(link.vrfTable != 0 ? link.index : link.master);
    const std::uint32_t table = own == tables.end() ? std::uint32_t{RT_TABLE_MAIN} : own->second;
    entries_[link.index] = {Kesh::IntfId(Lumo::String(link.name)), table};
  }
}

const Interfaces::Entry& Interfaces::find(std::uint32_t index) const {
  static const Entry none;
  const auto found = entries_.find(index);
  return found == entries_.end() ? none : found->second;
}

} // namespace sources::kernel
