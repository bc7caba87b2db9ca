// Some changes of the state in a database, in one transaction.
#pragma once

#include "sources/database/SectionRows.h"
#include "sources/database/StaticRows.h"
#include "sources/database/TableWriter.h"
#include "sources/database/Transaction.h"
#include "sources/database/Writer.h"

#include <map>

namespace sources::database {

/// Whoever makes it sees to it that the state stays one that can be listed: a route leads to a FEC
/// that stands there, and a VRF has its row. Everything raises `SqliteError`; without `commit`
/// nothing is changed.
class Batch {
 public:
  using VrfId = Vrf::VrfIdMap::VrfId;

  explicit Batch(Writer& writer);

  /// A FEC that was not there.
  void enter(const Vanta::Fib::Fec& fec) { enterFec(fecs_, fec); }
  void enter(const Vanta::Fib6::Fec& fec) { enterFec(fecs6_, fec); }
  void removeFec(Vanta::Fib::FecId id);

  /// A route, and whether another one stood there.
  void enter(VrfId vrf, const Vanta::Fib::Route& route, What what) {
    routes(routes_, vrf).enter(route, what);
  }
  void enter(VrfId vrf, const Vanta::Fib6::Route& route, What what) {
    routes(routes6_, vrf).enter(route, what);
  }
  void remove(VrfId vrf, const Kesh::Prefix& prefix) { routes(routes_, vrf).remove(prefix); }
  void remove(VrfId vrf, const Kesh::Ip6Prefix& prefix) { routes(routes6_, vrf).remove(prefix); }

  /// Configured static routes, each of the family of its prefix.
  void configure(VrfId vrf, const Routing::Route& route);
  void unconfigure(VrfId vrf, const Routing::RouteKey& key);

  /// How many routes of a VRF and family (4 or 6) lose against another of their prefix.
  void hide(VrfId vrf, int family, std::uint64_t routes);

  /// A neighbour, of the family of its address.
  void enter(const Arp::Table::ArpEntry& neighbour);
  void remove(const Arp::Table::ArpKey& key);

  /// Makes the text of a section that of the device.
  void section(const state::DeviceState& device, const char* name);

  void commit(const Facts& facts);

 private:
  template <class Family>
  using RouteWriters = std::map<VrfId, RowWriter<RouteRows<Family>>>;

  template <class Family>
  RowWriter<RouteRows<Family>>& routes(RouteWriters<Family>& writers, VrfId vrf) {
    return writers.try_emplace(vrf, connection_, RouteRows<Family>(vrf), now_, log_).first->second;
  }
  template <class Fec>
  void enterFec(RowWriter<FecRows<Fec>>& writer, const Fec& fec) {
    writer.enter(fec, What::entered);
    FecRows<Fec>::eachInterface(fec, [&](const Kesh::IntfId& id) { nameInterface(id); });
  }
  void nameInterface(const Kesh::IntfId& id);
  RowWriter<NeighbourRows>& neighbours(const Arp::Table::ArpKey& key);

  Connection& connection_;
  Transaction transaction_;
  const std::int64_t now_;
  ChangeLog log_;
  RowWriter<FecRows<Vanta::Fib::Fec>> fecs_;
  RowWriter<FecRows<Vanta::Fib6::Fec>> fecs6_;
  RouteWriters<Ip4> routes_;
  RouteWriters<Ip6> routes6_;
  RowWriter<NeighbourRows> neighbours_, neighbours6_;
  StaticRouteWriter static_;
  Statement name_;
};

} // namespace sources::database
