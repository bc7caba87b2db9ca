// The two address families: the types of each, and where each has its part of a device's state.
#pragma once

#include "state/DeviceState.h"

namespace state {

/// IPv4: its types, and where a device has its part of the state.
struct Ip4 {
  using Address = Kesh::IpAddr;
  using Prefix = Kesh::Prefix;
  using AddrWithMask = Kesh::IpAddrWithMask;
  using RouteType = Routing::Fib::RouteType;
  using Route = Vanta::Fib::Route;
  using RouteStatus = Vanta::Fib::RouteStatus;
  using Fec = Vanta::Fib::Fec;
  using IpStatus = Ip::Status;
  using HardwareStatus = Routing::Hardware::Status;
  using UnprogrammedRouteStatus = Vanta::Fib::UnprogrammedRouteStatus;
  using KernelError = Vanta::KernelUnprogrammedRoute::Error;

  // Of a VRF:
  static constexpr auto routingConfig = &VrfState::routingConfig;
  static constexpr auto routingStatus = &VrfState::routingStatus;
  static constexpr auto routeInput = &VrfState::routeInput;
  // Of the device:
  static constexpr auto ipConfig = &DeviceState::ipConfig;
  static constexpr auto ipStatus = &DeviceState::ipStatus;
  static constexpr auto routingHardwareStatus = &DeviceState::routingHardwareStatus;
  static constexpr auto unprogrammedRouteStatus = &DeviceState::unprogrammedRouteStatus;
  // Of tables that both families have a part of:
  static constexpr auto kernelErrors = &Vanta::KernelUnprogrammedRoute::UnprogrammedRoute::error;
  static constexpr auto neighbors = &Arp::Table::Status::arpEntry;
};

/// IPv6: the same names.
struct Ip6 {
  using Address = Kesh::Ip6Addr;
  using Prefix = Kesh::Ip6Prefix;
  using AddrWithMask = Kesh::Ip6AddrWithMask;
  using RouteType = Routing6::Fib::RouteType;
  using Route = Vanta::Fib6::Route;
  using RouteStatus = Vanta::Fib6::RouteStatus;
  using Fec = Vanta::Fib6::Fec;
  using IpStatus = ::Ip6::Status;
  using HardwareStatus = Routing6::Hardware::Status;
  using UnprogrammedRouteStatus = Vanta::Fib6::UnprogrammedRouteStatus;
  using KernelError = Vanta::KernelUnprogrammedRoute::Error6;

  static constexpr auto routingConfig = &VrfState::routing6Config;
  static constexpr auto routingStatus = &VrfState::routing6Status;
  static constexpr auto routeInput = &VrfState::route6Input;
  static constexpr auto ipConfig = &DeviceState::ip6Config;
  static constexpr auto ipStatus = &DeviceState::ip6Status;
  static constexpr auto routingHardwareStatus = &DeviceState::routing6HardwareStatus;
  static constexpr auto unprogrammedRouteStatus = &DeviceState::unprogrammedRoute6Status;
  static constexpr auto kernelErrors = &Vanta::KernelUnprogrammedRoute::UnprogrammedRoute::error6;
  static constexpr auto neighbors = &Arp::Table::Status::neighborEntry;
};

} // namespace state
