// From the kernel's hops to FECs: nexthop objects resolved, equal lists joined, numbers given.
#pragma once

#include "sources/kernel/Vrfs.h"

#include <span>

namespace sources::kernel {

/// A via before it is known whether its FEC holds IPv4 or IPv6 hops.
struct Via {
  Kesh::IpGenAddr hop; ///< unset without gateway
  Kesh::IntfId intfId; ///< null when it is not there
  std::uint32_t label = Kesh::MplsLabel::null;
  std::uint32_t weight = 1;
  std::uint32_t encapsulation = 0;      ///< number of what it pushes beside the label
  Tunnel::TunnelTable::TunnelId tunnel; ///< in the place of hop and interface in the FEC, or null
  bool onLink = false;                  ///< the hop is the destination itself
  bool dead = false;                    ///< the kernel does not use it

  bool hasGateway() const { return hop.af() != Kesh::AddressFamily::unset && !onLink; }
  /// The interface that packets leave through; null when none do.
  Kesh::IntfId exit() const { return dead ? Kesh::IntfId() : intfId; }
  /// By content, so that equal state gets equal FEC numbers: not by the names' natural order, which
  /// is dear to compare.
  friend bool operator<(const Via& a, const Via& b) { return a.content() < b.content(); }

 private:
  // What the FEC holds: the tunnel alone where there is one.
  std::tuple<Kesh::IpGenAddr, std::uint64_t, std::uint32_t, std::uint32_t,
             Tunnel::TunnelTable::TunnelId>
  content() const {
    if (!tunnel.isNull()) return {{}, 0, Kesh::MplsLabel::null, weight, tunnel};
    return {hop, exit().value(), label, weight, tunnel};
  }
};

/// Where the packets of a route go.
struct ViaList {
  std::vector<Via> vias;       ///< in the kernel's order; dead ones only if all are
  std::vector<Via> dead;       ///< the other dead ones
  bool ip6 = false;            ///< its FEC holds IPv6 hops
  bool drops = false;          ///< a blackhole nexthop object
  std::uint32_t nexthopId = 0; ///< of the nexthop object that tells the vias; 0 for none
  std::size_t routes = 0;      ///< the listed ones that have it
  Vanta::Fib::FecId fecId;

  FirstHop firstHop() const;
  /// Whether it has vias and the kernel uses none of them.
  bool isDead() const;
};

/// The FEC of a list whose identifier is set, as the table of IPv4 or IPv6 hops has it.
template <class Fec>
Fec fecOf(const ViaList& list);

/// Calls `visit` with that FEC.
template <class Visit>
void withFec(const ViaList& list, Visit&& visit) {
  if (list.ip6) {
    visit(fecOf<Vanta::Fib6::Fec>(list));
  } else {
    visit(fecOf<Vanta::Fib::Fec>(list));
  }
}

/// Gives FECs their identifiers.
class FecNumbers {
 public:
  virtual ~FecNumbers() = default;
  /// Sets the identifier of each list, the same one only for lists with equal FECs.
  virtual void number(std::span<ViaList* const> lists) = 0;
};

/// Equal lists have one identifier; those of a family count from 1 in the order of content, so that
/// equal state has equal numbers.
class NumbersByContent final : public FecNumbers {
 public:
  void number(std::span<ViaList* const> lists) override;
};

/// The via lists of all hop lists, by the number of the hop list.
class ViaLists {
 public:
  ViaLists(const KernelState& kernel, const Interfaces& interfaces);
  /// Adds those of hop lists that came since.
  void extend(const HopLists& hopLists, const std::vector<Nexthop>& nexthops,
              const Interfaces& interfaces);

  /// Calls `visit` with each.
  template <class Visit>
  void forEach(Visit&& visit) {
    for (ViaList& list : lists_) visit(list);
  }
  ViaList& at(std::uint32_t hopList) { return lists_[hopList]; }
  /// Those of the listed routes.
  std::vector<ViaList*> used();
  /// Gives FEC identifiers to the lists in use, and enters the FECs.
  void enterFecs(FecNumbers& numbers, state::DeviceBuilder& builder);

 private:
  std::vector<ViaList> lists_;
};

} // namespace sources::kernel
