// Route distinguishers (RFC 4364, section 4.2): what makes equal prefixes of two VPNs differ.
#pragma once

#include "lumo/String.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace Kesh {

/// A route distinguisher: type in bits 63..48, below it an administrator and the number that this
/// one assigned.
///
/// | type | text      | administrator           | number  |
/// |------|-----------|-------------------------|---------|
/// | 0    | ASN:N     | AS number to 65535      | 32 bits |
/// | 1    | A.B.C.D:N | IPv4 address            | 16 bits |
/// | 2    | ASN:N     | AS number above 65535   | 16 bits |
///
/// So each text stands for one value and back. The default is "0:0".
class RouteDistinguisher {
 public:
  constexpr RouteDistinguisher() = default;
  /// From one of the texts above, numbers decimal without leading zeros; nothing for any other.
  static std::optional<RouteDistinguisher> parse(std::string_view text);

  constexpr std::uint64_t value() const { return value_; }
  Lumo::String stringValue() const;

  friend constexpr bool operator==(const RouteDistinguisher&, const RouteDistinguisher&) = default;

 private:
  enum class Type : std::uint16_t { asn2 = 0, address = 1, asn4 = 2 };

  constexpr explicit RouteDistinguisher(std::uint64_t value) : value_(value) {}
  /// `numberBits` is the room of the number below the administrator.
  static std::optional<RouteDistinguisher> make(Type type, std::uint64_t administrator,
                                                std::uint64_t number, unsigned numberBits);

  std::uint64_t value_ = 0;
};

} // namespace Kesh
