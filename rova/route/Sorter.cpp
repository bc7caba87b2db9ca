#include "rova/route/Sorter.h"

#include "lumo/Assert.h"
#include "rova/core/Interrupted.h"
#include "rova/core/Trace.h"
#include "rova/fec/Forwarding.h"
#include "rova/route/HostTable.h"
#include "rova/route/Listing.h"
#include "rova/route/Selection.h"

namespace Rova {

namespace {

/// The table under `name` of the directory, as its own type; null when it is absent.
template <class Table>
Lumo::Ptr<const Table> tunnelTable(const Lumo::Ptr<const Lumo::Dir>& dir, const char* name) {
  if (!dir) return {};
  return Lumo::dynamicPtrCast<const Table>(dir->entity(name));
}

/// Enters the addresses of one interface.
template <class Map>
void enterAddresses(Map& addrToIntfId, const Kesh::IntfId& intfId, const Ip::IpIntfStatus& intf) {
  if (intf.primary) addrToIntfId.insertOrAssign(*intf.primary, intfId);
  for (const auto& address : intf.activeSecondary) addrToIntfId.insertOrAssign(address, intfId);
}

template <class Map>
void enterAddresses(Map& addrToIntfId, const Kesh::IntfId& intfId, const Ip6::Ip6IntfStatus& intf) {
  for (const auto& address : intf.addr) addrToIntfId.insertOrAssign(address, intfId);
}

const auto& interfacesOf(const Ip::Status& status) { return status.ipIntfStatus; }
const auto& interfacesOf(const Ip6::Status& status) { return status.ip6IntfStatus; }

} // namespace

template <class Family>
void Sorter<Family>::handleInitialized() {
  initialized_ = true;
  ROVA_TRACE(8, "void " << Family::sorterTypeName << "::handleInitialized()");
  ROVA_TRACE(8, Family::sorterName << " created for vrfName: " << vrfName_.stringValue()
                                   << ", vrfId: " << vrfId_.value());
  loadAddresses();
  findTunnelTables();
  host_ ? filterHostPrefixes(*this, Family::hostLength) : filterPrefixes(*this);
}

template <class Family>
void Sorter<Family>::loadAddresses() {
  if (!ipStatus_) return;
  interfacesOf(*ipStatus_).forEach([&](const Kesh::IntfId& intfId, const auto& intf) {
    const bool ours = intf.vrf.value_or(L3::VrfName()) == vrfName_;
    if (ours || !Family::addressesAreOfTheVrf) enterAddresses(addrToIntfId_, intfId, intf);
  });
}

template <class Family>
void Sorter<Family>::findTunnelTables() {
  using namespace Tunnel::TunnelTable;
  srTunnelTable_ = tunnelTable<SrTunnelTable>(tunnelTableDir_, "sr");
  staticTunnelTable_ = tunnelTable<StaticTunnelTable>(tunnelTableDir_, "static");
  ldpTunnelTable_ = tunnelTable<LdpTunnelTable>(tunnelTableDir_, "ldp");
  bgpLuTunnelTable_ = tunnelTable<BgpLuTunnelTable>(tunnelTableDir_, "bgpLu");
}

template <class Family>
Forwarding Sorter<Family>::forwarding() {
  InterfaceFilter filter{static_cast<bool>(intfStatus_), intfStatus_.ptr()};
  if constexpr (Family::hasIntfFlag) filter.isSet = intf_;
  return {.forwardingStatus = forwardingStatus_,
          .forwarding6Status = forwarding6Status_,
          .tunnelFib = tunnelFib_,
          .evpnVxlanTunnelTable = evpnVxlanTunnelTable_,
          .srTunnelTable = srTunnelTable_,
          .staticTunnelTable = staticTunnelTable_,
          .ldpTunnelTable = ldpTunnelTable_,
          .bgpLuTunnelTable = bgpLuTunnelTable_,
          .srTePolicyStatus = srTePolicyStatus_,
          .policyForwardingStatus = policyForwardingStatus_,
          .allIntfConfig = allIntfConfig_,
          .nexthopGroupNames = cachedNexthopGroupIdToName_,
          .maxUcmpWeight =
              routingHardwareStatus_ ? &routingHardwareStatus_->maxUcmpWeight : nullptr,
          .detail = detail_,
          .filter = filter,
          .hidesConnectedNexthops = Family::hidesConnectedNexthops,
          .fec = fec_,
          .hasV6Nexthop = Family::remembersV6Nexthops ? &hasV6Nexthop_ : nullptr};
}

template <class Family>
void Sorter<Family>::buildNexthopGroupIdToName() {
  if (!nhEntryStatus_) return;
  using Table = std::remove_cvref_t<decltype(nhEntryStatus_->nexthopGroupEntry)>;
  for (typename Table::IteratorConst it(nhEntryStatus_->nexthopGroupEntry); it; it.next()) {
    cachedNexthopGroupIdToNameIs(it.value().nhgId, it.value().key.nhgName());
  }
}

template <class Family>
bool Sorter<Family>::printRoutes(std::uint32_t fd, std::uint32_t fmt) {
  ROVA_TRACE(8, "bool " << Family::sorterTypeName << "::printRoutes(U32, U32)");
  try {
    scrivo::Printer printer(static_cast<int>(fd), fmt);
    if (host_) {
      formatHostRouteOutput(*this, fd, fmt, printer);
    } else {
      printer.addFrills("\nVRF: %s\n", scrivo::asValue(vrfName_.stringValue()));
      formatOutput(*this, printer);
    }
    printer.close();
    return true;
  } catch (const scrivo::sigintException& interrupt) {
    reportInterrupt(interrupt);
    return false;
  }
}

template <class Family>
typename Family::Prefix Sorter<Family>::longestPrefixMatch() const {
  LUMO_ASSERT(!prefix().isNullPrefix() && !longerPrefixes() && sortedRoutes() <= 1,
              "!prefix().isNullPrefix() && !longerPrefixes() && sortedRoutes() <= 1");
  return sortedRoute_.empty() ? Prefix::nullPrefix() : sortedRoute_.begin()->first;
}

template <class Family>
constinit const Lumo::TypeRecord Sorter<Family>::lumoType = Lumo::makeTypeRecord<Sorter<Family>>();

template class Sorter<Ip4Family>;
template class Sorter<Ip6Family>;

} // namespace Rova
