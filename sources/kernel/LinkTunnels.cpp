#include "sources/kernel/LinkTunnels.h"

#include <map>

namespace sources::kernel {

namespace {

using Tunnel::TunnelTable::EncapId;
using Tunnel::TunnelTable::EncapKind;
using Tunnel::TunnelTable::TunnelId;

constexpr std::uint32_t maxPort = 0xffff; // a tunnel's number has the lower 16 bits of the port

/// The tunnel of the configured tunnel interface of that name; null for any other name, also that
/// of an interface on such a one ("Tunnel3.5").
TunnelId tunnelOf(const std::string& name) {
  const Kesh::IntfId id{Lumo::String(name)};
  const std::uint32_t port = Kesh::TunnelIntfId::port(id);
  const bool own = Kesh::TunnelIntfId::isTunnelIntfId(id) && port <= maxPort &&
                   name == "Tunnel" + std::to_string(port);
  return own ? Tunnel::TunnelTable::tunnelIdOfIntf(id) : TunnelId();
}

void enterEncap(EncapId id, const Tunnel::GreTunnelInfo& ends, Tunnel::TunnelFib::TunnelFib& fib) {
  if (id.kind() == EncapKind::gre) {
    fib.greEncaps.insertOrAssign(id, ends);
  } else {
    fib.ipsecVtiEncaps.insertOrAssign(id, {ends, 0});
  }
}

} // namespace

void fillLinkTunnels(const std::vector<Link>& links, state::DeviceBuilder& builder) {
  auto& fib = *builder.state.tunnelFib;
  std::map<std::pair<EncapKind, Tunnel::GreTunnelInfo>, std::vector<TunnelId>> tunnels;
  for (const Link& link : links) {
    const TunnelId id = link.tunnel ? tunnelOf(link.name) : TunnelId();
    if (!id.isNull()) tunnels[{link.tunnel->kind, link.tunnel->ends}].push_back(id);
  }
  std::map<EncapKind, std::uint32_t> numbers; // the last one of each kind
  for (const auto& [encap, ids] : tunnels) {
    const auto& [kind, ends] = encap;
    const EncapId encapId(static_cast<std::uint32_t>(kind) << 28 | ++numbers[kind]);
    enterEncap(encapId, ends, fib);
    for (const TunnelId id : ids) {
      fib.entries.insertOrAssign(id, {id, {{{ends.destination, {}}, encapId}}, {}});
    }
  }
}

} // namespace sources::kernel
