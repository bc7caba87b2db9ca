// Static routes: the configured ones, and those that agents hand to routing, a row each. What a
// route holds beside its key is a text, as a snapshot has it.
#pragma once

#include "sources/database/ChangeLog.h"

#include "state/DeviceState.h"

#include <map>

namespace sources::database {

/// Whose routes they are: of a VRF and family (4 or 6), and of the agent that hands them to
/// routing; the configured ones have none.
struct ListKey {
  std::int64_t vrf;
  std::int64_t family;
  std::string agent;
  friend auto operator<=>(const ListKey&, const ListKey&) = default;
};

/// Whether routing is on; nothing where the source cannot tell.
using RoutingOn = std::optional<bool>;
std::map<ListKey, RoutingOn> readLists(Connection& connection);

/// Binds the parameters of a list's rows.
Statement& bindKey(Statement& statement, const ListKey& key);

/// Makes the rows those of the device.
void replaceStaticRoutes(Connection& connection, ChangeLog& log, const state::DeviceState& device);

/// Writes rows of configured static routes.
class StaticRouteWriter {
 public:
  StaticRouteWriter(Connection& connection, ChangeLog& log);

  void enter(std::int64_t vrf, std::int64_t family, const Routing::Route& route);
  void remove(std::int64_t vrf, std::int64_t family, const Routing::RouteKey& key);

 private:
  ChangeLog& log_;
  Statement list_, insert_, remove_;
};

} // namespace sources::database
