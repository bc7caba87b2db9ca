#include "command/filter/Field.h"

#include "command/filter/FieldWords.h"

#include <algorithm>

namespace command::filter {

namespace {

using Head = Rova::RouteHead;
using Vias = Rova::ShownVias;

const Field all[] = {
    {"prefix", Type::prefix, &Head::prefix, {}, "where the route leads"},
    {"length", Type::number, &Head::length, {}, "the mask length of its prefix"},
    {"type", Type::word, &Head::type, {"routeType"}, "its type, as routeType in JSON", typeWords},
    {"protocol",
     Type::word,
     &Head::protocolCode,
     {"routeType"},
     "its protocol, as in show ip route bgp",
     protocolWords},
    {"preference", Type::number, &Head::preference, {"preference"}, "its preference"},
    {"metric", Type::number, &Head::metric, {"metric"}, "its metric"},
    {"nexthop",
     Type::address,
     &Vias::nexthopAddr,
     {"nexthopAddr"},
     "the next hops, also of tunnels"},
    {"interface",
     Type::name,
     &Vias::interface,
     {"interface", "interfaceDescription"},
     "the interfaces, also of tunnels"},
    {"vias", Type::number, &Vias::vias, {"vias"}, "how many vias there are"},
    {"weight",
     Type::number,
     &Vias::viaWeight,
     {"viaWeight"},
     "the weight of a via: 1 of weight 1/4"},
    {"label", Type::number, &Vias::label, {"labelStack"}, "the MPLS labels that are pushed"},
    {"tunnel",
     Type::word,
     &Vias::tunnelType,
     {"tunnelDescriptor", "tunnelEncap"},
     "the kind of a tunnel, or of its encapsulation",
     tunnelWords},
    {"endpoint",
     Type::address,
     &Vias::tunnelEndpoint,
     {"tunnelEndpoint", "endpoint"},
     "where a tunnel ends"},
    {"policy", Type::address, &Vias::policyEndpoint, {"srTePolicy"}, "where an SR-TE policy ends"},
    {"color", Type::number, &Vias::color, {"color"}, "the color of an SR-TE policy"},
    {"group", Type::name, &Vias::groupName, {"nexthopGroup"}, "the nexthop group"},
    {"vni", Type::number, &Vias::vni, {"vni"}, "the VNI of a VXLAN tunnel"},
    {"vtep",
     Type::address,
     &Vias::vtepAddr,
     {"vtepAddr", "routerMac"},
     "the VTEP of a VXLAN tunnel"},
    {"source-vrf", Type::name, &Head::srcVrf, {"srcVrf"}, "the VRF that the route was leaked from"},
    {"leaked",
     Type::flag,
     &Head::routeLeaked,
     {"routeLeaked", "srcVrf"},
     "the route was leaked from another VRF"},
    {"hardware",
     Type::flag,
     &Head::hardwareProgrammed,
     {"hardwareProgrammed"},
     "it is programmed in hardware"},
    {"kernel",
     Type::flag,
     &Head::kernelProgrammed,
     {"kernelProgrammed"},
     "it is programmed in the kernel"},
    {"connected",
     Type::flag,
     &Vias::directlyConnected,
     {"directlyConnected"},
     "it, or a via, is directly connected"},
    {"backup",
     Type::flag,
     &Vias::hasBackup,
     {"viaType"},
     "it has a via that is used when others fail"},
};

} // namespace

std::span<const Field> fields() { return all; }

const Field* findField(std::string_view name) {
  const auto* const found = std::find_if(std::begin(all), std::end(all),
                                         [&](const Field& field) { return field.name == name; });
  return found == std::end(all) ? nullptr : found;
}

bool isOfVias(const Field& field) {
  return std::visit(
      [](auto member) {
        return requires(const Vias& vias) { vias.*member; };
      },
      field.values);
}

} // namespace command::filter
