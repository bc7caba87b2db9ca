#include "command/OpenRoutes.h"

#include "command/filter/RouteFilter.h"

#include <unistd.h>

namespace command {

/// Neighbours are hosts of the host table and attached routes of a summary.
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

template <class Family>
Lumo::Ptr<Rova::Sorter<Family>> openRoutes(const state::DeviceState& device,
                                           const state::VrfState& vrf, const QueryOf<Family>& query,
                                           const Options& options) {
  Lumo::Ptr<const Interface::IntfStatus> intf;
  if (query.interface) {
    intf = Lumo::newEntity<Interface::IntfStatus>(Kesh::IntfId(Lumo::String(*query.interface)));
  }
  const bool isOneProtocol = query.protocols.size() == 1;
  const auto sorter = Rova::openSorter<Family>(
      device, vrf,
      {.prefix = query.prefix,
       .originalMask = query.typedMask,
       .intfStatus = intf,
       .intf = query.interface.has_value(),
       .protocol = isOneProtocol ? Lumo::String(query.protocols[0]) : Lumo::String(),
       .detail = query.detail,
       .longerPrefixes = query.longerPrefixes,
       .host = query.host,
       .fd = STDOUT_FILENO,
       .quantify = options.timing ? options.startTime : 0.0,
       .degradeNhgModel = options.olderNexthopGroups});
  if (query.where || query.protocols.size() > 1) {
    filter::filterRoutes(*sorter, {query.protocols, query.where});
  }
  return sorter;
}

#define COMMAND_INSTANTIATE(Family)                                                                \
  template sources::Needs needsOf<Rova::Family>(const QueryOf<Rova::Family>&);                     \
  template Lumo::Ptr<Rova::Sorter<Rova::Family>> openRoutes<Rova::Family>(                         \
      const state::DeviceState&, const state::VrfState&, const QueryOf<Rova::Family>&,             \
      const Options&);
COMMAND_INSTANTIATE(Ip4Family)
COMMAND_INSTANTIATE(Ip6Family)
#undef COMMAND_INSTANTIATE

} // namespace command
