#include "command/ShowRoute.h"

#include "command/RouteQuery.h"
#include "rova/CliSupport.h"
#include "scrivo/Interrupt.h"
#include "sources/Source.h"

#include <unistd.h>

namespace command {

namespace {

template <class Family>
struct SorterMaker;

/// The handles that both families take alike, in front of the query, stand once a factory.
template <>
struct SorterMaker<Rova::Ip4Family> {
  static auto make(const state::DeviceState& s, const state::VrfState& vrf,
                   const RouteQuery<Kesh::Prefix>& query,
                   const Lumo::Ptr<const Interface::IntfStatus>& intf, const Options& options) {
    return Rova::routeSorterFactory(
        vrf.routingConfig, vrf.routingStatus, s.forwardingStatus, s.forwarding6Status, s.tunnelFib,
        s.arpVanta, s.vrfIdMap, s.allIntfConfig, s.ipStatus, s.routingHardwareStatus,
        s.nhEntryStatus, vrf.kernelUnprogrammedRoute, s.evpnVxlanTunnelTable, s.tunnelTableDir,
        query.prefix, intf, query.protocol, query.detail, query.longerPrefixes, vrf.name, vrf.id,
        false, STDOUT_FILENO, options.timing ? options.startTime : 0.0, query.typedMask,
        s.srTePolicyStatus, s.policyForwardingStatus, options.olderNexthopGroups,
        s.unprogrammedRouteStatus);
  }
};

template <>
struct SorterMaker<Rova::Ip6Family> {
  static auto make(const state::DeviceState& s, const state::VrfState& vrf,
                   const RouteQuery<Kesh::Ip6Prefix>& query,
                   const Lumo::Ptr<const Interface::IntfStatus>& intf, const Options& options) {
    return Rova::route6SorterFactory(
        vrf.routing6Config, vrf.routing6Status, s.forwardingStatus, s.forwarding6Status,
        s.tunnelFib, s.arpVanta, s.vrfIdMap, s.allIntfConfig, s.ip6Status, s.routing6HardwareStatus,
        s.nhEntryStatus, vrf.kernelUnprogrammedRoute, s.evpnVxlanTunnelTable, s.tunnelTableDir,
        query.prefix, intf, query.protocol, query.detail, query.longerPrefixes, vrf.name, vrf.id,
        false, STDOUT_FILENO, options.timing ? options.startTime : 0.0, query.typedMask,
        query.interface.has_value(), s.srTePolicyStatus, s.policyForwardingStatus,
        options.olderNexthopGroups, s.unprogrammedRoute6Status);
  }
};

/// The VRFs that a query names; an error that lists the VRFs when there is none of that name.
std::vector<const state::VrfState*> vrfsOf(const state::DeviceState& device,
                                           const std::string& name, const Options& options) {
  std::vector<const state::VrfState*> chosen;
  std::string known;
  for (const auto& vrf : device.vrfs) {
    if (name == "all" || vrf.name.stringValue().view() == name) chosen.push_back(&vrf);
    known += (known.empty() ? "" : ", ") + vrf.name.stringValue().str();
  }
  if (chosen.empty()) {
    throw sources::SourceError(options.state + ": there is no VRF \"" + name + "\"; the VRFs are " +
                               known);
  }
  return chosen;
}

/// A listing ends early when the user interrupts it, and when its reader has seen enough.
ExitStatus endedEarly() { return scrivo::interruptRequested() ? interrupted : success; }

template <class Family>
ExitStatus showRoute(Words& words, const Options& options) {
  const auto query = parseRouteQuery<typename Family::Prefix>(words);
  const auto device = sources::open(options.state);
  const auto vrfs = vrfsOf(device, query.vrf, options);
  Lumo::Ptr<const Interface::IntfStatus> intf;
  if (query.interface) {
    intf = Lumo::newEntity<Interface::IntfStatus>(Kesh::IntfId(Lumo::String(*query.interface)));
  }
  // The document around the listings, which write their fragments into it: it is flushed ahead of
  // each of them.
  scrivo::Printer frame(STDOUT_FILENO, options.format, false, false, true, 0);
  scrivo::StringAttrInfo vrfName(frame, "vrf");
  frame.start();
  frame.startDict("vrfs");
  for (const auto* vrf : vrfs) {
    const auto sorter = SorterMaker<Family>::make(device, *vrf, query, intf, options);
    vrfName.setValue(vrf->name.stringValue());
    frame.startDictEntry(vrfName);
    frame.ioflush();
    if (!sorter->printRoutes(STDOUT_FILENO, options.format)) return endedEarly();
    frame.endDictEntry();
  }
  frame.endDict();
  frame.end();
  frame.close();
  return success;
}

} // namespace

ExitStatus showIpRoute(Words& words, const Options& options) {
  return showRoute<Rova::Ip4Family>(words, options);
}

ExitStatus showIpv6Route(Words& words, const Options& options) {
  return showRoute<Rova::Ip6Family>(words, options);
}

std::string protocolWords() { return protocolWordList(); }

} // namespace command
