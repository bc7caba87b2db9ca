#include "sources/database/VrfRows.h"

#include <set>

namespace sources::database {

namespace {

std::vector<VrfRow> vrfsOf(const state::DeviceState& device, const RouteFacts& facts) {
  std::vector<VrfRow> vrfs;
  for (const auto& vrf : device.vrfs) {
    vrfs.push_back({vrf.id.value(), vrf.name.stringValue().str(), facts.plain.contains(vrf.id)});
  }
  return vrfs;
}

} // namespace

std::vector<VrfRow> readVrfs(Connection& connection) {
  std::vector<VrfRow> vrfs;
  Statement select(connection, "select id, name, plain from vrf order by place");
  while (select.step()) {
    const auto id = select.number("id", Vrf::VrfIdMap::VrfId::none - 1);
    VrfRow vrf{static_cast<std::int64_t>(id), std::string(select.text("name")), false};
    vrf.plain = select.number("plain", 1) != 0;
    vrfs.push_back(std::move(vrf));
  }
  return vrfs;
}

void replaceVrfs(Connection& connection, ChangeLog& log, const state::DeviceState& device,
                 const RouteFacts& facts) {
  const auto vrfs = vrfsOf(device, facts);
  if (readVrfs(connection) == vrfs) return;
  log.other("vrf");
  connection.execute("delete from vrf");
  Statement insert(connection, "insert into vrf values (?, ?, ?, ?)");
  std::int64_t place = 0;
  for (const auto& [id, name, plain] : vrfs) {
    insert.bind(id).bind(place++).bindText(name).bind(std::int64_t{plain}).run();
  }
}

bool hasRoutes(Connection& connection, std::int64_t vrf, int family) {
  const std::string digit = std::to_string(family);
  Statement select(connection, "select 1 from route" + digit +
                                   " where vrf = ?1 union all select 1 from hidden_routes "
                                   "where vrf = ?1 and family = " +
                                   digit + " limit 1");
  return select.bind(vrf).step();
}

void removeOtherVrfs(Connection& connection, const state::DeviceState& device) {
  std::set<std::int64_t> ids;
  for (const auto& vrf : device.vrfs) ids.insert(vrf.id.value());
  for (const auto& [id, name, plain] : readVrfs(connection)) {
    if (ids.contains(id)) continue;
    for (const char* const table : {"route4", "route6", "kernel_error4", "kernel_error6"}) {
      Statement remove(connection, std::string("delete from ") + table + " where vrf = ?");
      remove.bind(id).run();
    }
  }
}

} // namespace sources::database
