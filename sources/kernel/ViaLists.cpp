#include "sources/kernel/ViaLists.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace sources::kernel {

namespace {

using Kesh::AddressFamily;
using Objects = std::unordered_map<std::uint32_t, const Nexthop*>;

class Resolver {
 public:
  Resolver(const HopLists& hopLists, const std::vector<Nexthop>& nexthops,
           const Interfaces& interfaces)
      : hopLists_(hopLists), interfaces_(interfaces) {
    for (const Nexthop& nexthop : nexthops) objects_[nexthop.id] = &nexthop;
  }

  ViaList resolve(const HopList& list) const {
    ViaList out;
    const Nexthop* const object = list.drops ? nullptr : find(list.nexthopId);
    if (object) {
      out.nexthopId = object->id;
      resolveObject(*object, out);
    } else {
      // Without the object, which may be gone meanwhile, the kernel's own expansion of it serves.
      for (const Hop& hop : hopLists_.hops(list)) out.vias.push_back(viaOf(hop));
    }
    partDead(out);
    out.vias = merged(std::move(out.vias));
    out.ip6 = holdsIp6(list.family, out.vias);
    return out;
  }

 private:
  const Nexthop* find(std::uint32_t id) const {
    const auto found = objects_.find(id);
    return found == objects_.end() ? nullptr : found->second;
  }

  // Groups hold single next hops only: the kernel lets no group into a group.
  void resolveObject(const Nexthop& object, ViaList& out) const {
    if (object.group.empty()) return addObject(object, 1, out);
    for (const Nexthop::Member& member : object.group) {
      if (const Nexthop* const single = find(member.id)) addObject(*single, member.weight, out);
    }
  }

  void addObject(const Nexthop& single, std::uint32_t weight, ViaList& out) const {
    if (single.blackhole) return void(out.drops = true);
    out.vias.push_back(viaOf(single.hop));
    out.vias.back().weight = weight;
  }

  Via viaOf(const Hop& hop) const {
    return {hop.gateway,       interfaces_.find(hop.interface).id,
            hop.label,         hop.weight,
            hop.encapsulation, {},
            hop.onLink != 0,   hop.dead != 0};
  }

  /// Puts what forwards nothing aside, unless there is nothing else: the kernel passes over a route
  /// without a living hop, and so does a listing that is not in detail.
  static void partDead(ViaList& list) {
    // clang 14 cannot compile the partition of a whole range.
    const auto end = list.vias.end();
    const auto dead = std::stable_partition(list.vias.begin(), end, std::not_fn(&Via::dead));
    if (dead == list.vias.begin()) return;
    list.dead.assign(dead, end);
    list.vias.erase(dead, end);
  }

  /// Joins vias that lead the same way: the kernel keeps each with its weight.
  static std::vector<Via> merged(std::vector<Via> vias) {
    std::vector<Via> out;
    for (Via& via : vias) {
      const auto same =
          std::ranges::find_if(out, [&](const Via& one) { return isSameWay(one, via); });
      if (same == out.end()) {
        out.push_back(std::move(via));
      } else {
        same->weight += via.weight;
      }
    }
    return out;
  }
  static bool isSameWay(const Via& a, const Via& b) {
    return a.hop == b.hop && a.intfId == b.intfId && a.label == b.label &&
           a.encapsulation == b.encapsulation && a.dead == b.dead;
  }

  /// IPv4 hops have a FEC of their own kind only while no IPv6 hop stands among them.
  static bool holdsIp6(AddressFamily family, const std::vector<Via>& vias) {
    return family == AddressFamily::ip6 || std::ranges::any_of(vias, [](const Via& via) {
             return via.hop.af() == AddressFamily::ip6;
           });
  }

