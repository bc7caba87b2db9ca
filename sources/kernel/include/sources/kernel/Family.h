// What differs between the two families when kernel routes become state.
#pragma once

#include "sources/kernel/RouteTypes.h"
#include "state/DeviceBuilder.h"

namespace sources::kernel {

struct Ip4 {
  using Prefix = Kesh::Prefix;
  using Route = Vanta::Fib::Route;
  static constexpr auto type = &RouteKind::type4;
  static constexpr auto routes = &state::VrfTables::routes;
  static constexpr auto config = &state::VrfState::routingConfig;
  static Prefix prefix(const Kesh::IpGenAddr& address, int length) {
    return {address.v4Addr(), length};
  }
};

struct Ip6 {
  using Prefix = Kesh::Ip6Prefix;
  using Route = Vanta::Fib6::Route;
  static constexpr auto type = &RouteKind::type6;
  static constexpr auto routes = &state::VrfTables::routes6;
  static constexpr auto config = &state::VrfState::routing6Config;
  static Prefix prefix(const Kesh::IpGenAddr& address, int length) {
    return {address.v6Addr(), length};
  }
};

} // namespace sources::kernel
