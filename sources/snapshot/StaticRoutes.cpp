#include "StaticRoutes.h"

#include "Collection.h"
#include "ConfiguredNames.h"
#include "Names.h"
#include "Parts.h"

#include <functional>
#include <tuple>

namespace sources::snapshot {

namespace {

using Kesh::AddressFamily;
using Routing::RouteKey;

/// A via with what the route keeps about it in collections of their own.
struct ConfiguredVia : Routing::Via {
  Lumo::String name;
  bool bfd = false;

  friend bool operator<(const ConfiguredVia& a, const ConfiguredVia& b) {
    const auto rest = [](const ConfiguredVia& via) {
      return std::tuple(via.mplsLabel, via.vni, via.vtepAddr, via.routerMac);
    };
    if (a.hop != b.hop) return a.hop < b.hop;
    if (!(a.intfId == b.intfId)) return a.intfId < b.intfId;
    return rest(a) < rest(b);
  }
};

constexpr Field<ConfiguredVia> configuredViaFields[] = {
    field<ConfiguredVia, &ConfiguredVia::hop>("hop"),
    field<ConfiguredVia, &ConfiguredVia::intfId>("interface"),
    field<ConfiguredVia, &ConfiguredVia::mplsLabel>("label"),
    field<ConfiguredVia, &ConfiguredVia::vni>("vni"),
    field<ConfiguredVia, &ConfiguredVia::vtepAddr>("vtep"),
    field<ConfiguredVia, &ConfiguredVia::routerMac>("routerMac"),
    field<ConfiguredVia, &ConfiguredVia::name>("name"),
    field<ConfiguredVia, &ConfiguredVia::bfd>("bfd"),
};

} // namespace

template <>
struct Codec<ConfiguredVia> {
  static ConfiguredVia read(Node& node) {
    ConfiguredVia via;
    readFields(node, configuredViaFields, via);
    if (via.hop.af() != AddressFamily::unset && via.vtepAddr.af() != AddressFamily::unset) {
      node.fail("a hop and a VTEP on one via", "one of them");
    }
    return via;
  }
  static void write(Output& out, const ConfiguredVia& via) {
    writeFields(out, configuredViaFields, via);
  }
};

namespace {

/// A route with its key's parts and its vias side by side.
struct ConfiguredRoute {
  Kesh::IpGenPrefix prefix;
  std::uint8_t preference = 1;
  Routing::RouteType type = Routing::RouteType::forward;
  std::uint32_t tag = 0;
  bool dynamic = false;
  std::vector<ConfiguredVia> vias;
  Lumo::String dropName;
  Lumo::String nexthopGroup;
  L3::VrfName leakVrf;
};

/// The prefix of a route, in a configuration for prefixes of one family.
template <class PrefixType>
constexpr Field<ConfiguredRoute> prefixField() {
  auto row = field<ConfiguredRoute, &ConfiguredRoute::prefix>("prefix").asRequired();
  row.read = [](Node& node, ConfiguredRoute& route) {
    route.prefix = Kesh::IpGenPrefix(Codec<PrefixType>::read(node));
  };
  return row;
}

template <class PrefixType>
constexpr Field<ConfiguredRoute> configuredRouteFields[] = {
    prefixField<PrefixType>(),
    field<ConfiguredRoute, &ConfiguredRoute::preference>("preference"),
    field<ConfiguredRoute, &ConfiguredRoute::type>("type"),
    field<ConfiguredRoute, &ConfiguredRoute::tag>("tag"),
    field<ConfiguredRoute, &ConfiguredRoute::dynamic>("dynamic"),
    field<ConfiguredRoute, &ConfiguredRoute::vias>("vias"),
    field<ConfiguredRoute, &ConfiguredRoute::dropName>("dropName"),
    field<ConfiguredRoute, &ConfiguredRoute::nexthopGroup>("nexthopGroup"),
    field<ConfiguredRoute, &ConfiguredRoute::leakVrf>("leakVrf"),
};

/// As many as a FEC of the route has room for.
constexpr std::size_t maxVias = 512;

void enterVias(Node& node, const ConfiguredRoute& configured, Routing::Route& route) {
  if (configured.vias.size() > maxVias) {
    node.fail(std::to_string(configured.vias.size()) + " vias", "at most 512");
  }
  for (const ConfiguredVia& via : configured.vias) {
    if (route.via.find(via)) node.fail("a via a second time", "each via once");
    route.via.insertOrAssign(via, true);
    if (!via.name.empty()) route.viaNextHopName.insertOrAssign(via, via.name);
    if (via.bfd) route.bfdTracked.insertOrAssign(via, true);
  }
}

Lumo::Ptr<Routing::Route> makeRoute(Node& node, const ConfiguredRoute& configured) {
  auto route = Lumo::newEntity<Routing::Route>(RouteKey{configured.prefix, configured.preference});
  route->routeType = configured.type;
  route->tag = configured.tag;
  route->dynamic = configured.dynamic;
  route->dropNextHopName = configured.dropName;
  route->nexthopGroupName = configured.nexthopGroup;
  route->leakVrf = configured.leakVrf;
  enterVias(node, configured, *route);
  return route;
}

std::vector<ConfiguredVia> viasOf(const Routing::Route& route) {
  std::vector<ConfiguredVia> vias;
  route.via.forEach([&](const Routing::Via& via, bool) {
    const Lumo::String* const name = route.viaNextHopName.find(via);
    const bool* const bfd = route.bfdTracked.find(via);
    vias.push_back({via, name ? *name : Lumo::String(), bfd && *bfd});
  });
  return Lumo::inOrder(std::move(vias), std::less<ConfiguredVia>());
}

ConfiguredRoute configuredOf(const Routing::Route& route) {
  return {route.key.prefix, route.key.preference, route.routeType,       route.tag,
          route.dynamic,    viasOf(route),        route.dropNextHopName, route.nexthopGroupName,
          route.leakVrf};
}

using CheckNames = void (*)(Node& node, const Routing::Route& route);

/// Reads an array of routes to `PrefixType` prefixes and enters each.
template <class PrefixType, class Enter>
void readRoutes(Node& node, CheckNames checkNames, Enter&& enter) {
  Distinct<RouteKey> keys;
  node.elements([&](Node& element) {
    ConfiguredRoute configured;
    readFields(element, configuredRouteFields<PrefixType>, configured);
    const auto route = makeRoute(element, configured);
    checkNames(element, *route);
    if (!keys.add(route->key)) {
      element.fail("a second route to " + configured.prefix.stringValue().str() +
                       " of preference " + std::to_string(configured.preference),
                   "one");
    }
    enter(route);
  });
}

void writeRoutes(Output& out, const Routing::RouteList& list) {
  const auto scope = out.array(Output::Layout::lines);
  for (const auto& [key, route] : sorted(list.route)) writeRoute(out, **route);
}

struct ConfigReader {
  Routing::ConfigGen& config;
  bool wantsAll;
  bool hasRoutes = false;
};

using ConfigField = Field<ConfigReader, Routing::ConfigGen>;

constexpr ConfigField routingField = {
    "routing",
    [](Node& node, ConfigReader& reader) { reader.config.routing = Codec<bool>::read(node); },
    [](const Routing::ConfigGen& config) { return !config.routing; },
    [](Output& out, const Routing::ConfigGen& config) { out.boolean(config.routing); }};

template <class PrefixType>
void readConfigRoutes(Node& node, ConfigReader& reader) {
  readRoutes<PrefixType>(node, checkConfiguredNames, [&](const Lumo::Ptr<Routing::Route>& route) {
    reader.hasRoutes = true;
    if (!reader.wantsAll && !isListed(*route)) return;
    reader.config.route.insertOrAssign(route->key, route);
  });
}

template <class PrefixType>
constexpr ConfigField configFields[] = {
    routingField,
    {"routes", readConfigRoutes<PrefixType>,
     [](const Routing::ConfigGen& config) { return !config.route.empty(); },
     [](Output& out, const Routing::ConfigGen& config) { writeRoutes(out, config); }},
};

} // namespace

// The rows of both families write alike.
void writeRoute(Output& out, const Routing::Route& route) {
  writeFields(out, configuredRouteFields<Kesh::Prefix>, configuredOf(route));
}

template <class PrefixType>
bool readConfig(Node& node, ConfigPtr& config, bool wantsAll) {
  if (node.null()) {
    config = nullptr;
    return false;
  }
  ConfigReader reader{*config, wantsAll};
  readFields(node, configFields<PrefixType>, reader);
  return reader.hasRoutes;
}
template bool readConfig<Kesh::Prefix>(Node& node, ConfigPtr& config, bool wantsAll);
template bool readConfig<Kesh::Ip6Prefix>(Node& node, ConfigPtr& config, bool wantsAll);

bool configPresent(const ConfigPtr& config) {
  return !config || anyPresent(configFields<Kesh::Prefix>, *config);
}

void writeConfig(Output& out, const ConfigPtr& config) {
  if (!config) return out.null();
  writeFields(out, configFields<Kesh::Prefix>, *config, Output::Layout::lines);
}

template <class PrefixType>
void readInputs(Node& node, state::RouteInputs& inputs) {
  readMap<Lumo::String>(node, [&](const Lumo::String& agent, Node& value) {
    requireShown(value, "the agent", agent.str());
    const auto input = Lumo::newEntity<Routing::RouteInput>();
    readRoutes<PrefixType>(value, checkInputNames, [&](const Lumo::Ptr<Routing::Route>& route) {
      input->route.insertOrAssign(route->key, route);
    });
    inputs.insertOrAssign(agent, input);
  });
}
template void readInputs<Kesh::Prefix>(Node& node, state::RouteInputs& inputs);
template void readInputs<Kesh::Ip6Prefix>(Node& node, state::RouteInputs& inputs);

void writeInputs(Output& out, const state::RouteInputs& inputs) {
  writeMap(out, inputs, [&](const auto& input) { writeRoutes(out, *input); });
}

} // namespace sources::snapshot
