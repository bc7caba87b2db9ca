// From what a route query says to the library's objects: what a listing, and whoever follows or
// compares listings, reads and opens.
#pragma once

#include "command/Options.h"
#include "command/RouteQuery.h"
#include "rova/CliSupport.h"
#include "sources/State.h"

#include <unistd.h>

namespace command {

template <class Family>
using QueryOf = RouteQuery<typename Family::Prefix>;

/// A loaded sorter of one VRF.
template <class Family>
auto openSorter(const state::DeviceState& device, const state::VrfState& vrf,
                const QueryOf<Family>& query, const Options& options) {
  Lumo::Ptr<const Interface::IntfStatus> intf;
  if (query.interface) {
    intf = Lumo::newEntity<Interface::IntfStatus>(Kesh::IntfId(Lumo::String(*query.interface)));
  }
  return Rova::openSorter<Family>(device, vrf,
                                  {.prefix = query.prefix,
                                   .originalMask = query.typedMask,
                                   .intfStatus = intf,
                                   .intf = query.interface.has_value(),
                                   .protocol = Lumo::String(query.protocol),
                                   .detail = query.detail,
                                   .longerPrefixes = query.longerPrefixes,
                                   .host = query.host,
                                   .fd = STDOUT_FILENO,
                                   .quantify = options.timing ? options.startTime : 0.0,
                                   .degradeNhgModel = options.olderNexthopGroups});
}

/// What a listing looks at: neighbours are hosts of the host table and attached routes of a
/// summary.
template <class Family>
sources::Needs needsOf(const QueryOf<Family>& query) {
  sources::Needs needs;
  needs.ip4 = std::is_same_v<Family, Rova::Ip4Family>;
  needs.ip6 = !needs.ip4;
  needs.neighbours = query.host || query.summary;
  // Whether an interface is there is asked of all that could name it.
  needs.configured = needs.addressConfig = query.interface.has_value();
  needs.descriptions = query.detail || query.interface.has_value();
  needs.nexthopGroups = false;
  needs.vrf = query.vrf;
  return needs;
}

/// Hands each route that the listing of a loaded sorter shows to `visit`, in the listing's order:
/// its prefix, and its entry in that format, which is valid for the call.
template <class Family, class Visit>
void forEachEntry(Rova::Sorter<Family>& sorter, OutputFormat format, Visit&& visit) {
  Rova::RouteEntries<Family> entries(sorter, format);
  for (const auto& [prefix, route] : sorter.sortedRouteMap()) {
    const std::string_view entry = entries.entry(route);
    if (!entry.empty()) visit(prefix, entry);
  }
}

} // namespace command
