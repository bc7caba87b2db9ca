// What to dump, and how often. What is heard in between: Notified.cpp.
#include "sources/kernel/Follower.h"

#include "sources/kernel/Vrfs.h"

#include <linux/if_addr.h>
#include <linux/neighbour.h>
#include <linux/nexthop.h>

namespace sources::kernel {

namespace {

constexpr Request linksRequest{"interfaces", RTM_GETLINK, AF_UNSPEC, sizeof(ifinfomsg)};
constexpr Request nexthopsRequest{"nexthop objects", RTM_GETNEXTHOP, AF_UNSPEC, sizeof(nhmsg)};

/// The family to ask for where one request can be for both.
std::uint8_t familyOf(const Needs& needs) {
  return needs.ip4 && needs.ip6 ? AF_UNSPEC : needs.ip4 ? AF_INET : AF_INET6;
}

/// A group of the family's, for each that is needed.
std::vector<unsigned> groupsOf(const Needs& needs, unsigned group4, unsigned group6) {
  std::vector<unsigned> groups;
  if (needs.ip4) groups.push_back(group4);
  if (needs.ip6) groups.push_back(group6);
  return groups;
}

Request with(Request request, std::uint16_t attribute, std::uint32_t value) {
  request.attribute = attribute;
  request.attributeValue = value;
  return request;
}

} // namespace

Follower::Follower(Feed& feed, const Needs& needs, Clock clock)
    : feed_(feed), needs_(needs), clock_(std::move(clock)) {
  followNeeded();
  for (const Followed& one : followed_) {
    for (const unsigned group : one.groups) feed_.follow(group);
  }
}

void Follower::followNeeded() {
  followed_.push_back({linksRequest.what, links_, {RTNLGRP_LINK}, [this] { dumpLinks(); }});
  const auto family = familyOf(needs_);
  const Request addresses{"addresses", RTM_GETADDR, family, sizeof(ifaddrmsg)};
  followed_.push_back({addresses.what, addresses_,
                       groupsOf(needs_, RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV6_IFADDR),
                       [=, this] { dumpObjects<Address>(addresses_, addresses, decodeAddress); }});
  if (needs_.neighbours) {
    const Request neighbours{"neighbours", RTM_GETNEIGH, family, sizeof(ndmsg)};
    followed_.push_back({neighbours.what, neighbours_, {RTNLGRP_NEIGH}, [=, this] {
                           dumpObjects<Neighbour>(neighbours_, neighbours, decodeNeighbour);
                         }});
  }
  if (needs_.nexthopGroups || needs_.routes) {
    followed_.push_back(
        {nexthopsRequest.what, nexthops_, {RTNLGRP_NEXTHOP}, [this] { dumpNexthops(); }});
  }
  if (needs_.routes && needs_.ip4) {
    followed_.push_back(
        {Ip4::routesName, routes_, {RTNLGRP_IPV4_ROUTE}, [this] { dumpRoutes(routes_); }});
  }
  if (needs_.routes && needs_.ip6) {
    followed_.push_back(
        {Ip6::routesName, routes6_, {RTNLGRP_IPV6_ROUTE}, [this] { dumpRoutes(routes6_); }});
  }
}

void Follower::read(std::chrono::milliseconds patience) {
  deadline_.reset();
  for (const Followed& one : followed_) {
    if (!one.table.isWhole()) one.dump();
  }
  deadline_ = clock_() + patience;
  while (clock_() < *deadline_ && !moved().empty()) {
    for (const Followed& one : followed_) {
      if (!one.table.isWhole() && clock_() < *deadline_) one.dump();
    }
  }
  drain();
}

std::vector<std::string> Follower::moved() const {
  std::vector<std::string> names;
  for (const Followed& one : followed_) {
    if (!one.table.isWhole()) names.emplace_back(one.name);
  }
  return names;
}

bool Follower::needsEverything() const {
  const bool hasTunnels = encapsulations_.byNumber().size() > 1;
  const bool hasAll = needs_.ip4 && needs_.ip6 && needs_.neighbours && needs_.vrf == "all";
  return needs_.routes && hasTunnels && !hasAll;
}

void Follower::doubt() {
  for (const Followed& one : followed_) one.table.disturbed();
}

Heard Follower::listen() {
  drain();
  return std::exchange(heard_, {});
}

void Follower::tidy() {
  HopLists used;
  routes_.moveTo(used);
  routes6_.moveTo(used);
  hopLists_ = std::move(used);
  tidyAt_ = 2 * hopLists_.lists().size() + mostUnused;
}

KernelState Follower::objects() const {
  KernelState state;
  state.links = links_.all();
  state.addresses = addresses_.all();
  state.neighbours = neighbours_.all();
  state.nexthops = nexthops_.all();
  return state;
}

KernelState Follower::take() {
  KernelState state = objects();
  state.routes = routes_.take();
  state.routes6 = routes6_.take();
  state.encapsulations = std::move(encapsulations_);
  state.hopLists = std::move(hopLists_);
  return state;
}

/// What is big is taken out for the time, and put back however that ends.
struct Follower::Loan {
  explicit Loan(Follower& lender) : owner(lender), state(lender.take()) {}
  ~Loan() {
    owner.routes_.putBack(std::move(state.routes));
    owner.routes6_.putBack(std::move(state.routes6));
    owner.encapsulations_ = std::move(state.encapsulations);
    owner.hopLists_ = std::move(state.hopLists);
  }
  Loan(const Loan&) = delete;
  Loan& operator=(const Loan&) = delete;

