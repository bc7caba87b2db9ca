// Reads the kernel's state, and keeps what it read up to date with what the kernel notifies.
//
// It subscribes first and dumps then, so that nothing falls between. Wholeness.h tells when a table
// is known to be read whole; what is not is dumped again. Some changes come without a word of their
// own: the IPv4 routes over an interface that goes down, those that leave with an address that
// goes, the nexthop objects of an interface. What took them is notified, so they follow from it;
// where that does not tell all (which of several next hops the kernel still uses), the table is
// read again.
#pragma once

#include "sources/State.h"
#include "sources/kernel/KernelState.h"
#include "sources/kernel/ObjectTable.h"
#include "sources/kernel/RouteTable.h"

#include <chrono>
#include <set>

namespace sources::kernel {

/// What the kernel told of.
struct Heard {
  std::size_t changes = 0;
  bool lost = false;   ///< some of it was dropped: there was too much at once
  bool routes = false; ///< routes, each by a word of its own
  bool neighbours = false;
  bool others = false; ///< anything else, with routes that may have gone with it

  void add(const Heard& more) {
    changes += more.changes;
    lost |= more.lost;
    routes |= more.routes;
    neighbours |= more.neighbours;
    others |= more.others;
  }
};

class Follower {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  /// Follows the tables that are needed, of the kernel behind the feed, which outlives it.
  Follower(Feed& feed, const Needs& needs, Clock clock = std::chrono::steady_clock::now);

  /// Dumps each table that is not known to be whole, as none is at first, and then again those that
  /// moved, until all are whole or `patience` is over since the end of the first dump. Raises
  /// `SourceError` when the kernel refuses.
  void read(std::chrono::milliseconds patience);
  /// Has no table known to be whole.
  void doubt();
  /// Takes in what was notified up to now, without waiting. Tells what was heard since the last
  /// time.
  Heard listen();

  /// The names of the tables that are not known to be whole.
  std::vector<std::string> moved() const;
  /// Whether what is shown depends on more than was asked for: tunnels are numbered among those of
  /// all routes.
  bool needsEverything() const;
  // For who looks at what changed of the routes alone.
  template <class Family>
  RouteTable<Family>& routes() {
    if constexpr (std::is_same_v<Family, Ip4>) {
      return routes_;
    } else {
      return routes6_;
    }
  }
  const HopLists& hopLists() const { return hopLists_; }
  /// Whether so many hop lists came since they were tidied up that most may be without a route.
  bool isUntidy() const { return hopLists_.lists().size() > tidyAt_; }
  /// Forgets the hop lists without a route; the others get other numbers.
  void tidy();
  using NeighbourKey = decltype(std::declval<Neighbour>().key());
  /// Those that were notified to be different, or gone, since this was asked before.
  std::set<NeighbourKey> touchedNeighbours() { return std::exchange(touchedNeighbours_, {}); }
  const Neighbour* neighbour(const NeighbourKey& key) const { return neighbours_.find(key); }
  /// What the kernel has beside routes.
  KernelState objects() const;
  /// Whether any hop ever pushed more than a label.
  bool hasEncapsulations() const { return encapsulations_.byNumber().size() > 1; }

  /// What the kernel has by the last notification. Ends the following.
  KernelState take();
  /// Shows the same, and goes on following. The state is lent: it is the follower's own again when
  /// `visit` returns or raises, and nothing may be asked of the follower meanwhile.
  void show(const std::function<void(KernelState&)>& visit);

 private:
  /// A table with the way to dump it.
  struct Followed {
    const char* name;
    Wholeness& table;
    std::vector<unsigned> groups; ///< RTNLGRP_*
    std::function<void()> dump;
  };

  struct Loan;
  void followNeeded();
  template <class Object>
  void dumpObjects(ObjectTable<Object>& table, const Request& request,
                   const std::function<std::optional<Object>(Bytes)>& decode);
  void dumpLinks();
  void dumpNexthops();
  void forgetPackets();
  template <class Family>
  void dumpRoutes(RouteTable<Family>& table);
  DumpEnd dump(const Request& request, const TakeMessage& take);
  void readMoving();
  void findWantedTables();
  bool isWanted(const RouteMessage& route) const;

  void drain();
  void hear(const nlmsghdr& header, Bytes payload);
  void hearLink(const nlmsghdr& header, Bytes payload);
  void hearAddress(const nlmsghdr& header, Bytes payload);
  void hearNeighbour(const nlmsghdr& header, Bytes payload);
  void hearNexthop(const nlmsghdr& header, Bytes payload);
  void hearRoute(const nlmsghdr& header, Bytes payload);
  void interfaceTurned(const Link& before, const Link& now);
  void interfaceLost(std::uint32_t interface, bool gone);
  bool hasIp4(std::uint32_t interface);
  void ip4Turned(std::uint32_t interface, bool on);
  void nexthopsLost(std::uint32_t interface);
  void nexthopLost(std::uint32_t id);
  void routesLost(const Loss& loss);
  void disturbRoutes();

  Feed& feed_;
  const Needs needs_;
  const Clock clock_;
  std::optional<std::chrono::steady_clock::time_point> deadline_;

  ObjectTable<Link> links_;
  ObjectTable<Address> addresses_;
  ObjectTable<Neighbour> neighbours_;
  ObjectTable<Nexthop> nexthops_;
  Encapsulations encapsulations_;
  HopLists hopLists_;
  RouteTable<Ip4> routes_{hopLists_};
  RouteTable<Ip6> routes6_{hopLists_};
  std::vector<Followed> followed_;
  std::set<std::uint32_t> tables_; ///< whose routes are wanted; empty for all
  RouteMessage route_;             ///< reused from message to message
  bool countsPackets_ = false;
  static constexpr std::size_t mostUnused = 65536; ///< hop lists, some 100 bytes each
  std::size_t tidyAt_ = mostUnused;
  Heard heard_; ///< since it was asked for
  std::set<NeighbourKey> touchedNeighbours_;
};

} // namespace sources::kernel
