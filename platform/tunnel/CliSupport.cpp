#include "tunnel/CliSupport.h"

namespace Tunnel::CliSupport {

namespace {

// Values for the model alone. An empty text and the number 0 stand for no value.
void addToModel(scrivo::Printer& printer, const char* key, const char* value) {
  if (!*value) return;
  scrivo::StringAttrInfo info(printer, key);
  info.setValue(value);
  printer.addArgs("", info.getArg());
}

void addToModel(scrivo::Printer& printer, const char* key, std::string_view value) {
  if (!value.empty()) addToModel(printer, key, Lumo::String(value).c_str());
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
  } else if (!via.nexthopAddr.empty()) {
    printer.addFrills(" %s", via.nexthopAddr);
    separator = ", ";
  }
  if (!via.interface.empty()) printer.addFrills("%s%s", separator, via.interface);
  if (!via.interfaceDescription.empty()) printer.addFrills(" %s", via.interfaceDescription);
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
    forEachLabel(label, operation,
                 [&](Kesh::MplsLabel one) { printer.addFrills(" %s", Kesh::labelText(one)); });
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
