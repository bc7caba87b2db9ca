// How the types of keys and values stand in columns.
#pragma once

#include "sources/database/Session.h"

#include "kesh/IntfId.h"
#include "kesh/Prefix.h"
#include "state/FecId.h"
#include "state/Vrf.h"

namespace sources::database {

/// A prefix as its last address and the length that it lacks of the longest: the order of listings
/// is the order of that pair. An IPv6 address is a blob of 16 bytes.
void bindPrefix(Statement& statement, const Kesh::Prefix& prefix);
void bindPrefix(Statement& statement, const Kesh::Ip6Prefix& prefix);
void readPrefix(Statement& row, Kesh::Prefix& prefix);
void readPrefix(Statement& row, Kesh::Ip6Prefix& prefix);

/// An IPv4 address is a number, as a person's tools can show it, an IPv6 address a text.
void bindAddress(Statement& statement, const Kesh::IpAddr& address);
void bindAddress(Statement& statement, const Kesh::Ip6Addr& address);
void readAddress(Statement& row, const char* column, Kesh::IpAddr& address);
void readAddress(Statement& row, const char* column, Kesh::Ip6Addr& address);

/// An interface is its identifier; no interface is null.
void bindInterface(Statement& statement, const Kesh::IntfId& intfId);
Kesh::IntfId readInterface(Statement& row, const char* column, Session& session);

/// The highest identifier of a FEC: readers stop at adjacency types above it.
inline constexpr std::uint64_t maxFecId =
    (std::uint64_t{Vanta::Fib::adjTypeMax()} << Vanta::Fib::adjTypePos()) - 1;

inline Vrf::VrfIdMap::VrfId readVrfId(Statement& row, const char* column) {
  return Vrf::VrfIdMap::VrfId(
      static_cast<std::uint32_t>(row.number(column, Vrf::VrfIdMap::VrfId::none)));
}

inline std::uint32_t readWord(Statement& row, const char* column) {
  return static_cast<std::uint32_t>(row.number(column, 0xffffffffu));
}

} // namespace sources::database
