#include "sources/database/VrfRows.h"

#include <set>

namespace sources::database {

namespace {

std::vector<VrfRow> vrfsOf(const state::DeviceState& device) {
  std::vector<VrfRow> vrfs;
  for (const auto& vrf : device.vrfs) {
    vrfs.push_back({vrf.id.value(), vrf.name.stringValue().str()});
  }
  return vrfs;
}

} // namespace

std::vector<VrfRow> readVrfs(Connection& connection) {
  std::vector<VrfRow> vrfs;
  Statement select(connection, "select id, name from vrf order by place");
  while (select.step()) {
    const auto id = select.number("id", Vrf::VrfIdMap::VrfId::none - 1);
    vrfs.push_back({static_cast<std::int64_t>(id), std::string(select.text("name"))});
  }
  return vrfs;
}

void replaceVrfs(Connection& connection, const state::DeviceState& device) {
  const auto vrfs = vrfsOf(device);
  if (readVrfs(connection) == vrfs) return;
  connection.execute("delete from vrf");
  Statement insert(connection, "insert into vrf values (?, ?, ?)");
  std::int64_t place = 0;
  for (const auto& [id, name] : vrfs) insert.bind(id).bind(place++).bindText(name).run();
}

void removeOtherVrfs(Connection& connection, const state::DeviceState& device) {
  std::set<std::int64_t> ids;
  for (const auto& vrf : vrfsOf(device)) ids.insert(vrf.id);
  for (const auto& [id, name] : readVrfs(connection)) {
    if (ids.contains(id)) continue;
    for (const char* const table : {"route4", "route6", "kernel_error4", "kernel_error6"}) {
      Statement remove(connection, std::string("delete from ") + table + " where vrf = ?");
      remove.bind(id).run();
    }
  }
}

} // namespace sources::database
