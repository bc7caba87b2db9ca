#include "Handles.h"

#include "Convert.h"
#include "Errors.h"
#include "rova/core/Family.h"

#include <span>
#include <type_traits>

namespace rova_python {

namespace {

using state::DeviceState;
using state::VrfState;

/// An argument of the library and what a device has for it.
struct HandleRow {
  const char* name;
  Lumo::GenericPtr (*read)(const DeviceState& device, const VrfState& vrf);
};

template <class Field>
const VrfState& ownerOf(Field VrfState::*, const DeviceState&, const VrfState& vrf) {
  return vrf;
}
template <class Field>
const DeviceState& ownerOf(Field DeviceState::*, const DeviceState& device, const VrfState&) {
  return device;
}

template <auto field>
constexpr HandleRow row(const char* name) {
  return {name, [](const DeviceState& device, const VrfState& vrf) {
            return Lumo::wrapAttrValue(ownerOf(field, device, vrf).*field);
          }};
}

constexpr HandleRow sharedRows[] = {
    row<&VrfState::name>("vrfName"),
    row<&VrfState::id>("vrfId"),
    row<&VrfState::kernelUnprogrammedRoute>("kernelUnprogrammedRoute"),
    row<&DeviceState::forwardingStatus>("forwardingStatus"),
    row<&DeviceState::forwarding6Status>("forwarding6Status"),
    row<&DeviceState::vrfIdMap>("vrfIdMap"),
    row<&DeviceState::allIntfConfig>("allIntfConfig"),
    row<&DeviceState::arpVanta>("arpVanta"),
    row<&DeviceState::ip6Config>("ip6Config"),
    row<&DeviceState::routeDistinguisherInputDir>("routeDistinguisherInputDir"),
    row<&DeviceState::nhgConfig>("nhgConfig"),
    row<&DeviceState::nhEntryStatus>("nhEntryStatus"),
    row<&DeviceState::nhEntryStatus>("nhgEntryStatus"),
    row<&DeviceState::nhgHwStatus>("nhgHwStatus"),
    // The displays of nexthop groups, which are of no family, take that of IPv4.
    row<&DeviceState::routingHardwareStatus>("routingHwStatus"),
    row<&DeviceState::entityManager>("entityManager"),
    row<&DeviceState::tunnelFib>("tunnelFib"),
    row<&DeviceState::evpnVxlanTunnelTable>("evpnVxlanTunnelTable"),
    row<&DeviceState::tunnelTableDir>("tunnelTableDir"),
    row<&DeviceState::srTePolicyStatus>("srTePolicyStatus"),
    row<&DeviceState::policyForwardingStatus>("policyForwardingStatus"),
};

/// What each family has under the names of both.
template <class Family>
constexpr HandleRow familyRows[] = {
    row<Family::routingConfig>("routingConfig"),
    row<Family::routingConfig>("config"),
    row<Family::routingStatus>("routingStatus"),
    row<Family::ipStatus>("ipStatus"),
    row<Family::ipConfig>("ipConfig"),
    row<Family::routingHardwareStatus>("routingHardwareStatus"),
    row<Family::unprogrammedRouteStatus>("unprogrammedRouteStatus"),
};

void addRows(const Ref& dictionary, std::span<const HandleRow> rows, const HandleQuery& query) {
  for (const HandleRow& handle : rows) {
    setItem(dictionary, handle.name, toPython(handle.read(query.device, query.vrf)));
  }
}

/// The routes that agents hand to routing, by the agent's name.
Ref inputsOf(const state::RouteInputs& inputs) {
  Ref dictionary = owned(PyDict_New());
  inputs.forEach([&](const Lumo::String& agent, const Lumo::Ptr<Routing::RouteInput>& input) {
    const Ref name = toPython(Lumo::wrapAttrValue(agent));
    const Ref handle = toPython(Lumo::wrapAttrValue(input));
    check(PyDict_SetItem(dictionary.get(), name.get(), handle.get()));
  });
  return dictionary;
}

/// The whole table of every interface, unless the query says otherwise.
template <class Family>
void addQuery(const Ref& dictionary, const HandleQuery& query) {
  setItem(dictionary, "prefix", Ref::none());
  setItem(dictionary, "fd", owned(PyLong_FromLong(-1)));
  Lumo::Ptr<const Interface::IntfStatus> intf;
  if (query.interface) {
    intf = Lumo::newEntity<Interface::IntfStatus>(Kesh::IntfId(Lumo::String(*query.interface)));
  }
  setItem(dictionary, "intfStatus", toPython(Lumo::wrapAttrValue(intf)));
  if constexpr (Family::hasIntfFlag) {
    setItem(dictionary, "intf", Ref::boolean(query.interface.has_value()));
  }
}

template <class Family>
Ref handlesOf(const HandleQuery& query) {
  Ref dictionary = owned(PyDict_New());
  addRows(dictionary, sharedRows, query);
  addRows(dictionary, familyRows<Family>, query);
  setItem(dictionary, "routeInput", inputsOf(query.vrf.*Family::routeInput));
  addQuery<Family>(dictionary, query);
  return dictionary;
}

} // namespace

Ref handles4(const HandleQuery& query) { return handlesOf<Rova::Ip4Family>(query); }
Ref handles6(const HandleQuery& query) { return handlesOf<Rova::Ip6Family>(query); }

} // namespace rova_python
