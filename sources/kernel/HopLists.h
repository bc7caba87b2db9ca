// The distinct ways to forward of all routes: most of a million routes share a few.
#pragma once

#include "sources/kernel/Hop.h"

#include <map>
#include <span>
#include <unordered_map>
#include <vector>

namespace sources::kernel {

/// What a route says of its forwarding. Without hops and nexthop object it drops, or delivers to
/// the device itself.
struct HopListHead {
  Kesh::AddressFamily family; ///< of the route
  std::uint32_t nexthopId;    ///< of a nexthop object; 0 for none
  Kesh::IpGenAddr source;     ///< own address that packets leave with; unset for no wish
  bool drops = false;         ///< whatever the object says
  friend bool operator==(const HopListHead&, const HopListHead&) = default;
};

struct HopList : HopListHead {
  std::uint32_t first; ///< where its hops begin
  std::uint32_t count;
};

class HopLists {
 public:
  /// The number of that list, its place in `lists`; equal lists have one number.
  std::uint32_t enter(const HopListHead& head, std::span<const Hop> hops);

  const std::vector<HopList>& lists() const { return lists_; }
  std::span<const Hop> hops(const HopList& list) const {
    return std::span(hops_).subspan(list.first, list.count);
  }
  std::span<const Hop> hops(std::uint32_t number) const { return hops(lists_[number]); }

  /// How hops use an interface; what was true once stays so.
  struct Use {
    bool any = false;
    bool amongOthers = false; ///< beside hops on other interfaces
    bool dead = false;        ///< the kernel does not use such a hop
  };
  Use useOf(std::uint32_t interface) const;

  /// The numbers of the lists all of whose hops are on that interface.
  std::span<const std::uint32_t> over(std::uint32_t interface) const;
  /// Those of the lists with that nexthop object.
  std::span<const std::uint32_t> overNexthop(std::uint32_t id) const;
  /// Those of the lists whose packets leave with that address.
  std::span<const std::uint32_t> from(const Kesh::IpGenAddr& source) const;

 private:
  using Numbers = std::vector<std::uint32_t>;
  bool is(std::uint32_t number, const HopListHead& head, std::span<const Hop> hops) const;
  std::uint32_t findOrAdd(const HopListHead& head, std::span<const Hop> hops);
  void note(std::uint32_t number, const HopListHead& head, std::span<const Hop> hops);

  std::vector<HopList> lists_;
  std::vector<Hop> hops_;
  std::uint32_t last_ = 0; ///< the one that was entered last: routes come in runs that lead one way
  std::unordered_multimap<std::size_t, std::uint32_t> byHash_;
  std::unordered_map<std::uint32_t, Use> uses_; ///< by interface
  std::unordered_map<std::uint32_t, Numbers> byInterface_, byNexthop_;
  std::map<Kesh::IpGenAddr, Numbers> bySource_;
};

} // namespace sources::kernel
