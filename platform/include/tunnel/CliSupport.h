// The text and model of tunnels and label stacks inside the displays of routes.
#pragma once

#include "kesh/Mpls.h"
#include "lumo/Attribute.h"
#include "scrivo/Printer.h"
#include "state/Tunnel.h"

#include <cstdint>

namespace Tunnel::CliSupport {

using TunnelViaIndex = std::uint16_t;

/// The display form of one tunnel: what it is, where it leads, and its vias as texts.
struct CachedTunVia {
  Lumo::String tunnelTypeText;
  Lumo::String endpointText;
  std::uint64_t tunnelIndex = 0;
  Lumo::HashMap2018<TunnelViaIndex, Lumo::String> nexthopAddr;
  Lumo::HashMap2018<TunnelViaIndex, Lumo::String> interface;
  Lumo::HashMap2018<TunnelViaIndex, Lumo::String> interfaceDescription;
  Lumo::HashMap2018<TunnelViaIndex, Kesh::MplsLabelOperation> viaLabelStack;
  std::uint32_t numVias = 0;

  LUMO_TYPE(CachedTunVia, "Tunnel::CliSupport::CachedTunVia")
  LUMO_PUBLIC(tunnelTypeText)
  LUMO_PUBLIC(endpointText)
  LUMO_PUBLIC(tunnelIndex)
  LUMO_PUBLIC_HASHED(nexthopAddr)
  LUMO_PUBLIC_HASHED(interface)
  LUMO_PUBLIC_HASHED(interfaceDescription)
  LUMO_PUBLIC_HASHED(viaLabelStack)
  LUMO_PUBLIC(numVias)
  LUMO_END

  /// Enter an empty text or stack for the via at a place, and give it to be filled:
  Lumo::String& newNexthopAddr(TunnelViaIndex at) { return nexthopAddr.insertOrAssign(at, {}); }
  Lumo::String& newInterface(TunnelViaIndex at) { return interface.insertOrAssign(at, {}); }
  Lumo::String& newInterfaceDescription(TunnelViaIndex at) {
    return interfaceDescription.insertOrAssign(at, {});
  }
  Kesh::MplsLabelOperation& newViaLabelStack(TunnelViaIndex at) {
    return viaLabelStack.insertOrAssign(at, {});
  }
};

/// The display form of a static interface tunnel.
struct CachedStaticIntfTunnelInfo {
  Lumo::String tunnelTypeText;
  std::uint64_t tunnelIndexPart = 0; ///< the lower 43 bits of the tunnel's identifier
  Lumo::String encapTypeText;        ///< as displays say it
  Lumo::String encapTypeTextAlt;     ///< as it is configured
  Lumo::String destinationText;
  Lumo::String sourceText;
  std::uint32_t addressFamily = 0; ///< of the source: 1 IPv4, 2 IPv6
  std::uint32_t greKeyField = 0;   ///< 0 for none
  std::uint8_t encapByte0 = 0;     ///< the TTL of the outer header; 0 copies the packet's
  std::uint8_t encapByte1 = 0;     ///< its type of service; 0 copies the packet's

  LUMO_TYPE(CachedStaticIntfTunnelInfo, "Tunnel::CliSupport::CachedStaticIntfTunnelInfo")
  LUMO_PUBLIC(tunnelTypeText)
  LUMO_PUBLIC(tunnelIndexPart)
  LUMO_PUBLIC(encapTypeText)
  LUMO_PUBLIC(encapTypeTextAlt)
  LUMO_PUBLIC(destinationText)
  LUMO_PUBLIC(sourceText)
  LUMO_PUBLIC(addressFamily)
  LUMO_PUBLIC(greKeyField)
  LUMO_PUBLIC(encapByte0)
  LUMO_PUBLIC(encapByte1)
  LUMO_END

  friend bool operator==(const CachedStaticIntfTunnelInfo&,
                         const CachedStaticIntfTunnelInfo&) = default;
  bool operator!() const { return *this == CachedStaticIntfTunnelInfo(); }
  /// Whether a tunnel was found for it: every kind of tunnel has a word.
  bool isSet() const { return !tunnelTypeText.empty(); }
};

/// One via of a tunnel as a line shows it. Texts that are empty are left out.
struct TunnelViaText {
  const char* nexthopAddr;
  const char* interface;
  const char* interfaceDescription;
  Kesh::MplsLabelOperation labelStack;
  bool directlyConnected = false;
};

/// The tunnel of that identifier, without vias; an empty endpoint is left out of the text.
CachedTunVia getCachedTunnelInfo(TunnelTable::TunnelId id, const Lumo::String& endpoint);

/// "LDP tunnel index 3, endpoint 10.0.0.9/32", in text alone.
void printTunnelInfoCli(scrivo::Printer& printer, const CachedTunVia& tunnel);

/// The same, and with `inModel` the submodel `tunnelDescriptor` of `tunnelType`, `tunnelIndex` and
/// `tunnelEndpoint`.
void printTunnelInfo(scrivo::Printer& printer, const CachedTunVia& tunnel, bool inModel);

/// "via 10.1.0.1, Ethernet1 label 100 200" or "is directly connected, Ethernet1"; with `inModel`,
/// the attributes of a via's entry, which the caller has opened.
void printTunnelViaInfo(scrivo::Printer& printer, bool inModel, const TunnelViaText& via);

/// " label 100" for a label or " label 100 200" for a stack, and in the model the list `key` of the
/// labels, top first. Nothing for the no-label value with an empty operation. The label goes above
/// the operation's stack. `inModel` as above.
void maybeAddLabelStackToOutput(scrivo::Printer& printer, Kesh::MplsLabel label,
                                const Kesh::MplsLabelOperation& operation, bool inModel,
                                const char* key);

/// ", GRE, destination 10.9.0.1, source 10.9.0.2, key 7, ttl 64, tos 32" for a static interface
/// tunnel, where key, ttl and tos stand only if they are not 0; with `inModel` the submodel
/// `tunnelEncap` of `tunnelType`, `tunnelIndex`, `encapType`, `destination`, `source` and those.
void printTunnelEncapInfo(scrivo::Printer& printer, const CachedStaticIntfTunnelInfo& info,
                          bool inModel);

/// The same, but nothing for an info that is not set, which is what almost every route has.
inline void maybePrintTunnelEncapInfo(scrivo::Printer& printer,
                                      const CachedStaticIntfTunnelInfo& info, bool inModel) {
  if (info.isSet()) printTunnelEncapInfo(printer, info, inModel);
}

} // namespace Tunnel::CliSupport
