#include "Breadth.h"

#include "Measure.h"
#include "sources/kernel/Device.h"
#include "sources/snapshot/Snapshot.h"

#include <sstream>

namespace bench {

namespace {

using sources::kernel::Hop;
using sources::kernel::Ip4;
using sources::kernel::KernelState;
using sources::kernel::Link;
using sources::kernel::RouteMessage;

constexpr std::uint32_t firstTable = 1000;

Kesh::IpGenAddr address(std::uint32_t number) {
  return Kesh::IpAddr::fromHost(0x0a000000u + number);
}

Hop hopTo(std::uint32_t gateway, std::uint32_t interface) {
  Hop hop;
  hop.gateway = address(gateway);
  hop.interface = interface;
  return hop;
}

RouteMessage routeOf(std::uint32_t table, std::uint32_t interface) {
  RouteMessage route;
  route.family = AF_INET;
  route.type = RTN_UNICAST;
  route.protocol = RTPROT_STATIC;
  route.table = table;
  route.destination = address(0);
  route.length = 8;
  route.hops = {hopTo(1, interface)};
  return route;
}

/// The N-th VRF: its device, and a route.
void addVrf(std::uint32_t n, KernelState& kernel) {
  Link& link = kernel.links.emplace_back();
  link.index = n + 1;
  link.name = "red" + std::to_string(n);
  link.vrfTable = firstTable + n;
  kernel.routes.push_back(
      sources::kernel::rowOf<Ip4>(routeOf(firstTable + n, n + 1), kernel.hopLists));
}

/// The N-th interface: with a description, an address and a neighbour.
void addInterface(std::uint32_t n, KernelState& kernel) {
  Link& link = kernel.links.emplace_back();
  link.index = n + 1;
  link.name = "eth" + std::to_string(n);
  link.alias = "port " + std::to_string(n);
  kernel.addresses.push_back({n + 1, address(4 * n + 1), 30, {}, address(4 * n + 1)});
  auto& neighbour = kernel.neighbours.emplace_back();
  neighbour.interface = n + 1;
  neighbour.address = address(4 * n + 2);
}

/// The N-th nexthop group: of two next hops.
void addGroup(std::uint32_t n, KernelState& kernel) {
  const std::uint32_t id = 3 * n + 1;
  for (const std::uint32_t member : {id, id + 1}) {
    auto& single = kernel.nexthops.emplace_back();
    single.id = member;
    single.family = Kesh::AddressFamily::ip4;
    single.hop = hopTo(member, 1);
  }
  auto& group = kernel.nexthops.emplace_back();
  group.id = id + 2;
  group.group = {{id, 1, n}, {id + 1, 1, n}};
}

struct Breadth {
  const char* what;
  std::uint32_t count;
  void (*add)(std::uint32_t n, KernelState& kernel);
};
constexpr Breadth breadths[] = {
    {"VRFs", 20000, addVrf},
    {"interfaces", 50000, addInterface},
    {"nexthop groups", 20000, addGroup},
};

struct Costs {
  Cost make, save, load;
};

Costs costsOf(const Breadth& breadth, std::uint32_t count, int repeats) {
  KernelState kernel;
  for (std::uint32_t n = 0; n < count; ++n) breadth.add(n, kernel);
  Costs costs;
  for (int i = 0; i < repeats; ++i) {
    state::DeviceState device;
    std::string text;
    costs.make.lower(costOf([&] { device = sources::kernel::makeDevice(kernel); }));
    costs.save.lower(costOf([&] { text = sources::snapshot::saveText(device); }));
    costs.load.lower(costOf([&] { device = sources::snapshot::loadText(text, "bench"); }));
  }
  return costs;
}

void put(std::ostream& out, const char* name, const Costs& costs) {
  out << ",\"" << name << "\":{\"make\":" << costs.make.cpu << ",\"save\":" << costs.save.cpu
      << ",\"load\":" << costs.load.cpu << '}';
}

} // namespace

std::string measureBreadth(int repeats) {
  std::ostringstream out;
  out.precision(9);
  out << "{\"breadth\":[";
  for (const Breadth& breadth : breadths) {
    out << (&breadth == breadths ? "" : ",") << "{\"what\":\"" << breadth.what
        << "\",\"count\":" << breadth.count;
    put(out, "whole", costsOf(breadth, breadth.count, repeats));
    put(out, "tenth", costsOf(breadth, breadth.count / 10, repeats));
    out << '}';
  }
  out << "]}";
  return out.str();
}

} // namespace bench
