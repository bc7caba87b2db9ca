// The kinds of nexthop groups, of their counters and of their GRE keys, with their names.
#pragma once

#include "lumo/EnumType.h"
#include "lumo/String.h"

#include <cstdint>

namespace Routing {

/// What goes into the key field of a GRE header.
enum class GreKeyType : std::uint32_t { none = 0, ingressInterface = 1 };

/// The words of the kinds of key.
inline constexpr Lumo::EnumName<GreKeyType> greKeyTypeNames[] = {
    {GreKeyType::none, "none"},
    {GreKeyType::ingressInterface, "ingressInterface"},
};

/// The name; for a number without one the number in decimal. So for the two below.
Lumo::String stringValue(GreKeyType type);

namespace NexthopGroup {

/// What an entry's packets are wrapped in.
enum class NexthopGroupType : std::uint32_t {
  invalid = 0,
  ipInIp = 1,
  gre = 2,
  mpls = 3,
  ip = 4, ///< nothing: packets go on as they are
  mplsOverGre = 5,
  mplsOverUdp = 6,
  vxlan = 7
};

/// The words of the types of group.
inline constexpr Lumo::EnumName<NexthopGroupType> nexthopGroupTypeNames[] = {
    {NexthopGroupType::invalid, "invalid"},
    {NexthopGroupType::ipInIp, "ipInIp"},
    {NexthopGroupType::gre, "gre"},
    {NexthopGroupType::mpls, "mpls"},
    {NexthopGroupType::ip, "ip"},
    {NexthopGroupType::mplsOverGre, "mplsOverGre"},
    {NexthopGroupType::mplsOverUdp, "mplsOverUdp"},
    {NexthopGroupType::vxlan, "vxlan"},
};

/// What one counter counts.
enum class EntryCounterType : std::uint32_t {
  perTunnel = 0, ///< all entries that use one tunnel share its counter
  perEntry = 1   ///< each entry has its own
};

/// The words of the ways to count.
inline constexpr Lumo::EnumName<EntryCounterType> entryCounterTypeNames[] = {
    {EntryCounterType::perTunnel, "perTunnel"},
    {EntryCounterType::perEntry, "perEntry"},
};

Lumo::String stringValue(NexthopGroupType type);
Lumo::String stringValue(EntryCounterType type);

} // namespace NexthopGroup

} // namespace Routing

LUMO_TYPE_NAME(Routing::GreKeyType);
LUMO_ENUM(Routing::GreKeyType, Routing::greKeyTypeNames);
LUMO_TYPE_NAME(Routing::NexthopGroup::NexthopGroupType);
LUMO_ENUM(Routing::NexthopGroup::NexthopGroupType, Routing::NexthopGroup::nexthopGroupTypeNames);
LUMO_TYPE_NAME(Routing::NexthopGroup::EntryCounterType);
LUMO_ENUM(Routing::NexthopGroup::EntryCounterType, Routing::NexthopGroup::entryCounterTypeNames);
