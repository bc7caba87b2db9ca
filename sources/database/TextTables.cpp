#include "sources/database/TextTables.h"

#include "sources/snapshot/Parts.h"

#include <map>
#include <set>
#include <tuple>

namespace sources::database {

namespace {

/// The sections of a snapshot that are no shared tables, and who needs them.
struct Section {
  std::string_view name;
  bool Needs::*needed = nullptr; ///< null for everybody
};
constexpr Section sections[] = {
    {"allIntfConfig"},
    {"ipStatus"},
    {"ip6Status"},
    {"ipConfig", &Needs::addressConfig},
    {"ip6Config", &Needs::addressConfig},
    {"routeDistinguisherInputDir", &Needs::addressConfig},
    {"nhgConfig", &Needs::nexthopGroups},
    {"nhgHwStatus", &Needs::nexthopGroups},
    {"routingHardwareStatus"},
    {"routing6HardwareStatus"},
    {"tunnelFib"},
    {"evpnVxlanTunnelTable"},
    {"tunnelTableDir"},
    {"srTePolicyStatus"},
};

/// Makes one row a key of an ordered table: what differs is entered, what is too much removed.
/// `old` and `now` are maps of the keys to what stands, or is to stand, behind them.
template <class Map, class Enter, class Remove>
void replaceRows(const Map& old, const Map& now, Enter&& enter, Remove&& remove) {
  for (const auto& [key, value] : old) {
    if (!now.contains(key)) remove(key);
  }
  for (const auto& [key, value] : now) {
    const auto before = old.find(key);
    if (before == old.end() || before->second != value) enter(key, value);
  }
}

// Configured routes, of which the agent's name is empty, and those that agents hand to routing.

struct ListKey {
  std::int64_t vrf;
  std::int64_t family;
  std::string agent;
  friend auto operator<=>(const ListKey&, const ListKey&) = default;
};
struct RouteKey {
  ListKey list;
  std::string prefix;
  std::int64_t preference;
  friend auto operator<=>(const RouteKey&, const RouteKey&) = default;
};
/// Whether routing is on; nothing where the source cannot tell.
using RoutingOn = std::optional<bool>;
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

bool isListed(const Routing::Route& route) { return route.dynamic || route.key.prefix.len() == 0; }

void addRoutes(const ListKey& key, const Routing::RouteList& list, Lists& lists) {
  list.route.forEach([&](const Routing::RouteKey& route, const auto& entity) {
    lists.routes[{key, route.prefix.stringValue().str(), route.preference.value()}] = {
        snapshot::routeText(*entity), isListed(*entity)};
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

std::map<ListKey, RoutingOn> readLists(Connection& connection) {
  std::map<ListKey, RoutingOn> lists;
  Statement select(connection, "select vrf, family, agent, routing from route_list");
  while (select.step()) {
    const auto key = readListKey(select);
    lists[key] = select.null() ? RoutingOn() : RoutingOn(select.number("routing", 1) != 0);
  }
  return lists;
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

Statement& bindKey(Statement& statement, const ListKey& key) {
  return statement.bind(key.vrf).bind(key.family).bindText(key.agent);
}

void writeLists(Connection& connection, const std::map<ListKey, RoutingOn>& lists) {
  Statement insert(connection, "insert or replace into route_list values (?, ?, ?, ?)");
  Statement remove(connection, "delete from route_list where vrf = ? and family = ? and agent = ?");
  replaceRows(
      readLists(connection), lists,
      [&](const ListKey& key, const RoutingOn& routing) {
        bindKey(insert, key);
        routing ? insert.bind(std::int64_t{*routing}) : insert.bindNull();
        insert.run();
      },
      [&](const ListKey& key) { bindKey(remove, key).run(); });
}

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

void writeRoutes(Connection& connection, const std::map<RouteKey, StaticRoute>& routes) {
  Statement insert(connection, insertRoute), remove(connection, removeRoute);
  replaceRows(
      readRoutes(connection), routes,
      [&](const RouteKey& key, const StaticRoute& route) { enterRow(insert, key, route); },
      [&](const RouteKey& key) { bindKey(remove, key).run(); });
}

// VRFs, by their place among the others.

struct VrfRow {
  std::int64_t id;
  std::string name;
  friend bool operator==(const VrfRow&, const VrfRow&) = default;
};

std::vector<VrfRow> readVrfs(Connection& connection) {
  std::vector<VrfRow> vrfs;
  Statement select(connection, "select id, name from vrf order by place");
  while (select.step()) {
    const auto id = select.number("id", Vrf::VrfIdMap::VrfId::none - 1);
    vrfs.push_back({static_cast<std::int64_t>(id), std::string(select.text("name"))});
  }
  return vrfs;
}

std::vector<VrfRow> vrfsOf(const state::DeviceState& device) {
  std::vector<VrfRow> vrfs;
  for (const auto& vrf : device.vrfs) {
    vrfs.push_back({vrf.id.value(), vrf.name.stringValue().str()});
  }
  return vrfs;
}

void writeVrfs(Connection& connection, const state::DeviceState& device) {
  const auto vrfs = vrfsOf(device);
  if (readVrfs(connection) == vrfs) return;
  connection.execute("delete from vrf");
  Statement insert(connection, "insert into vrf values (?, ?, ?)");
  std::int64_t place = 0;
  for (const auto& [id, name] : vrfs) insert.bind(id).bind(place++).bindText(name).run();
}

void writeInterfaces(Connection& connection, const InterfaceSet& interfaces) {
  std::map<std::int64_t, std::string> old, now;
  Statement select(connection, "select id, name from interface");
  while (select.step()) {
    const auto id = select.integer("id");
    old[id] = select.text("name");
  }
  interfaces.forEach([&](const Kesh::IntfId& id, bool) {
    if (id) now[signedInterface(id)] = id.stringValue().str();
  });
  Statement insert(connection, "insert or replace into interface values (?, ?)");
  Statement remove(connection, "delete from interface where id = ?");
  replaceRows(
      old, now,
      [&](std::int64_t id, const std::string& name) { insert.bind(id).bindText(name).run(); },
      [&](std::int64_t id) { remove.bind(id).run(); });
}

void writeSections(Connection& connection, const state::DeviceState& device) {
  std::map<std::string, std::string> old, now;
  Statement select(connection, "select name, json from section");
  while (select.step()) {
    const std::string name(select.text("name"));
    old[name] = select.text("json");
  }
  for (const Section& section : sections) {
    auto text = snapshot::sectionText(device, section.name);
    if (!text.empty()) now[std::string(section.name)] = std::move(text);
  }
  Statement insert(connection, "insert or replace into section values (?, ?)");
  Statement remove(connection, "delete from section where name = ?");
  replaceRows(
      old, now,
      [&](const std::string& name, const std::string& json) {
        insert.bindText(name).bindText(json).run();
      },
      [&](const std::string& name) { remove.bindText(name).run(); });
}

// A snapshot's text out of the parts.

class SnapshotText {
 public:
  SnapshotText(Connection& connection, const Needs& needs)
      : connection_(connection),
        needs_(needs),
        lists_(readLists(connection)),
        routes_(connection, std::string("select json from static_route where vrf = ? and family = "
                                        "? and agent = ?") +
                                (needs.configured ? "" : " and listed = 1")) {}

  std::string text() {
    out_ = "{\"rovaSnapshot\":1,\"vrfs\":{";
    const char* separator = "";
    for (const auto& vrf : readVrfs(connection_)) {
      out_ += std::exchange(separator, ",");
      addVrf(vrf);
    }
    out_ += '}';
    addSections();
    return std::move(out_) + "}";
  }

 private:
  void addVrf(const VrfRow& vrf) {
    out_ += snapshot::quotedText(vrf.name) + ":{\"id\":" + std::to_string(vrf.id);
    addFamily(vrf.id, 4, "routingConfig", "routeInput");
    addFamily(vrf.id, 6, "routing6Config", "route6Input");
    out_ += '}';
  }

  void addFamily(std::int64_t vrf, std::int64_t family, const char* config, const char* input) {
    auto at = lists_.lower_bound({vrf, family, {}});
    const auto isOurs = [&] {
      return at != lists_.end() && at->first.vrf == vrf && at->first.family == family;
    };
    if (isOurs() && at->first.agent.empty()) {
      out_ += std::string(",\"") + config + "\":";
      addConfig(*at++);
    }
    if (!isOurs() || !needs_.configured) return;
    out_ += std::string(",\"") + input + "\":";
    char separator = '{';
    for (; isOurs(); ++at) {
      out_ += std::exchange(separator, ',') + snapshot::quotedText(at->first.agent) + ":";
      addRoutes(at->first);
    }
    out_ += '}';
  }

  void addConfig(const std::pair<const ListKey, RoutingOn>& list) {
    if (!list.second) {
      out_ += "null";
      return;
    }
    out_ += std::string("{\"routing\":") + (*list.second ? "true" : "false") + ",\"routes\":";
    addRoutes(list.first);
    out_ += '}';
  }

  void addRoutes(const ListKey& list) {
    const Run run(routes_);
    bindKey(routes_, list);
    out_ += '[';
    for (const char* separator = ""; routes_.step(); separator = ",") {
      out_ += separator;
      out_ += routes_.text("json");
    }
    out_ += ']';
  }

  void addSections() {
    Statement select(connection_, "select name, json from section");
    while (select.step()) {
      const auto found = select.text("name");
      const auto section = std::ranges::find(sections, found, &Section::name);
      if (section == std::end(sections)) select.wrong("name", "a section");
      if (section->needed && !(needs_.*section->needed)) continue;
      out_ += ",\"" + std::string(found) + "\":";
      out_ += select.text("json");
    }
  }

  Connection& connection_;
  const Needs& needs_;
  std::map<ListKey, RoutingOn> lists_;
  Statement routes_;
  std::string out_;
};

} // namespace

// The list of a VRF that has no routes needs no row while routing is on.
StaticRouteWriter::StaticRouteWriter(Connection& connection)
    : list_(connection, "insert or ignore into route_list values (?, ?, ?, 1)"),
      insert_(connection, insertRoute),
      remove_(connection, removeRoute) {}

void StaticRouteWriter::enter(std::int64_t vrf, std::int64_t family, const Routing::Route& route) {
  bindKey(list_, ListKey{vrf, family, {}}).run();
  enterRow(insert_, keyOf(vrf, family, route.key), {snapshot::routeText(route), isListed(route)});
}

void StaticRouteWriter::remove(std::int64_t vrf, std::int64_t family,
                               const Routing::RouteKey& key) {
  bindKey(remove_, keyOf(vrf, family, key)).run();
}

void replaceSection(Connection& connection, const state::DeviceState& device, const char* name) {
  const auto text = snapshot::sectionText(device, name);
  Statement same(connection, "select 1 from section where name = ? and json = ?");
  const Run run(same);
  if (same.bindText(name).bindText(text).step()) return;
  Statement insert(connection, text.empty() ? "delete from section where name = ?"
                                            : "insert or replace into section values (?, ?)");
  insert.bindText(name);
  if (!text.empty()) insert.bindText(text);
  insert.run();
}

void TextTables::removeOtherVrfs(const state::DeviceState& device) {
  std::set<std::int64_t> ids;
  for (const auto& vrf : vrfsOf(device)) ids.insert(vrf.id);
  for (const auto& [id, name] : readVrfs(connection_)) {
    if (ids.contains(id)) continue;
    for (const char* const table : {"route4", "route6", "kernel_error4", "kernel_error6"}) {
      Statement remove(connection_, std::string("delete from ") + table + " where vrf = ?");
      remove.bind(id).run();
    }
  }
}

void TextTables::replace(const state::DeviceState& device, const InterfaceSet& interfaces) {
  writeVrfs(connection_, device);
  writeInterfaces(connection_, interfaces);
  writeSections(connection_, device);
  auto [lists, routes] = listsOf(device);
  writeLists(connection_, lists);
  writeRoutes(connection_, routes);
}

std::string TextTables::snapshotText(const Needs& needs) {
  return SnapshotText(connection_, needs).text();
}

} // namespace sources::database
