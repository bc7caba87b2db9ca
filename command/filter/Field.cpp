#include "command/filter/Field.h"

#include "command/filter/FieldWords.h"

#include <algorithm>

namespace command::filter {

namespace {

using Head = Rova::RouteHead;
using Vias = Rova::ShownVias;

const Field all[] = {
    {"prefix", Type::prefix, &Head::prefix, "where the route leads"},
    {"length", Type::number, &Head::length, "the mask length of its prefix"},
    {"type", Type::word, &Head::type, "its type, as routeType in JSON", typeWords},
    {"protocol", Type::word, &Head::protocolCode, "its protocol, as in show ip route bgp",
     protocolWords},
    {"preference", Type::number, &Head::preference, "its preference"},
    {"metric", Type::number, &Head::metric, "its metric"},
    {"nexthop", Type::address, &Vias::nexthopAddr, "the next hops, also of tunnels"},
    {"interface", Type::name, &Vias::interface, "the interfaces, also of tunnels"},
    {"vias", Type::number, &Vias::vias, "how many vias there are"},
    {"weight", Type::number, &Vias::viaWeight, "the weight of a via: 1 of weight 1/4"},
    {"label", Type::number, &Vias::label, "the MPLS labels that are pushed"},
    {"tunnel", Type::word, &Vias::tunnelType, "the kind of a tunnel, or of its encapsulation",
     tunnelWords},
    {"endpoint", Type::address, &Vias::tunnelEndpoint, "where a tunnel ends"},
    {"policy", Type::address, &Vias::policyEndpoint, "where an SR-TE policy ends"},
    {"color", Type::number, &Vias::color, "the color of an SR-TE policy"},
    {"group", Type::name, &Vias::groupName, "the nexthop group"},
    {"vni", Type::number, &Vias::vni, "the VNI of a VXLAN tunnel"},
    {"vtep", Type::address, &Vias::vtepAddr, "the VTEP of a VXLAN tunnel"},
    {"source-vrf", Type::name, &Head::srcVrf, "the VRF that the route was leaked from"},
    {"leaked", Type::flag, &Head::routeLeaked, "the route was leaked from another VRF"},
    {"hardware", Type::flag, &Head::hardwareProgrammed, "it is programmed in hardware"},
    {"kernel", Type::flag, &Head::kernelProgrammed, "it is programmed in the kernel"},
    {"connected", Type::flag, &Vias::directlyConnected, "it, or a via, is directly connected"},
    {"backup", Type::flag, &Vias::hasBackup, "it has a via that is used when others fail"},
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
