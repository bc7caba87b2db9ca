// The views of all tables, compiled once: what reads a table compiles its calls alone.
#include "state/DeviceState.h"

template class Vanta::VantaMap<Kesh::Prefix, Vanta::Fib::Route>;
template class Vanta::VantaMap<Kesh::Ip6Prefix, Vanta::Fib6::Route>;
template class Vanta::VantaMap<Vanta::Fib::FecId, Vanta::Fib::Fec>;
template class Vanta::VantaMap<Vanta::Fib::FecId, Vanta::Fib6::Fec>;
template class Vanta::VantaMap<Routing::NexthopGroup::NexthopGroupEntryCounterKey,
                               Routing::NexthopGroup::NexthopGroupEntryCounterKeyInfo>;
template class Vanta::VantaMap<Gaugex::CounterIndex, Gaugex::VantaGaugexCounter>;
template class Vanta::VantaMap<Arp::Table::ArpKey, Arp::Table::ArpEntry>;
template class Vanta::VantaMap<Vrf::VrfIdMap::VrfId, Vrf::VrfIdMap::VrfEntry>;
template class Vanta::VantaMap<NexthopGroup::NexthopGroupEntryKey, NexthopGroup::NexthopGroupEntry>;
template class Vanta::VantaMap<Vanta::Fib::UnprogrammedRouteKey, Vanta::Fib::UnprogrammedRoute>;
template class Vanta::VantaMap<Vanta::Fib6::UnprogrammedRouteKey, Vanta::Fib6::UnprogrammedRoute>;
template class Vanta::VantaMap<Vrf::VrfIdMap::VrfId, Vanta::UnprogrammedRouteCount>;
template class Vanta::VantaMap<Kesh::Prefix, Vanta::KernelUnprogrammedRoute::Error>;
template class Vanta::VantaMap<Kesh::Ip6Prefix, Vanta::KernelUnprogrammedRoute::Error6>;
