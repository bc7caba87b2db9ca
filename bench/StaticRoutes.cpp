#include "StaticRoutes.h"

#include "Measure.h"
#include "lumo/ActivityLock.h"
#include "rova/CliSupport.h"

#include <sstream>

namespace bench {

namespace {

constexpr std::size_t routes = 100000;
constexpr std::size_t viasOfRoute = 3;
constexpr std::size_t interfaces = 10000;

Kesh::IntfId interfaceOf(std::size_t number) {
  return Kesh::IntfId(Lumo::String("Ethernet" + std::to_string(number)));
}

/// Routes with three next hops each; every second route leads through Ethernet1 alone.
Lumo::Ptr<Routing::ConfigGen> makeConfig(std::size_t count) {
  const auto config = Lumo::newEntity<Routing::ConfigGen>();
  for (std::size_t i = 0; i < count; ++i) {
    const auto address = 0x0a000000u + static_cast<std::uint32_t>(i << 4);
    const Routing::RouteKey key{Kesh::pfx(address, 28), 1};
    const auto route = Lumo::newEntity<Routing::Route>(key);
    route->tag = static_cast<std::uint32_t>(i % 100);
    for (std::size_t at = 0; at < viasOfRoute; ++at) {
      Routing::Via via;
      via.intfId = interfaceOf(i % 2 ? 1 : 2 + at);
      via.hop = Kesh::IpAddr::fromHost(0xc0000000u + static_cast<std::uint32_t>(i * 4 + at));
      route->via.insertOrAssign(via, true);
    }
    config->route.insertOrAssign(key, route);
  }
  return config;
}

/// Interfaces with a subnet each, none of which the checked address is in.
Lumo::Ptr<Rova::AddressQueryParams> makeQuery() {
  const auto config = Lumo::newEntity<Ip::Config>();
  const auto l3 = Lumo::newEntity<L3::IntfConfig>(L3::VrfName(L3::defaultVrfName));
  for (std::size_t i = 0; i < interfaces; ++i) {
    Ip::IpIntfConfig intf;
    intf.intfId = interfaceOf(i);
    const auto address = 0x0a000001u + static_cast<std::uint32_t>(i << 8);
    intf.addrWithMask = Kesh::IpAddrWithMask(Kesh::IpAddr::fromHost(address), 24);
    intf.l3Config = l3;
    config->ipIntfConfig.insertOrAssign(intf.intfId, intf);
  }
  return Rova::addressQueryParamsFactory(
      config, "Ethernet1", "Management", Rova::AddrMatchType::allowAddressMatch,
      Rova::AddrMatchType::allowAddressMatch,
      Kesh::IpAddrWithMask(Kesh::IpAddr::fromHost(0xac100001u), 24));
}

Cost clearCost(std::size_t count) {
  const auto config = makeConfig(count);
  return costOf([&] {
    Rova::ClearIntfRoutesAndViasHelper().clearIntfRoutesAndViasHelper(config, "Ethernet1");
  });
}

} // namespace

std::string measureStaticRoutes(int repeats) {
  const Lumo::ActivityLockHold hold;
  const auto config = makeConfig(routes);
  const auto query = makeQuery();
  const std::size_t before = settledMemory();
  resetPeakMemory();
  std::size_t bytes = 0;
  const auto save = [&] {
    Rova::StaticRoutesCliSaver saver;
    bytes = saver.save(config, false, "ip route ", Rova::RovaConsts()).bytes();
  };
  save();
  const std::size_t memory = peakMemory() - before;
  Cost saving, checking, clearing, clearingTwice;
  for (int i = 0; i < repeats; ++i) {
    saving.lower(costOf(save));
    checking.lower(costOf([&] { Rova::AddressAssignmentChecker().check(query); }));
    clearing.lower(clearCost(routes));
    clearingTwice.lower(clearCost(2 * routes));
  }
  std::ostringstream out;
  out.precision(9);
  out << "{\"lines\":" << routes * viasOfRoute << ",\"bytes\":" << bytes
      << ",\"saveCpu\":" << saving.cpu << ",\"saveMemory\":" << memory
      << ",\"checkCpu\":" << checking.cpu << ",\"clearCpu\":" << clearing.cpu
      << ",\"clearTwiceCpu\":" << clearingTwice.cpu << '}';
  return out.str();
}

} // namespace bench
