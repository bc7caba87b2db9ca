#include "sources/database/HiddenRows.h"

#include "sources/database/Columns.h"
#include "sources/database/ReplaceRows.h"

namespace sources::database {

HiddenRoutes readHidden(Connection& connection) {
  HiddenRoutes hidden;
  Statement select(connection, "select vrf, family, routes from hidden_routes");
  while (select.step()) {
    const auto vrf = readVrfId(select, "vrf");
    const auto family = select.number("family", 6);
    if (family != 4 && family != 6) select.wrong("family", "4 or 6");
    hidden[{vrf, static_cast<int>(family)}] = readWord(select, "routes");
  }
  return hidden;
}

void replaceHidden(Connection& connection, ChangeLog& log, const HiddenRoutes& hidden) {
  replaceRows(
      readHidden(connection), hidden,
      [&](const auto& key, std::uint64_t routes) {
        writeHidden(connection, log, key.first, key.second, routes);
      },
      [&](const auto& key) { writeHidden(connection, log, key.first, key.second, 0); });
}

void writeHidden(Connection& connection, ChangeLog& log, Vrf::VrfIdMap::VrfId vrf, int family,
                 std::uint64_t routes) {
  Statement statement(connection, routes == 0
                                      ? "delete from hidden_routes where vrf = ? and family = ?"
                                      : "insert or replace into hidden_routes values (?, ?, ?)");
  statement.bind(std::int64_t{vrf.value()}).bind(family);
  if (routes != 0) statement.bind(static_cast<std::int64_t>(routes));
  statement.run();
  log.other("hidden_routes");
}

} // namespace sources::database
