// What differs between the two families when kernel routes become state.
#pragma once

#include "sources/kernel/RouteTypes.h"
#include "state/DeviceBuilder.h"

#include <sys/socket.h>

namespace sources::kernel {

struct Ip4 : state::Ip4Tables {
  static constexpr auto type = &RouteKind::type4;
  static Prefix prefix(const Kesh::IpGenAddr& address, int length) {
    return {address.v4Addr(), length};
  }
  /// The link-local block 169.254.0.0/16 and multicast 224.0.0.0/4, with all inside them.
  static bool isOnEveryLink(const Prefix& prefix) {
    const std::uint32_t address = prefix.address().host();
    return (prefix.len() >= 16 && address >> 16 == 0xa9fe) ||
           (prefix.len() >= 4 && address >> 28 == 0xe);
  }
  /// A message of a route with several next hops tells of that route alone.
  static constexpr bool tellsSiblings = false;
  /// Routes that differ in their protocol, their own address or their weights alone are several.
  static constexpr bool detailsTellApart = true;
  /// A route that is entered without more words comes ahead of those that are its equals.
  static constexpr bool entersAhead = true;
  /// Routes to the addresses of an interface stay when it goes down.
  static constexpr bool keepsOwnAddresses = true;
  static constexpr std::uint8_t family = AF_INET;
  static constexpr int version = 4;
  static constexpr const char* routesName = "IPv4 routes";
};

struct Ip6 : state::Ip6Tables {
  static constexpr auto type = &RouteKind::type6;
  static Prefix prefix(const Kesh::IpGenAddr& address, int length) {
    return {address.v6Addr(), length};
  }
  /// The link-local block fe80::/10 and multicast ff00::/8.
  static bool isOnEveryLink(const Prefix& prefix) {
    const std::uint64_t bits = prefix.address().high();
    return (prefix.len() >= 10 && bits >> 54 == 0xfe80 >> 6) ||
           (prefix.len() >= 8 && bits >> 56 == 0xff);
  }
  /// Routes through gateways that are equal but for these are one to the kernel, with several next
  /// hops: a message that enters one shows all, one that removes some shows those.
  static constexpr bool tellsSiblings = true;
  static constexpr bool detailsTellApart = false;
  static constexpr bool entersAhead = false;
  static constexpr bool keepsOwnAddresses = false;
  static constexpr std::uint8_t family = AF_INET6;
  static constexpr int version = 6;
  static constexpr const char* routesName = "IPv6 routes";
};

} // namespace sources::kernel
