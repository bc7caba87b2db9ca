// SR-TE policies (RFC 9256): which endpoint and color a FEC stands for.
#pragma once

#include "kesh/Address.h"
#include "lumo/Attribute.h"
#include "lumo/Ptr.h"
#include "state/FecId.h"

#include <cstdint>
#include <ostream>

namespace SrTePolicy {

/// The router at which a policy ends.
struct EndPoint {
  Kesh::IpGenAddr address;

  LUMO_TYPE(EndPoint, "SrTePolicy::EndPoint")
  LUMO_PUBLIC(address)
  LUMO_END

  /// As streams show it: the address.
  Lumo::String text() const { return address.stringValue(); }
  friend std::ostream& operator<<(std::ostream& out, const EndPoint& endpoint) {
    return out << endpoint.text();
  }
  friend bool operator==(const EndPoint&, const EndPoint&) = default;
};

/// A policy: where it leads, and the color by which routes ask for it.
struct PolicyKey {
  EndPoint endpoint;
  std::uint32_t color = 0;

  LUMO_TYPE(PolicyKey, "SrTePolicy::PolicyKey")
  LUMO_PUBLIC(endpoint)
  LUMO_PUBLIC(color)
  LUMO_END

  friend bool operator==(const PolicyKey&, const PolicyKey&) = default;
};

/// The highest number of 32 bits.
constexpr std::uint32_t maxU32() { return 0xffffffffu; }

/// The weight of a segment list, 1 to maxU32(). 0 raises "Weight::value < Weight::min or >
/// Weight::max not allowed".
class Weight {
 public:
  /// The least and the greatest weight:
  static constexpr std::uint32_t min = 1;
  static constexpr std::uint32_t max = maxU32();

  constexpr Weight() = default;
  constexpr explicit Weight(std::uint32_t value) : value_(value) {
    if (value < min) {
      throw Lumo::RangeException("Weight::value < Weight::min or > Weight::max not allowed");
    }
  }
  constexpr std::uint32_t value() const { return value_; }
  friend constexpr bool operator==(const Weight&, const Weight&) = default;

 private:
  std::uint32_t value_ = 1;
};

/// The policies by the FECs that stand for them.
class PolicyStatus : public Lumo::PtrInterface {
 public:
  Lumo::HashMap2018<Vanta::Fib::FecId, PolicyKey> fecIdToPolicyKey;
};

} // namespace SrTePolicy