  Follower& owner;
  KernelState state;
};

void Follower::show(const std::function<void(KernelState&)>& visit) {
  Loan loan(*this);
  visit(loan.state);
}

DumpEnd Follower::dump(const Request& request, const TakeMessage& take) {
  const DumpEnd end = feed_.dump(request, take, [this] {
    drain();
    return !deadline_ || clock_() < *deadline_;
  });
  drain();
  return end;
}

template <class Object>
void Follower::dumpObjects(ObjectTable<Object>& table, const Request& request,
                           const std::function<std::optional<Object>(Bytes)>& decode) {
  drain();
  table.begin();
  table.end(dump(request, [&](Bytes payload) {
    if (auto object = decode(payload)) table.dumped(std::move(*object));
  }));
}

void Follower::dumpLinks() {
  dumpObjects<Link>(links_, linksRequest, decodeLink);
  findWantedTables();
}

void Follower::forgetPackets() {
  countsPackets_ = false;
  nexthops_.forEach([](Nexthop& nexthop) {
    for (Nexthop::Member& member : nexthop.group) member.packets = {};
  });
}

void Follower::dumpNexthops() {
  drain();
  nexthops_.begin();
  const auto take = [&](Bytes payload) {
    if (auto object = decodeNexthop(payload, encapsulations_)) nexthops_.dumped(std::move(*object));
  };
  DumpEnd end{.known = false};
  if (needs_.nexthopGroups) {
    countsPackets_ = true; // what is notified meanwhile has no counts of its own
    end = dump(with(nexthopsRequest, operationAttribute, dumpStatistics), take);
    if (!end.known) forgetPackets();
  }
  if (!end.known) end = dump(nexthopsRequest, take); // by a kernel that does not count
  nexthops_.end(end);
}

template <class Family>
void Follower::dumpRoutes(RouteTable<Family>& table) {
  drain();
  table.begin();
  const auto take = [&](Bytes payload) {
    // A kernel without a family answers with the routes of all others.
    if (!decodeRoute(payload, encapsulations_, route_) || route_.family != Family::family) return;
    if (isWanted(route_)) table.dumped(rowOf<Family>(route_, hopLists_));
  };
  const Request all{Family::routesName, RTM_GETROUTE, Family::family, sizeof(rtmsg)};
  DumpEnd whole;
  const auto add = [&](const Request& request) {
    const DumpEnd end = dump(request, take);
    whole.interrupted = whole.interrupted || end.interrupted;
    whole.complete = whole.complete && end.complete;
  };
  if (tables_.empty()) add(all);
  for (const std::uint32_t number : tables_) {
    if (whole.complete) add(with(all, RTA_TABLE, number));
  }
  table.end(whole);
}

void Follower::findWantedTables() {
  std::vector<Link> devices;
  links_.forEach([&](const Link& link) {
    if (link.vrfTable != 0) devices.push_back(link);
  });
  tables_.clear();
  const auto table = tableOf(needs_.vrf, devices);
  if (!table) return;
  tables_.insert(*table);
  if (*table == RT_TABLE_MAIN) tables_.insert(RT_TABLE_LOCAL);
}

bool Follower::isWanted(const RouteMessage& route) const {
  return isRow(route) && (tables_.empty() || tables_.contains(route.table));
}

} // namespace sources::kernel
