// What the routing hardware says of itself.
#pragma once

#include "lumo/Ptr.h"

#include <cstdint>

namespace Routing::Hardware {

/// What the hardware can do with routes of IPv4, and (below) of IPv6.
class Status : public Lumo::PtrInterface {
 public:
  /// The largest total of via weights that one FEC may have.
  std::uint32_t maxUcmpWeight = 0xffffffff;
  /// The most entries that a nexthop group sized by the hardware may have.
  std::uint32_t maxNexthopGroupSize = 0xffffffff;
  /// Whether entries of nexthop groups can be counted.
  bool nexthopGroupEntryCounterSupported = false;

  /// Whether a FEC can lead to FECs of a second level.
  bool hierarchicalFecSupported() const { return hierarchicalFecSupported_; }
  void hierarchicalFecSupportedIs(bool supported) { hierarchicalFecSupported_ = supported; }

 private:
  bool hierarchicalFecSupported_ = false;
};

} // namespace Routing::Hardware

namespace Routing6::Hardware {

class Status : public Lumo::PtrInterface {
 public:
  std::uint32_t maxUcmpWeight = 0xffffffff;
};

} // namespace Routing6::Hardware
