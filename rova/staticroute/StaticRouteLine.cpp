#include "rova/staticroute/StaticRouteLine.h"

#include "lumo/Assert.h"

namespace Rova {

namespace {

/// Appends texts and numbers to a line.
template <class... Pieces>
void append(std::string& line, const Pieces&... pieces) {
  const auto add = [&line](const auto& piece) {
    if constexpr (requires { line.append(std::string_view(piece)); }) {
      line.append(std::string_view(piece));
    } else {
      line.append(std::to_string(piece));
    }
  };
  (add(pieces), ...);
}

void appendPreference(std::string& line, const Routing::Route& route,
                      const LineDefaults& defaults) {
  const auto preference = route.key.preference;
  if (!defaults.saveAll && preference == defaults.consts.defaultStaticRoutePreference()) return;
  append(line, " ", unsigned{preference.value()});
}

void appendTag(std::string& line, const Routing::Route& route, const LineDefaults& defaults) {
  if (!defaults.saveAll && route.tag == defaults.consts.defaultStaticRouteTag()) return;
  append(line, " tag ", route.tag);
}

void appendHop(std::string& line, const Routing::Via& via) {
  append(line, " ", via.hop.stringValue());
  if (!via.mplsLabel.isNull()) append(line, " label ", via.mplsLabel.value());
}

void appendVtep(std::string& line, const Routing::Via& via) {
  append(line, " vtep ", via.vtepAddr.stringValue(), " vni ",
         Vxlan::VniExtOrNone(via.vni).stringValue(false), " router-mac-address ",
         via.routerMac.stringValue());
}

void appendViaName(std::string& line, const Routing::Route& route, const Routing::Via& via,
                   const RovaConsts& consts) {
  const auto* const name = route.viaNextHopName.find(via);
  if (!name || name->empty() || *name == consts.defaultStaticRouteName()) return;
  append(line, " name ", *name);
}

} // namespace

bool hasHop(const Routing::Via& via) {
  return via.hop.af() != Kesh::AddressFamily::unset && !via.hop.isAddrZero();
}

std::string dropText(const Routing::Route& route, const LineDefaults& defaults) {
  std::string line = " Null0";
  appendPreference(line, route, defaults);
  appendTag(line, route, defaults);
  if (!(route.dropNextHopName == defaults.consts.defaultStaticRouteName())) {
    append(line, " name ", route.dropNextHopName);
  }
  return line;
}

std::string nexthopGroupText(const Routing::Route& route, const LineDefaults& defaults) {
  std::string line = " Nexthop-Group";
  if (!route.nexthopGroupName.empty()) append(line, " ", route.nexthopGroupName);
  appendPreference(line, route, defaults);
  appendTag(line, route, defaults);
  return line;
}

std::string viaText(const Routing::Route& route, const Routing::Via& via,
                    const LineDefaults& defaults) {
  const bool hasVtep = via.vtepAddr != Kesh::IpGenAddr();
  std::string line;
  if (via.intfId) append(line, " ", via.intfId.stringValue());
  if (hasHop(via)) {
    LUMO_ASSERT(!hasVtep, "!via.vtepAddr()");
    appendHop(line, via);
  }
  const bool* const tracked = route.bfdTracked.find(via);
  if (tracked && *tracked) append(line, " track bfd");
  if (hasVtep) appendVtep(line, via);
  appendPreference(line, route, defaults);
  appendTag(line, route, defaults);
  appendViaName(line, route, via, defaults.consts);
  if (!route.leakVrf.stringValue().empty()) append(line, " leak vrf ", route.leakVrf.stringValue());
  return line;
}

} // namespace Rova
