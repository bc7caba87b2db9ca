#include "sources/database/StaticRows.h"

#include "sources/database/ReplaceRows.h"
#include "sources/snapshot/Parts.h"

namespace sources::database {

namespace {

struct RouteKey {
  ListKey list;
  std::string prefix;
  std::int64_t preference;
  friend auto operator<=>(const RouteKey&, const RouteKey&) = default;
};

/// The route as JSON, and whether a listing asks for it.
struct StaticRoute {
  std::string json;
  bool listed = false;
  friend bool operator==(const StaticRoute&, const StaticRoute&) = default;
};

struct Lists {
  std::map<ListKey, RoutingOn> lists;
  std::map<RouteKey, StaticRoute> routes;
};

void addRoutes(const ListKey& key, const Routing::RouteList& list, Lists& lists) {
  list.route.forEach([&](const Routing::RouteKey& route, const auto& entity) {
    lists.routes[{key, route.prefix.stringValue().str(), route.preference.value()}] = {
        snapshot::routeText(*entity), snapshot::isListed(*entity)};
  });
}

void addLists(const ListKey& key, const Lumo::Ptr<Routing::ConfigGen>& config,
              const state::RouteInputs& inputs, Lists& lists) {
  if (!config) {
    lists.lists[key] = RoutingOn();
  } else if (!config->routing || !config->route.empty()) {
    lists.lists[key] = config->routing;
    addRoutes(key, *config, lists);
  }
  inputs.forEach([&](const Lumo::String& agent, const auto& input) {
    const ListKey ofAgent{key.vrf, key.family, agent.str()};
    lists.lists[ofAgent] = true;
    addRoutes(ofAgent, *input, lists);
  });
}

Lists listsOf(const state::DeviceState& device) {
  Lists lists;
  for (const auto& vrf : device.vrfs) {
    addLists({vrf.id.value(), 4, {}}, vrf.routingConfig, vrf.routeInput, lists);
    addLists({vrf.id.value(), 6, {}}, vrf.routing6Config, vrf.route6Input, lists);
  }
  return lists;
}

ListKey readListKey(Statement& row) {
  const auto vrf = row.integer("vrf"), family = row.integer("family");
  return {vrf, family, std::string(row.text("agent"))};
}

std::map<RouteKey, StaticRoute> readRoutes(Connection& connection) {
  std::map<RouteKey, StaticRoute> routes;
  Statement select(connection,
                   "select vrf, family, agent, prefix, preference, json, listed from static_route");
  while (select.step()) {
    RouteKey key{readListKey(select), std::string(select.text("prefix")), 0};
    key.preference = select.integer("preference");
    StaticRoute& route = routes[key];
    route.json = select.text("json");
    route.listed = select.number("listed", 1) != 0;
  }
  return routes;
}

void writeLists(Connection& connection, ChangeLog& log, const std::map<ListKey, RoutingOn>& lists) {
  Statement insert(connection, "insert or replace into route_list values (?, ?, ?, ?)");
  Statement remove(connection, "delete from route_list where vrf = ? and family = ? and agent = ?");
  replaceRows(
      readLists(connection), lists,
      [&](const ListKey& key, const RoutingOn& routing) {
        bindKey(insert, key);
        routing ? insert.bind(std::int64_t{*routing}) : insert.bindNull();
        insert.run();
        log.other("route_list");
      },
      [&](const ListKey& key) {
        bindKey(remove, key).run();
        log.other("route_list");
      });
}

constexpr const char* routeTable = "static_route";
constexpr const char* insertRoute =
    "insert or replace into static_route values (?, ?, ?, ?, ?, ?, ?)";
constexpr const char* removeRoute = "delete from static_route where vrf = ? and family = ? and "
                                    "agent = ? and prefix = ? and preference = ?";

Statement& bindKey(Statement& statement, const RouteKey& key) {
  return bindKey(statement, key.list).bindText(key.prefix).bind(key.preference);
}

RouteKey keyOf(std::int64_t vrf, std::int64_t family, const Routing::RouteKey& key) {
  return {{vrf, family, {}}, key.prefix.stringValue().str(), key.preference.value()};
}

void enterRow(Statement& insert, const RouteKey& key, const StaticRoute& route) {
  bindKey(insert, key).bindText(route.json).bind(std::int64_t{route.listed}).run();
}

void writeRoutes(Connection& connection, ChangeLog& log,
                 const std::map<RouteKey, StaticRoute>& routes) {
  Statement insert(connection, insertRoute), remove(connection, removeRoute);
  replaceRows(
      readRoutes(connection), routes,
      [&](const RouteKey& key, const StaticRoute& route) {
        enterRow(insert, key, route);
        log.other(routeTable);
      },
      [&](const RouteKey& key) {
        bindKey(remove, key).run();
        log.other(routeTable);
      });
}

} // namespace

std::map<ListKey, RoutingOn> readLists(Connection& connection) {
  std::map<ListKey, RoutingOn> lists;
  Statement select(connection, "select vrf, family, agent, routing from route_list");
  while (select.step()) {
    const auto key = readListKey(select);
    lists[key] = select.null() ? RoutingOn() : RoutingOn(select.number("routing", 1) != 0);
  }
  return lists;
}

Statement& bindKey(Statement& statement, const ListKey& key) {
  return statement.bind(key.vrf).bind(key.family).bindText(key.agent);
}

void replaceStaticRoutes(Connection& connection, ChangeLog& log, const state::DeviceState& device) {
  const auto [lists, routes] = listsOf(device);
  writeLists(connection, log, lists);
  writeRoutes(connection, log, routes);
}

// The list of a VRF that has no routes needs no row while routing is on.
StaticRouteWriter::StaticRouteWriter(Connection& connection, ChangeLog& log)
    : log_(log),
      list_(connection, "insert or ignore into route_list values (?, ?, ?, 1)"),
      insert_(connection, insertRoute),
      remove_(connection, removeRoute) {}

void StaticRouteWriter::enter(std::int64_t vrf, std::int64_t family, const Routing::Route& route) {
  bindKey(list_, ListKey{vrf, family, {}}).run();
  enterRow(insert_, keyOf(vrf, family, route.key),
           {snapshot::routeText(route), snapshot::isListed(route)});
  log_.other(routeTable);
}

void StaticRouteWriter::remove(std::int64_t vrf, std::int64_t family,
                               const Routing::RouteKey& key) {
  bindKey(remove_, keyOf(vrf, family, key)).run();
  log_.other(routeTable);
}

} // namespace sources::database
