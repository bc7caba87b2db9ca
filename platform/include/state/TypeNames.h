// The names, in attribute tables, of those types of the state that have no attributes of their own.
#pragma once

#include "lumo/TypeName.h"
#include "state/ChipSet.h"
#include "state/DeviceState.h"
#include "state/RouteTypeNames.h"

LUMO_TYPE_NAME(Kesh::IpGenAddr);
LUMO_TYPE_NAME(Kesh::IpAddr);
LUMO_TYPE_NAME(Kesh::Ip6Addr);
LUMO_TYPE_NAME(Kesh::IpGenPrefix);
LUMO_TYPE_NAME(Kesh::RouteDistinguisher);
LUMO_TYPE_NAME(Kesh::Prefix);
LUMO_TYPE_NAME(Kesh::Ip6Prefix);
LUMO_TYPE_NAME(Kesh::IpAddrWithMask);
LUMO_TYPE_NAME(Kesh::Ip6AddrWithMask);
LUMO_TYPE_NAME(Kesh::IntfId);
LUMO_TYPE_NAME(Kesh::MplsLabel);
LUMO_TYPE_NAME(Kesh::MplsLabelAndAction);
LUMO_TYPE_NAME(Kesh::MplsLabelOperation);
LUMO_TYPE_NAME(Lumo::Dir);
LUMO_TYPE_NAME(Dunlin::ChipSet);
LUMO_TYPE_NAME(Gaugex::CounterTable);
LUMO_TYPE_NAME(Merrow::EntityManager);
LUMO_TYPE_NAME(L3::VrfName);
LUMO_TYPE_NAME(Vrf::VrfIdMap::VrfId);
LUMO_TYPE_NAME(Vrf::VrfIdMap::Status);
LUMO_TYPE_NAME(Vrf::VrfIdMap::ReverseMapper);
LUMO_TYPE_NAME(Vanta::Fib::FecId);
LUMO_TYPE_NAME(Vanta::Fib::ViaIndex);
LUMO_TYPE_NAME(Vanta::Fib::RouteStatus);
LUMO_TYPE_NAME(Vanta::Fib::ForwardingStatus);
LUMO_TYPE_NAME(Vanta::Fib::UnprogrammedRouteStatus);
LUMO_TYPE_NAME(Vanta::Fib6::RouteStatus);
LUMO_TYPE_NAME(Vanta::Fib6::ForwardingStatus);
LUMO_TYPE_NAME(Vanta::Fib6::UnprogrammedRouteStatus);
LUMO_TYPE_NAME(Vanta::KernelUnprogrammedRoute::UnprogrammedRoute);
LUMO_TYPE_NAME(Routing::RoutePreference);
LUMO_TYPE_NAME(Routing::NexthopGroup::Config);
LUMO_TYPE_NAME(Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable);
LUMO_TYPE_NAME(Routing::NexthopGroup::NexthopGroupId);
LUMO_TYPE_NAME(Routing::Hardware::NexthopGroupStatus);
LUMO_TYPE_NAME(Routing::Hardware::Status);
LUMO_TYPE_NAME(Routing6::Hardware::Status);
LUMO_TYPE_NAME(Interface::AllIntfConfigDir);
LUMO_TYPE_NAME(Interface::IntfStatus);
LUMO_TYPE_NAME(Ip::Config);
LUMO_TYPE_NAME(Ip6::Config);
LUMO_TYPE_NAME(Ip::Status);
LUMO_TYPE_NAME(Ip6::Status);
LUMO_TYPE_NAME(Arp::Table::Status);
LUMO_TYPE_NAME(NexthopGroup::EntryStatus);
LUMO_TYPE_NAME(SrTePolicy::PolicyStatus);
LUMO_TYPE_NAME(SrTePolicy::Weight);
LUMO_TYPE_NAME(Tunnel::TunnelFib::TunnelFib);
LUMO_TYPE_NAME(Tunnel::TunnelTable::TunnelId);
LUMO_TYPE_NAME(Tunnel::TunnelTable::EncapId);
LUMO_TYPE_NAME(Tunnel::TunnelTable::EvpnVxlanTunnelTable);
LUMO_TYPE_NAME(Tunnel::TunnelTable::SrTunnelTable);
LUMO_TYPE_NAME(Tunnel::TunnelTable::StaticTunnelTable);
LUMO_TYPE_NAME(Tunnel::TunnelTable::LdpTunnelTable);
LUMO_TYPE_NAME(Tunnel::TunnelTable::BgpLuTunnelTable);
LUMO_TYPE_NAME(Kesh::EthAddr);
