#include "tunnel/CliSupport.h"

#include "state/TypeNames.h"

namespace Tunnel::CliSupport {

LUMO_DEFINE_TYPE(CachedTunVia);
LUMO_DEFINE_TYPE(CachedStaticIntfTunnelInfo);

namespace {

// Values for the model alone. An empty text and the number 0 stand for no value.
void addToModel(scrivo::Printer& printer, const char* key, const char* value) {
  if (!*value || printer.format() == scrivo::textFormat) return;
  scrivo::StringAttrInfo info(printer, key);
  info.setValue(value);
  printer.addArgs("", info.getArg());
}

void addIndex(scrivo::Printer& printer, std::uint64_t index) {
  scrivo::Uint64AttrInfo info(printer, "tunnelIndex");
  info.setValue(index);
  printer.addArgs("", info.getArg());
}

/// ", WORD NUMBER", and in the model under the same word.
void maybeAddNumber(scrivo::Printer& printer, const char* word, std::uint32_t number,
                    bool inModel) {
  if (number == 0) return;
  printer.addFrills(", %s %u", word, number);
  if (!inModel) return;
  scrivo::UintAttrInfo info(printer, word);
  info.setValue(number);
  printer.addArgs("", info.getArg());
}

/// Calls `print` with the labels of a via, top first.
template <class Print>
void forEachLabel(Kesh::MplsLabel label, const Kesh::MplsLabelOperation& operation, Print print) {
  if (!label.isNull()) print(label);
  for (std::uint8_t i = 0; i < operation.stackSize(); ++i) {
    print(operation.label(Kesh::MplsStackEntryIndex(i)));
  }
}

/// " LABEL". The labels of the label space have no names, so that their text is their number.
void addLabelText(scrivo::Printer& printer, Kesh::MplsLabel label) {
  constexpr std::uint32_t firstUnreserved = 16; // RFC 3032, section 2.1
  if (label.value() >= firstUnreserved && label.value() < Kesh::MplsLabel::null) {
    printer.addFrills(" %u", label.value());
  } else {
    printer.addFrills(" %s", Kesh::labelText(label));
  }
}

void addLabelsToModel(scrivo::Printer& printer, Kesh::MplsLabel label,
                      const Kesh::MplsLabelOperation& operation, const char* key) {
  scrivo::UintAttrInfo element(printer, "");
  printer.startList(key);
  forEachLabel(label, operation, [&](Kesh::MplsLabel one) {
    element.setValue(one.value());
    printer.addArgs("", element.getArg());
  });
  printer.endList();
}

} // namespace

CachedTunVia getCachedTunnelInfo(TunnelTable::TunnelId id, const Lumo::String& endpoint) {
  CachedTunVia tunnel;
  tunnel.tunnelTypeText = id.typeCliStr();
  tunnel.endpointText = endpoint;
  tunnel.tunnelIndex = id.index();
  return tunnel;
}

void printTunnelInfoCli(scrivo::Printer& printer, const CachedTunVia& tunnel) {
  printer.addFrills("%s tunnel index %llu", tunnel.tunnelTypeText, tunnel.tunnelIndex);
  if (!tunnel.endpointText.empty()) printer.addFrills(", endpoint %s", tunnel.endpointText);
}

void printTunnelInfo(scrivo::Printer& printer, const CachedTunVia& tunnel, bool inModel) {
  printTunnelInfoCli(printer, tunnel);
  if (!inModel) return;
  printer.startSubmodel("tunnelDescriptor");
  addToModel(printer, "tunnelType", tunnel.tunnelTypeText.c_str());
  addIndex(printer, tunnel.tunnelIndex);
  addToModel(printer, "tunnelEndpoint", tunnel.endpointText.c_str());
  printer.endSubmodel();
}

void printTunnelViaInfo(scrivo::Printer& printer, bool inModel, const TunnelViaText& via) {
  const char* separator = " ";
  printer.addFrills("%s", via.directlyConnected ? "is directly connected" : "via");
  if (via.directlyConnected) {
    separator = ", ";
  } else if (*via.nexthopAddr) {
    printer.addFrills(" %s", scrivo::asValue(via.nexthopAddr, scrivo::colourOf("nexthopAddr")));
    separator = ", ";
  }
  if (*via.interface) {
    printer.addFrills("%s%s", separator,
                      scrivo::asValue(via.interface, scrivo::colourOf("interface")));
  }
  if (*via.interfaceDescription) {
    printer.addFrills(" %s", scrivo::asValue(via.interfaceDescription));
  }
  if (inModel) {
    if (!via.directlyConnected) addToModel(printer, "nexthopAddr", via.nexthopAddr);
    addToModel(printer, "interface", via.interface);
    addToModel(printer, "interfaceDescription", via.interfaceDescription);
  }
  maybeAddLabelStackToOutput(printer, Kesh::MplsLabel(), via.labelStack, inModel, "labelStack");
}

void maybeAddLabelStackToOutput(scrivo::Printer& printer, Kesh::MplsLabel label,
                                const Kesh::MplsLabelOperation& operation, bool inModel,
                                const char* key) {
  if (label.isNull() && operation.stackSize() == 0) return;
  if (printer.format() == scrivo::textFormat) {
    printer.addFrills(" label");
    forEachLabel(label, operation, [&](Kesh::MplsLabel one) { addLabelText(printer, one); });
  } else if (inModel) {
    addLabelsToModel(printer, label, operation, key);
  }
}

void printTunnelEncapInfo(scrivo::Printer& printer, const CachedStaticIntfTunnelInfo& info,
                          bool inModel) {
  printer.addFrills(", %s, destination %s, source %s", info.encapTypeText, info.destinationText,
                    info.sourceText);
  if (inModel) {
    printer.startSubmodel("tunnelEncap");
    addToModel(printer, "tunnelType", info.tunnelTypeText.c_str());
    addIndex(printer, info.tunnelIndexPart);
    addToModel(printer, "encapType", info.encapTypeText.c_str());
    addToModel(printer, "destination", info.destinationText.c_str());
    addToModel(printer, "source", info.sourceText.c_str());
  }
  maybeAddNumber(printer, "key", info.greKeyField, inModel);
  maybeAddNumber(printer, "ttl", info.encapByte0, inModel);
  maybeAddNumber(printer, "tos", info.encapByte1, inModel);
  if (inModel) printer.endSubmodel();
}

} // namespace Tunnel::CliSupport