  const HopLists& hopLists_;
  const Interfaces& interfaces_;
  Objects objects_;
};

void setHop(const Kesh::IpGenAddr& hop, Kesh::IpAddr& out) {
  if (hop.af() == AddressFamily::ip4) out = hop.v4Addr();
}

void setHop(const Kesh::IpGenAddr& hop, Kesh::Ip6Addr& out) { out = ip6Form(hop); }

/// Sets where a via leads: to a tunnel, which knows hop, interface and labels itself, or there.
template <class FecVia>
void setTarget(const Via& via, FecVia& out) {
  if (!via.tunnel.isNull()) {
    out.intfId = Kesh::DynamicTunnelIntfId::tunnelIdToIntfId(via.tunnel.value());
    return;
  }
  setHop(via.hop, out.hop);
  out.intfId = via.exit();
  out.labelAndAction.labelIs(Kesh::MplsLabel(via.label));
}

void insert(const Vanta::Fib::Fec& fec, state::DeviceBuilder& builder) {
  builder.fecs->insert(fec);
}
void insert(const Vanta::Fib6::Fec& fec, state::DeviceBuilder& builder) {
  builder.fecs6->insert(fec);
}

bool lessContent(const ViaList* a, const ViaList* b) {
  return a->ip6 == b->ip6 ? a->vias < b->vias : a->ip6 < b->ip6;
}

} // namespace

template <class Fec>
Fec fecOf(const ViaList& list) {
  Fec fec(list.fecId);
  for (const Via& via : list.vias) {
    typename Fec::ViaType out;
    setTarget(via, out);
    out.weight = via.weight;
    fec.viaAppend(out);
  }
  return fec;
}
template Vanta::Fib::Fec fecOf(const ViaList&);
template Vanta::Fib6::Fec fecOf(const ViaList&);

bool ViaList::isDead() const { return !vias.empty() && std::ranges::all_of(vias, &Via::dead); }

FirstHop ViaList::firstHop() const {
  if (std::ranges::any_of(vias, &Via::hasGateway)) return FirstHop::gateway;
  return std::ranges::any_of(vias, &Via::onLink) ? FirstHop::peer : FirstHop::link;
}

ViaLists::ViaLists(const KernelState& kernel, const Interfaces& interfaces) {
  lists_.reserve(kernel.hopLists.lists().size());
  extend(kernel.hopLists, kernel.nexthops, interfaces);
}

void ViaLists::extend(const HopLists& hopLists, const std::vector<Nexthop>& nexthops,
                      const Interfaces& interfaces) {
  const std::span<const HopList> all(hopLists.lists());
  if (all.size() == lists_.size()) return;
  const Resolver resolver(hopLists, nexthops, interfaces);
  for (const HopList& list : all.subspan(lists_.size())) lists_.push_back(resolver.resolve(list));
}

std::vector<ViaList*> ViaLists::used() {
  std::vector<ViaList*> out;
  for (ViaList& list : lists_) {
    if (list.routes != 0) out.push_back(&list);
  }
  return out;
}

void NumbersByContent::number(std::span<ViaList* const> lists) {
  std::vector<ViaList*> sorted(lists.begin(), lists.end());
  std::ranges::sort(sorted, lessContent);
  std::uint64_t numbers[2] = {0, 0}; // the last one of IPv4 and of IPv6 hops
  const ViaList* last = nullptr;
  for (ViaList* const list : sorted) {
    if (last && !lessContent(last, list)) {
      list->fecId = last->fecId;
      continue;
    }
    const auto type = list->ip6 ? Vanta::Fib::AdjType::fib6 : Vanta::Fib::AdjType::fib;
    list->fecId = Vanta::Fib::FecId(type, ++numbers[list->ip6]);
    last = list;
  }
}

void ViaLists::enterFecs(FecNumbers& numbers, state::DeviceBuilder& builder) {
  std::vector<ViaList*> lists = used();
  numbers.number(lists);
  std::ranges::sort(lists, {}, &ViaList::fecId);
  Vanta::Fib::FecId last;
  for (const ViaList* const list : lists) {
    if (std::exchange(last, list->fecId) == list->fecId) continue;
    withFec(*list, [&](const auto& fec) { insert(fec, builder); });
  }
}

} // namespace sources::kernel
