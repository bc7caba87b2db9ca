// What a hop wraps its packets in, as far as a listing shows it.
#pragma once

#include "kesh/Address.h"
#include "kesh/Mpls.h"
#include "sources/kernel/Attributes.h"
#include "sources/kernel/Hop.h"

#include <map>
#include <variant>
#include <vector>

namespace sources::kernel {

/// The labels that are pushed, the top one first; of more than seven the first seven, which is what
/// the record of a stack holds.
using LabelStack = Kesh::MplsLabelOperation;

/// The segments of an SRv6 header in the order of travel; never empty.
using Segments = std::vector<Kesh::Ip6Addr>;

/// Where a device without a remote end of its own ("external") sends the packets.
struct RemoteEnd {
  Kesh::IpGenAddr address;
  std::uint32_t vni = 0; ///< on a VXLAN device
  friend auto operator<=>(const RemoteEnd&, const RemoteEnd&) = default;
};

using Encapsulation = std::variant<LabelStack, Segments, RemoteEnd>;

/// The distinct encapsulations of all hops, which name them by number.
class Encapsulations {
 public:
  /// The number of that encapsulation, from 1; equal ones have one number.
  std::uint32_t enter(Encapsulation encapsulation);
  /// Each at the place of its number, null at 0; valid as long as this object.
  std::vector<const Encapsulation*> byNumber() const;

 private:
  std::map<Encapsulation, std::uint32_t> numbers_;
};

/// An encapsulation whose kind and data come in separate attributes, in either order.
struct EncapsulationAttributes {
  std::uint16_t kind = 0; ///< LWTUNNEL_ENCAP_*
  Bytes data;
  /// Sets the label of a hop that pushes one, or enters any other encapsulation and sets its
  /// number. A damaged encapsulation, or one that is not shown, leaves the hop as it is.
  void fill(Hop& hop, Encapsulations& encapsulations) const;
};

} // namespace sources::kernel
