// What an argument says, read once by the grammar.
#pragma once

#include "kesh/Address.h"
#include "kesh/Prefix.h"
#include "kesh/RouteDistinguisher.h"

#include <cstdint>
#include <string>
#include <variant>

namespace command::grammar {

/// An address or a prefix that a query is for; an address is a prefix of its whole length.
template <class Prefix>
struct Target {
  Prefix prefix;
  bool typedMask = false;
};

/// A name, a file or a word of a list is its text.
using Value = std::variant<std::string, std::uint32_t, Target<Kesh::Prefix>,
                           Target<Kesh::Ip6Prefix>, Kesh::IpAddrWithMask, Kesh::Ip6AddrWithMask,
                           Kesh::IpGenAddr, Kesh::RouteDistinguisher>;

} // namespace command::grammar
