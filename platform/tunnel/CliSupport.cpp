#include "tunnel/CliSupport.h"

#include <string>

namespace Tunnel::CliSupport {

namespace {

using TunnelTable::EncapKind;
using TunnelTable::TunnelKind;

template <class Kind>
struct Word {
  Kind kind;
  const char* text;
};

constexpr Word<TunnelKind> tunnelWords[] = {
    {TunnelKind::direct, "direct"},
    {TunnelKind::bgpLu, "BGP-LU"},
    {TunnelKind::ldp, "LDP"},
    {TunnelKind::staticTunnel, "static"},
    {TunnelKind::evpnVxlan, "EVPN VXLAN"},
    {TunnelKind::sr, "SR"},
    {TunnelKind::staticInterface, "static interface"},
};

constexpr Word<EncapKind> encapWords[] = {
    {EncapKind::gre, "GRE"},
    {EncapKind::ipsecVti, "IPsec VTI"},
    {EncapKind::ipsecGre, "IPsec GRE"},
    {EncapKind::mpls, "MPLS"},
};

// Values for the model alone; an empty text is no value.
void addToModel(scrivo::Printer& printer, const char* key, std::string_view value) {
  if (value.empty()) return;
  scrivo::StringAttrInfo info(printer, key);
  info.setValue(Lumo::String(value));
  printer.addAttributes("", 1, info.getArg());
}

void addToModel(scrivo::Printer& printer, const char* key, std::uint64_t value) {
  scrivo::Uint64AttrInfo info(printer, key);
  info.setValue(value);
  printer.addArgs("", info.getArg());
}

/// The labels of a stack, top first, each by `print`.
template <class Print>
void forEachLabel(const Kesh::MplsLabelOperation& operation, Print print) {
  for (std::uint8_t i = 0; i < operation.stackSize(); ++i) {
    print(operation.label(Kesh::MplsStackEntryIndex(i)));
  }
}

void addLabel(scrivo::Printer& printer, scrivo::UintAttrInfo& info, Kesh::MplsLabel label,
              bool inModel) {
  printer.addFrills(" %s", Kesh::labelText(label));
  if (!inModel) return;
  info.setValue(label.value());
  printer.addAttributes("", 1, info.getArg());
}

} // namespace

const char* tunnelTypeText(TunnelKind kind) {
  for (const auto& word : tunnelWords) {
    if (word.kind == kind) return word.text;
  }
  return "tunnel";
}

const char* encapTypeText(EncapKind kind) {
  for (const auto& word : encapWords) {
    if (word.kind == kind) return word.text;
  }
  return "encapsulation";
}

CachedTunVia getCachedTunnelInfo(TunnelTable::TunnelId id, const Lumo::String& endpoint) {
  CachedTunVia tunnel;
  tunnel.tunnelTypeText = tunnelTypeText(id.kind());
  tunnel.endpointText = endpoint;
  tunnel.tunnelIndex = id.index();
  return tunnel;
}

void printTunnelInfo(scrivo::Printer& printer, const CachedTunVia& tunnel, bool inModel) {
  printer.addFrills("%s tunnel index %llu", tunnel.tunnelTypeText, tunnel.tunnelIndex);
  if (!tunnel.endpointText.empty()) printer.addFrills(", endpoint %s", tunnel.endpointText);
  if (!inModel) return;
  printer.startSubmodel("tunnelDescriptor");
  addToModel(printer, "tunnelType", tunnel.tunnelTypeText);
  addToModel(printer, "tunnelIndex", tunnel.tunnelIndex);
  addToModel(printer, "tunnelEndpoint", tunnel.endpointText);
  printer.endSubmodel();
}

void printTunnelViaInfo(scrivo::Printer& printer, bool inModel, const TunnelViaText& via) {
  if (via.directlyConnected) {
    printer.addFrills("is directly connected");
  } else {
    printer.addFrills("via %s", via.nexthopAddr);
  }
  if (!via.interface.empty()) printer.addFrills(", %s", via.interface);
  if (!via.interfaceDescription.empty()) printer.addFrills(" %s", via.interfaceDescription);
  if (inModel) {
    addToModel(printer, "nexthopAddr", via.nexthopAddr);
    addToModel(printer, "interface", via.interface);
    addToModel(printer, "interfaceDescription", via.interfaceDescription);
  }
  maybeAddLabelStackToOutput(printer, Kesh::MplsLabel(), via.labelStack, inModel, "labelStack");
}

void maybeAddLabelStackToOutput(scrivo::Printer& printer, Kesh::MplsLabel label,
                                const Kesh::MplsLabelOperation& operation, bool inModel,
                                const char* key) {
  if (label.isNull() && operation.stackSize() == 0) return;
  scrivo::UintAttrInfo element(printer, "");
  printer.addFrills(" label");
  if (inModel) printer.startList(key);
  if (!label.isNull()) addLabel(printer, element, label, inModel);
  forEachLabel(operation,
               [&](Kesh::MplsLabel inner) { addLabel(printer, element, inner, inModel); });
  if (inModel) printer.endList();
}

void printTunnelEncapInfo(scrivo::Printer& printer, const CachedStaticIntfTunnelInfo& info,
                          bool inModel) {
  printer.addFrills(", %s, destination %s, source %s", info.encapTypeText, info.destinationText,
                    info.sourceText);
  if (!inModel) return;
  printer.startSubmodel("tunnelEncap");
  addToModel(printer, "tunnelType", info.tunnelTypeText);
  addToModel(printer, "tunnelIndex", info.tunnelIndexPart);
  addToModel(printer, "encapType", info.encapTypeText);
  addToModel(printer, "destination", info.destinationText);
  addToModel(printer, "source", info.sourceText);
  printer.endSubmodel();
}

} // namespace Tunnel::CliSupport
