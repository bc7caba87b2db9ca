#include "ShownVias.h"

#include "rova/core/DirectlyConnected.h"

#include <charconv>

namespace Rova {

namespace {

using Prefixes = std::vector<Kesh::IpGenPrefix>;

void addAddress(const Kesh::IpGenAddr& address, Prefixes& to) {
  switch (address.af()) {
  case Kesh::AddressFamily::ip4:
    return to.push_back(Kesh::Prefix(address.v4Addr(), Kesh::Prefix::maxLength));
  case Kesh::AddressFamily::ip6:
    return to.push_back(Kesh::Ip6Prefix(address.v6Addr(), Kesh::Ip6Prefix::maxLength));
  case Kesh::AddressFamily::unset:
    break;
  }
}

/// Adds what a text that is shown says; one that is neither address nor prefix says nothing.
void addText(std::string_view text, Prefixes& to) {
  if (const auto address = Kesh::IpGenAddr::parse(text)) return addAddress(*address, to);
  if (const auto prefix = Kesh::IpGenPrefix::parse(text)) to.push_back(*prefix);
}

void addText(std::string_view text, std::vector<std::string>& to) {
  if (!text.empty()) to.emplace_back(text);
}

void addLabels(Kesh::MplsLabel label, const Kesh::MplsLabelOperation& operation,
               std::vector<std::uint32_t>& to) {
  if (!label.isNull()) to.push_back(label.value());
  for (std::uint8_t i = 0; i < operation.stackSize(); ++i) {
    to.push_back(operation.label(Kesh::MplsStackEntryIndex(i)).value());
  }
}

class Reader {
 public:
  Reader(const RouteLine& line, ShownForm form, ShownVias& out, AskedHops& askedHops)
      : line_(line), form_(form), out_(out), askedHops_(askedHops) {}

  void read() {
    if (line_.via) return readDirectVia(*line_.via);
    const CachedFec& fec = *line_.fec;
    if (line_.isNexthopGroup ? fec.nhgVias() != 0 : fec.numEntries() != 0) return readRows(fec);
    if (line_.policies && line_.policies->policyInfos() != 0) return readPolicies(*line_.policies);
    out_.directlyConnected = true; // to nowhere
  }

 private:
  void readDirectVia(const DirectViaText& via);
  void readConnectedVia(const DirectViaText& via, std::string_view interface);
  void readPolicies(const PolicyInfoSet& policies);
  void readRows(const CachedFec& fec);
  void readRow(const CachedFec& fec, std::uint16_t row);
  void readRowStart4(const CachedFec& fec, std::uint16_t row);
  void readRowStart6(const CachedFec& fec, std::uint16_t row);
  void readWeight(const Lumo::String& weight);
  void readTunnel(const Tunnel::CliSupport::CachedTunVia& tunnel);
  void readTunnelVias(const Tunnel::CliSupport::CachedTunVia& tunnel);
  void readEncap(const Tunnel::CliSupport::CachedStaticIntfTunnelInfo& encap);
  void readEvpn(const Tunnel::TunnelTable::EvpnVxlanTunnelEntry& entry);

  bool isConnected(std::string_view nexthop) {
    askedHops_.enter(nexthop);
    return isDirectlyConnected(line_.prefix, nexthop);
  }

