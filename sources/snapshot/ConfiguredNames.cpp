#include "ConfiguredNames.h"

#include "Escapes.h"
#include "Output.h"

#include "scrivo/Shown.h"
#include "state/StaticLineWords.h"

namespace sources::snapshot {

namespace {

[[noreturn]] void refuseName(Node& node, std::string_view what, std::string_view name,
                             std::string_view expected) {
  std::string found = std::string(what) + " ";
  appendQuoted(found, name);
  node.fail(found, expected);
}

bool hasWhiteSpace(std::string_view text) {
  return text.find_first_of(Routing::whiteSpace) != text.npos;
}

void checkGroup(Node& node, std::string_view group) {
  if (group.empty() || (!hasWhiteSpace(group) && !Routing::beginsAttributes(group))) return;
  refuseName(node, "the nexthop group", group,
             "one word that is no number and none of track, vtep, tag, name and leak");
}

void checkInterface(Node& node, std::string_view interface) {
  if (!hasWhiteSpace(interface) && Routing::readsAsInterface(interface)) return;
  refuseName(node, "the interface", interface,
             "one word that is no number, no address, and none of Null0, Nexthop-Group, track, "
             "vtep, tag, name and leak");
}

void checkStart(Node& node, std::string_view what, std::string_view name) {
  if (name.starts_with(' ')) refuseName(node, what, name, "a name that begins with no blank");
}

void checkViaName(Node& node, const Routing::Route& route, std::string_view name) {
  checkStart(node, "the name of a via", name);
  const bool isLeaked = !route.leakVrf.stringValue().empty();
  if (isLeaked || Routing::findLeak(" " + std::string(name)) == name.npos) return;
  refuseName(node, "the name of a via", name, "a name that does not end in leak vrf and a word");
}

void checkVrf(Node& node, std::string_view what, const L3::VrfName& vrf) {
  const std::string name = vrf.stringValue().str();
  if (hasWhiteSpace(name)) refuseName(node, what, name, "one word");
}

void checkVias(Node& node, const Routing::Route& route) {
  checkVrf(node, "the VRF to leak to", route.leakVrf);
  route.via.forEach([&](const Routing::Via& via, bool) {
    if (via.intfId) checkInterface(node, via.intfId.stringValue().str());
    if (const auto* const name = route.viaNextHopName.find(via)) {
      checkViaName(node, route, name->str());
    }
  });
}

} // namespace

void requireShown(Node& node, std::string_view what, std::string_view name) {
  if (scrivo::findHidden(name) == name.npos) return;
  refuseName(node, what, name, "a name without control characters");
}

void checkInputNames(Node& node, const Routing::Route& route) {
  requireShown(node, "the name of a drop route", route.dropNextHopName.str());
  requireShown(node, "the nexthop group", route.nexthopGroupName.str());
  route.viaNextHopName.forEach([&](const Routing::Via&, const Lumo::String& name) {
    requireShown(node, "the name of a via", name.str());
  });
}

void checkConfiguredVrf(Node& node, const L3::VrfName& vrf) {
  checkVrf(node, "configured routes of VRF", vrf);
}

void checkConfiguredNames(Node& node, const Routing::Route& route) {
  checkInputNames(node, route);
  if (route.dynamic) return; // is saved as no line
  switch (route.routeType) {
  case Routing::RouteType::drop:
    return checkStart(node, "the name of a drop route", route.dropNextHopName.str());
  case Routing::RouteType::nexthopGroup:
    return checkGroup(node, route.nexthopGroupName.str());
  case Routing::RouteType::forward:
    return checkVias(node, route);
  }
}

} // namespace sources::snapshot
