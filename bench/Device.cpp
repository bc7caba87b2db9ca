// Routes and FECs over given prefixes.
#include "Generator.h"
#include "Random.h"

#include <algorithm>
#include <string>

namespace bench {

namespace {

/// How many of a thousand routes have a type.
template <class RouteType>
struct TypeShare {
  unsigned perThousand;
  RouteType type;
};

using V4 = Routing::Fib::RouteType;
using V6 = Routing6::Fib::RouteType;

template <class Prefix>
struct Kind;

template <>
struct Kind<Kesh::Prefix> : state::Ip4Tables {
  static constexpr auto adjacency = Vanta::Fib::AdjType::fib;
  static constexpr auto connected = V4::connected;
  static constexpr TypeShare<V4> types[] = {{850, V4::bgpExternal},
                                            {100, V4::bgpInternal},
                                            {20, V4::ospfIntraArea},
                                            {10, V4::ospfExternal2},
                                            {20, V4::staticRoute}};
  static Kesh::IpAddr hop(std::size_t number) {
    return Kesh::IpAddr::fromHost(0x0a000000u + static_cast<std::uint32_t>(number));
  }
};

template <>
struct Kind<Kesh::Ip6Prefix> : state::Ip6Tables {
  static constexpr auto adjacency = Vanta::Fib::AdjType::fib6;
  static constexpr auto connected = V6::connected;
  static constexpr TypeShare<V6> types[] = {{950, V6::bgp}, {30, V6::ospf3}, {20, V6::staticRoute}};
  static Kesh::Ip6Addr hop(std::size_t number) {
    return Kesh::Ip6Addr::fromHalves(0xfd00000000000000ull, number);
  }
};

Kesh::IntfId interfaceOf(std::size_t number) {
  return Kesh::IntfId(Lumo::String("Ethernet" + std::to_string(number % 48 + 1)));
}

/// The FECs of one table, by number: those of connected networks first, then those with several
/// vias, then all others.
struct FecPlan {
  explicit FecPlan(std::size_t routes)
      : all(fecCount(Shape::plain, routes)),
        connected(std::max<std::size_t>(all / 100, 1)),
        several(connected + std::max<std::size_t>(all / 100, 1)) {}

  std::size_t all;
  std::size_t connected; ///< the end of the first part
  std::size_t several;   ///< the end of the second part
};

template <class Prefix>
typename Kind<Prefix>::Fec makeFec(std::size_t number, const FecPlan& plan) {
  typename Kind<Prefix>::Fec fec(Vanta::Fib::FecId(Kind<Prefix>::adjacency, number + 1));
  const bool isConnected = number < plan.connected;
  const bool hasSeveral = !isConnected && number < plan.several;
  const std::size_t vias = hasSeveral ? 2 + number % 3 : 1;
  for (std::size_t i = 0; i < vias; ++i) {
    typename Kind<Prefix>::Fec::ViaType via;
    if (!isConnected) via.hop = Kind<Prefix>::hop(number * 4 + i + 1);
    via.intfId = interfaceOf(number + i);
    if (hasSeveral && number % 2) via.weight = static_cast<std::uint32_t>(i + 1);
    fec.viaAppend(via);
  }
  return fec;
}

template <class Prefix>
auto drawType(Random& random) {
  std::uint64_t place = random.below(1000);
  for (const auto& [perThousand, type] : Kind<Prefix>::types) {
    if (place < perThousand) return type;
    place -= perThousand;
  }
  return Kind<Prefix>::types[0].type;
}

/// Puts the route onto a FEC of the part that its draw of a hundred falls in.
template <class Prefix>
void chooseFec(typename Kind<Prefix>::Route& route, const FecPlan& plan, Random& random) {
  const std::uint64_t percent = random.below(100);
  const std::size_t first = percent == 0 ? 0 : percent == 1 ? plan.connected : plan.several;
  const std::size_t end = percent == 0 ? plan.connected : percent == 1 ? plan.several : plan.all;
  route.fecId = Vanta::Fib::FecId(Kind<Prefix>::adjacency, first + random.below(end - first) + 1);
  if (percent == 0) route.routeType = Kind<Prefix>::connected;
}

template <class Prefix>
typename Kind<Prefix>::Route makeRoute(const Prefix& prefix, const FecPlan& plan, Random& random) {
  typename Kind<Prefix>::Route route;
  route.key = prefix;
  route.routeType = drawType<Prefix>(random);
  route.preferenceIs(200);
  route.metric = static_cast<std::uint32_t>(random.below(4) ? 0 : random.below(1000));
  chooseFec<Prefix>(route, plan, random);
  return route;
}

} // namespace

std::size_t fecCount(Shape shape, std::size_t routes) {
  constexpr std::size_t fewest = 10; // so that each kind of FEC is there
  const std::size_t routesEach = shape == Shape::policies ? 50 : 20;
  return std::clamp<std::size_t>(routes / routesEach, fewest, 50000);
}

template <class Prefix>
void fillDevice(state::DeviceBuilder& device, const std::vector<Prefix>& prefixes) {
  const FecPlan plan(prefixes.size());
  for (std::size_t number = 0; number < plan.all; ++number) {
    (device.*Kind<Prefix>::fecs)->insert(makeFec<Prefix>(number, plan));
  }
  Random random(prefixes.size());
  auto& routes = *(device.defaultVrf().*Kind<Prefix>::routes);
  for (const Prefix& prefix : prefixes) routes.insert(makeRoute(prefix, plan, random));
  routes.members(); // puts them in order
}

template void fillDevice(state::DeviceBuilder&, const std::vector<Kesh::Prefix>&);
template void fillDevice(state::DeviceBuilder&, const std::vector<Kesh::Ip6Prefix>&);

} // namespace bench