  const RouteLine& line_;
  const ShownForm form_;
  ShownVias& out_;
  AskedHops& askedHops_;
};

void Reader::readDirectVia(const DirectViaText& via) {
  const auto interface = via.interface.empty() ? std::string_view(line_.ownInterface)
                                               : std::string_view(via.interface);
  const bool hasEvpn = via.evpnEntry.isSet();
  if (!hasEvpn && isConnected(via.nexthopAddr)) return readConnectedVia(via, interface);
  if (!hasEvpn && via.nexthopAddr.empty() && interface.empty()) {
    out_.directlyConnected = true; // to nowhere
    return;
  }
  out_.vias = 1;
  addText(via.nexthopAddr, out_.nexthopAddr);
  addText(interface, out_.interface);
  addLabels(via.label, {}, out_.label);
  readEncap(via.staticIntfTunInfo);
  if (hasEvpn) readEvpn(via.evpnEntry);
}

void Reader::readConnectedVia(const DirectViaText& via, std::string_view interface) {
  out_.directlyConnected = true;
  if (interface.empty()) return;
  out_.vias = 1;
  addText(interface, out_.interface);
  if (form_.isForm6 && via.nexthopAddr != "::") addText(via.nexthopAddr, out_.nexthopAddr);
}

void Reader::readPolicies(const PolicyInfoSet& policies) {
  policies.policyInfoMap().forEach([&](std::uint16_t, const PolicyInfo& policy) {
    addText(policy.policyKey().endpoint.text(), out_.policyEndpoint);
    out_.color.push_back(policy.policyKey().color);
  });
}

/// Of groups the older form shows the first one alone, beside an empty list.
void Reader::readRows(const CachedFec& fec) {
  const bool isDegraded = form_.degradeNhgModel && line_.isNexthopGroup;
  const std::size_t rows = line_.isNexthopGroup ? fec.nhgVias() : fec.viaTypeStrings();
  std::size_t seen = 0;
  for (std::uint32_t at = 0; seen < rows && at <= 0xffff; ++at) {
    const auto row = static_cast<std::uint16_t>(at);
    const auto* const group = line_.isNexthopGroup ? fec.nhgViaMap().find(row) : nullptr;
    if (line_.isNexthopGroup ? !group : !fec.viaTypeStringMap().find(row)) continue;
    ++seen;
    if (group) addText(group->nhgName().view(), out_.groupName);
    if (isDegraded) return;
    ++out_.vias;
    readRow(fec, row);
  }
}

void Reader::readRow(const CachedFec& fec, std::uint16_t row) {
  if (!line_.isNexthopGroup) form_.isForm6 ? readRowStart6(fec, row) : readRowStart4(fec, row);
  if (const auto* const label = fec.labelMap().find(row)) {
    addLabels(*label, fec.viaLabelStack(row), out_.label);
  }
  if (const auto* const encap = fec.staticIntfTunInfoMap().find(row)) readEncap(*encap);
  readWeight(fec.viaWeight(row));
  if (fec.hasBackup() && fec.viaTypeString(row) == "backup") out_.hasBackup = true;
  if (line_.isNexthopGroup) return;
  if (const auto* const evpn = fec.viaEvpnEntryMap().find(row); evpn && evpn->isSet()) {
    readEvpn(*evpn);
  }
  if (const auto* const tunnel = fec.tunViaMap().find(row)) readTunnelVias(*tunnel);
}

void Reader::readRowStart4(const CachedFec& fec, std::uint16_t row) {
  const auto* const evpn = fec.viaEvpnEntryMap().find(row);
  const auto nexthop = fec.nexthopAddr(row);
  addText(fec.interface(row).view(), out_.interface);
  if (!(evpn && evpn->isSet()) && isConnected(nexthop.view())) return;
  if (const auto* const tunnel = fec.tunViaMap().find(row)) return readTunnel(*tunnel);
  addText(nexthop.view(), out_.nexthopAddr);
}

void Reader::readRowStart6(const CachedFec& fec, std::uint16_t row) {
  if (const auto* const tunnel = fec.tunViaMap().find(row)) return readTunnel(*tunnel);
  const auto* const evpn = fec.viaEvpnEntryMap().find(row);
  const auto nexthop = fec.nexthopAddr(row);
  addText(nexthop.view(), out_.nexthopAddr);
  if (evpn && evpn->isSet()) return;
  if (nexthop.empty()) out_.directlyConnected = true;
  addText(fec.interface(row).view(), out_.interface);
}

void Reader::readWeight(const Lumo::String& weight) {
  std::uint32_t value = 0;
  const auto text = weight.view();
  if (std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc()) {
    out_.viaWeight.push_back(value);
  }
}

void Reader::readTunnel(const Tunnel::CliSupport::CachedTunVia& tunnel) {
  addText(tunnel.tunnelTypeText.view(), out_.tunnelType);
  addText(tunnel.endpointText.view(), out_.tunnelEndpoint);
}

void Reader::readTunnelVias(const Tunnel::CliSupport::CachedTunVia& tunnel) {
  for (std::uint32_t at = 0; at < tunnel.numVias; ++at) {
    const auto index = static_cast<Tunnel::CliSupport::TunnelViaIndex>(at);
    const auto* const nexthop = tunnel.nexthopAddr.find(index);
    const auto* const interface = tunnel.interface.find(index);
    const auto* const labels = tunnel.viaLabelStack.find(index);
    if (nexthop && !isConnected(nexthop->view())) addText(nexthop->view(), out_.nexthopAddr);
    if (interface) addText(interface->view(), out_.interface);
    if (labels) addLabels({}, *labels, out_.label);
  }
}

void Reader::readEncap(const Tunnel::CliSupport::CachedStaticIntfTunnelInfo& encap) {
  if (!encap.isSet()) return;
  addText(encap.tunnelTypeText.view(), out_.tunnelType);
  addText(encap.encapTypeText.view(), out_.tunnelType);
  addText(encap.destinationText.view(), out_.tunnelEndpoint);
}

void Reader::readEvpn(const Tunnel::TunnelTable::EvpnVxlanTunnelEntry& entry) {
  addAddress(entry.vtepAddr, out_.vtepAddr);
  out_.vni.push_back(entry.vni);
}

/// Empties the lists, and keeps their memory.
void clear(ShownVias& vias) {
  vias.vias = 0;
  vias.directlyConnected = vias.hasBackup = false;
  for (auto* const list :
       {&vias.nexthopAddr, &vias.tunnelEndpoint, &vias.policyEndpoint, &vias.vtepAddr}) {
    list->clear();
  }
  for (auto* const list : {&vias.interface, &vias.tunnelType, &vias.groupName}) list->clear();
  for (auto* const list : {&vias.viaWeight, &vias.label, &vias.color, &vias.vni}) list->clear();
}

} // namespace

void readShownVias(const RouteLine& line, ShownForm form, ShownVias& vias, AskedHops& askedHops) {
  clear(vias);
  Reader(line, form, vias, askedHops).read();
}

} // namespace Rova
