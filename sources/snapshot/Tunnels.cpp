// Tunnels with their encapsulations, and SR-TE policies.
#include "LabelStack.h"
#include "Names.h"
#include "Sections.h"

#include "state/SrTePolicy.h"
#include "state/Tunnel.h"

#include <array>

namespace sources::snapshot {

namespace {

namespace TunnelTable = Tunnel::TunnelTable;
using Tunnel::GreTunnelInfo;
using Tunnel::IpsecGreTunnelInfo;
using Tunnel::IpsecVtiTunnelInfo;
using Tunnel::TunnelFib::TunnelFibEntry;
using TunnelTable::EvpnVxlanTunnelEntry;
using TunnelTable::TunnelId;
using TunnelTable::TunnelVia;
using TheTunnelFib = Tunnel::TunnelFib::TunnelFib;

constexpr Field<TunnelVia> tunnelViaFields[] = {
    field<TunnelVia, &TunnelVia::nexthop>("nexthop"),
    field<TunnelVia, &TunnelVia::intfId>("interface"),
    field<TunnelVia, &TunnelVia::encapId>("encap"),
};

} // namespace

template <>
struct Codec<TunnelVia> : RecordCodec<TunnelVia, tunnelViaFields> {};

namespace {

constexpr Field<TunnelFibEntry> entryFields[] = {
    field<TunnelFibEntry, &TunnelFibEntry::tunnelVia>("vias"),
    field<TunnelFibEntry, &TunnelFibEntry::backupTunnelVia>("backupVias"),
    field<TunnelFibEntry, &TunnelFibEntry::flags>("flags"),
};

/// The rows that every encapsulation between two ends has, with its own behind them.
template <class Info, class... Rows>
constexpr std::array<Field<Info>, 5 + sizeof...(Rows)> l3Fields(const Rows&... own) {
  return {field<Info, &Info::source>("source"),
          field<Info, &Info::destination>("destination"),
          field<Info, &Info::ttl>("ttl"),
          field<Info, &Info::tos>("tos"),
          field<Info, &Info::pathMtuDiscovery>("pathMtuDiscovery"),
          own...};
}

constexpr auto greFields =
    l3Fields<GreTunnelInfo>(field<GreTunnelInfo, &GreTunnelInfo::greKey>("greKey"));
constexpr auto ipsecVtiFields = l3Fields<IpsecVtiTunnelInfo>(
    field<IpsecVtiTunnelInfo, &IpsecVtiTunnelInfo::profile>("profile"));
constexpr auto ipsecGreFields = l3Fields<IpsecGreTunnelInfo>(
    field<IpsecGreTunnelInfo, &IpsecGreTunnelInfo::greKey>("greKey"),
    field<IpsecGreTunnelInfo, &IpsecGreTunnelInfo::profile>("profile"));

// The record's first label is the one that a tunnel's text shows first.
constexpr const auto& tunnelStackFields = labelStackFields<TopLabel::first>;

constexpr Field<TheTunnelFib> tunnelFibFields[] = {
    recordMap<TheTunnelFib, &TheTunnelFib::entries, entryFields>("entries"),
    recordMap<TheTunnelFib, &TheTunnelFib::greEncaps, greFields>("greEncaps"),
    recordMap<TheTunnelFib, &TheTunnelFib::ipsecVtiEncaps, ipsecVtiFields>("ipsecVtiEncaps"),
    recordMap<TheTunnelFib, &TheTunnelFib::ipsecGreEncaps, ipsecGreFields>("ipsecGreEncaps"),
    recordMap<TheTunnelFib, &TheTunnelFib::labelStacks, tunnelStackFields>("labelStacks"),
};

constexpr Field<EvpnVxlanTunnelEntry> evpnFields[] = {
    field<EvpnVxlanTunnelEntry, &EvpnVxlanTunnelEntry::vtepAddr>("vtep"),
    field<EvpnVxlanTunnelEntry, &EvpnVxlanTunnelEntry::vni>("vni"),
    field<EvpnVxlanTunnelEntry, &EvpnVxlanTunnelEntry::routerMac>("routerMac"),
};

/// The table of that type in the directory; null when there is none.
template <class Table>
Lumo::Ptr<Table> tableOf(const Lumo::Dir& dir, std::string_view name) {
  return Lumo::dynamicPtrCast<Table>(dir.entity(Lumo::String(name)));
}

/// A directory's table under a name that the row gives; `Name` is one of the names below.
template <class Table, const char* Name>
constexpr Field<Lumo::Dir> tunnelTable() {
  return {Name,
          [](Node& node, Lumo::Dir& dir) {
            const auto table = Lumo::newEntity<Table>();
            readMap<TunnelId>(node, [&](TunnelId id, Node& value) {
              table->entries.insertOrAssign(id, {id, Codec<Kesh::IpGenPrefix>::read(value)});
            });
            dir.entityIs(Lumo::String(Name), table);
          },
          [](const Lumo::Dir& dir) { return bool(tableOf<Table>(dir, Name)); },
          [](Output& out, const Lumo::Dir& dir) {
            writeMap(out, tableOf<Table>(dir, Name)->entries, [&](const auto& entry) {
              Codec<Kesh::IpGenPrefix>::write(out, entry.endpoint);
            });
          }};
}

constexpr char sr[] = "sr", staticTunnel[] = "static", ldp[] = "ldp", bgpLu[] = "bgpLu";
constexpr Field<Lumo::Dir> dirFields[] = {
    tunnelTable<TunnelTable::SrTunnelTable, sr>(),
    tunnelTable<TunnelTable::StaticTunnelTable, staticTunnel>(),
    tunnelTable<TunnelTable::LdpTunnelTable, ldp>(),
    tunnelTable<TunnelTable::BgpLuTunnelTable, bgpLu>(),
};

using SrTePolicy::PolicyKey;

constexpr Field<PolicyKey> policyFields[] = {
    {"endpoint",
     [](Node& node, PolicyKey& key) { key.endpoint.address = Codec<Kesh::IpGenAddr>::read(node); },
     [](const PolicyKey& key) { return key.endpoint.address.af() != Kesh::AddressFamily::unset; },
     [](Output& out, const PolicyKey& key) {
       Codec<Kesh::IpGenAddr>::write(out, key.endpoint.address);
     }},
    field<PolicyKey, &PolicyKey::color>("color"),
};

} // namespace

Section tunnelFibSection() {
  return entitySection<&state::DeviceState::tunnelFib, tunnelFibFields, Output::Layout::lines>(
      "tunnelFib");
}

Section evpnVxlanSection() {
  return recordSection<&state::DeviceState::evpnVxlanTunnelTable,
                       &TunnelTable::EvpnVxlanTunnelTable::entries, evpnFields>(
      "evpnVxlanTunnelTable");
}

Section tunnelDirSection() {
  return entitySection<&state::DeviceState::tunnelTableDir, dirFields, Output::Layout::lines>(
      "tunnelTableDir");
}

Section srTePolicySection() {
  return recordSection<&state::DeviceState::srTePolicyStatus,
                       &SrTePolicy::PolicyStatus::fecIdToPolicyKey, policyFields>(
      "srTePolicyStatus");
}

} // namespace sources::snapshot
