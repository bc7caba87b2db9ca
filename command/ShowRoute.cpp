#include "command/ShowRoute.h"

#include "command/InterfaceChoice.h"
#include "command/OpenState.h"
#include "command/RouteQuery.h"
#include "command/ShowRouteSummary.h"
#include "command/Signals.h"
#include "command/VrfChoice.h"
#include "rova/CliSupport.h"
#include "scrivo/Interrupt.h"

#include <tuple>
#include <unistd.h>

namespace command {

namespace {

/// Where the handles of each family stand, and the factory that takes them.
struct Ip4Listing {
  using Family = Rova::Ip4Family;
  static constexpr auto factory = Rova::routeSorterFactory;
  static constexpr auto config = &state::VrfState::routingConfig;
  static constexpr auto routes = &state::VrfState::routingStatus;
  static constexpr auto addresses = &state::DeviceState::ipStatus;
  static constexpr auto hardware = &state::DeviceState::routingHardwareStatus;
  static constexpr auto unprogrammed = &state::DeviceState::unprogrammedRouteStatus;
};

struct Ip6Listing {
  using Family = Rova::Ip6Family;
  static constexpr auto factory = Rova::route6SorterFactory;
  static constexpr auto config = &state::VrfState::routing6Config;
  static constexpr auto routes = &state::VrfState::routing6Status;
  static constexpr auto addresses = &state::DeviceState::ip6Status;
  static constexpr auto hardware = &state::DeviceState::routing6HardwareStatus;
  static constexpr auto unprogrammed = &state::DeviceState::unprogrammedRoute6Status;
};

template <class Listing>
using QueryOf = RouteQuery<typename Listing::Family::Prefix>;

/// The flag for a query by interface, which only some factories take.
template <class Listing>
auto interfaceFlag(const QueryOf<Listing>& query) {
  if constexpr (Listing::Family::hasIntfFlag) {
    return std::make_tuple(query.interface.has_value());
  } else {
    return std::tuple<>();
  }
}

/// A loaded sorter: the factory's arguments in their order.
template <class Listing>
auto makeSorter(const state::DeviceState& device, const state::VrfState& vrf,
                const QueryOf<Listing>& query, const Options& options) {
  Lumo::Ptr<const Interface::IntfStatus> intf;
  if (query.interface) {
    intf = Lumo::newEntity<Interface::IntfStatus>(Kesh::IntfId(Lumo::String(*query.interface)));
  }
  const double quantify = options.timing ? options.startTime : 0.0;
  return std::apply(
      Listing::factory,
      std::tuple_cat(
          std::make_tuple(vrf.*Listing::config, vrf.*Listing::routes, device.forwardingStatus,
                          device.forwarding6Status, device.tunnelFib, device.arpVanta,
                          device.vrfIdMap, device.allIntfConfig, device.*Listing::addresses,
                          device.*Listing::hardware, device.nhEntryStatus,
                          vrf.kernelUnprogrammedRoute, device.evpnVxlanTunnelTable,
                          device.tunnelTableDir, query.prefix, intf, Lumo::String(query.protocol),
                          query.detail, query.longerPrefixes, vrf.name, vrf.id, query.host,
                          STDOUT_FILENO, quantify, query.typedMask),
          interfaceFlag<Listing>(query),
          std::make_tuple(device.srTePolicyStatus, device.policyForwardingStatus,
                          options.olderNexthopGroups, device.*Listing::unprogrammed)));
}

/// A listing ends early when the user interrupts it, and when its reader has seen enough.
ExitStatus endedEarly() {
  if (scrivo::interruptRequested()) leaveInterrupted();
  return success;
}

/// The listing of one VRF, a fragment that its entry in the document holds. False when it ended
/// early.
template <class Sorter>
bool showListing(scrivo::Printer& frame, const scrivo::StringAttrInfo& vrfName, Sorter& sorter) {
  frame.startDictEntry(vrfName);
  frame.ioflush();
  const RenderScope scope;
  if (!sorter.printRoutes(STDOUT_FILENO, frame.format())) return false;
  frame.endDictEntry();
  return true;
}

/// The host table of one VRF, a document of its own, or nothing at all when it is empty.
template <class Sorter>
bool showHostTable(scrivo::Printer& frame, const scrivo::StringAttrInfo& vrfName, Sorter& sorter) {
  if (sorter.sortedRoutes() == 0) {
    frame.startDictEntry(vrfName);
    frame.endDictEntry();
    return true;
  }
  frame.startSimpleDictEntry(vrfName);
  frame.awaitDocument();
  const RenderScope scope;
  if (!sorter.printRoutes(STDOUT_FILENO, frame.format())) return false;
  frame.endSimpleDictEntry();
  return true;
}

/// What a listing looks at: neighbours are hosts of the host table and attached routes of a
/// summary.
template <class Listing>
sources::Needs needsOf(const QueryOf<Listing>& query) {
  sources::Needs needs;
  needs.ip4 = std::is_same_v<typename Listing::Family, Rova::Ip4Family>;
  needs.ip6 = !needs.ip4;
  needs.neighbours = query.host || query.summary;
  needs.configured = needs.nexthopGroups = false;
  needs.vrf = query.vrf;
  return needs;
}

template <class Listing>
ExitStatus showRoute(const grammar::Parsed& parsed, const Options& options) {
  const auto query = routeQuery<typename Listing::Family::Prefix>(parsed);
  const auto [device, notes] = openState(options, needsOf<Listing>(query));
  const auto vrfs = chosenVrfs(device, query.vrf, options);
  if (query.interface) requireInterface(device, *query.interface, options);
  if (query.summary) {
    showRouteSummary<typename Listing::Family>(device, vrfs, notes, options.format);
    return success;
  }
  // The document around the listings, which write into it: it is flushed ahead of each of them.
  scrivo::Printer frame(STDOUT_FILENO, options.format);
  scrivo::StringAttrInfo vrfName(frame, "vrf");
  frame.start();
  printNotes(frame, notes);
  frame.startDict("vrfs");
  for (const auto* vrf : vrfs) {
    const auto sorter = makeSorter<Listing>(device, *vrf, query, options);
    vrfName.setValue(vrf->name.stringValue());
    // A listing names its VRF itself, a host table does not.
    if (query.host && query.vrf == "all") {
      frame.addFrills("\nVRF: %s\n", scrivo::asValue(vrf->name.stringValue()));
    }
    const bool isWhole =
        query.host ? showHostTable(frame, vrfName, *sorter) : showListing(frame, vrfName, *sorter);
    if (!isWhole || scrivo::interruptRequested()) return endedEarly();
  }
  frame.endDict();
  frame.end();
  frame.close();
  return success;
}

} // namespace

ExitStatus showIpRoute(const grammar::Parsed& parsed, const Options& options) {
  return showRoute<Ip4Listing>(parsed, options);
}

ExitStatus showIpv6Route(const grammar::Parsed& parsed, const Options& options) {
  return showRoute<Ip6Listing>(parsed, options);
}

} // namespace command
