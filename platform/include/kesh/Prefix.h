// Prefixes of both families, and addresses with a mask.
//
// The order of every listing: a more specific prefix comes before the one that covers it, otherwise
// the smaller address comes first. It is the order of the pair (last address of the prefix, maximal
// length minus length), which is how `operator<` compares.
#pragma once

#include "kesh/Address.h"

namespace Kesh {

template <class Address>
class BasicPrefix;

/// An address with a mask length, bits kept as they are (an interface address).
template <class Address>
class AddrWithMask {
 public:
  constexpr AddrWithMask() = default;
  constexpr AddrWithMask(const Address& address, std::int32_t length)
      : address_(address), length_(length) {}
  static std::optional<AddrWithMask> parse(std::string_view text);

  const Address& address() const { return address_; }
  /// The mask length in bits.
  std::int32_t len() const { return length_; }
  Lumo::String stringValue() const;
  /// The network that the address is in.
  BasicPrefix<Address> subnet() const { return {address_, length_}; }
  /// Whether the two networks have an address in common.
  bool overlaps(const AddrWithMask& other) const {
    return subnet().contains(other.subnet()) || other.subnet().contains(subnet());
  }
  std::size_t hash() const {
    return address_.hash() ^ mixHash(static_cast<std::uint64_t>(length_));
  }

  friend bool operator==(const AddrWithMask&, const AddrWithMask&) = default;
  friend auto operator<=>(const AddrWithMask&, const AddrWithMask&) = default;

 private:
  Address address_;
  std::int32_t length_ = 0;
};

using IpAddrWithMask = AddrWithMask<IpAddr>;
using Ip6AddrWithMask = AddrWithMask<Ip6Addr>;

/// A prefix of one family: the address, no bits behind the mask, and the mask length. The null
/// prefix has address 0 and length -1; it stands for "the whole table" in a query. A default prefix
/// has length 0.
template <class Address>
class BasicPrefix {
 public:
  /// The mask length of a single address.
  static constexpr int maxLength = Address::bits;

  constexpr BasicPrefix() = default;
  /// Cuts `address` to its leading `length` bits; length 0 ignores the address. Raises the range
  /// error "Prefix::validAsPrefix != true not allowed" for a length outside -1 to the maximum.
  BasicPrefix(const Address& address, std::int32_t length);
  /// The prefix that stands for none.
  static BasicPrefix nullPrefix();
  /// "ADDRESS/LENGTH" without host bits; nothing for any other text.
  static std::optional<BasicPrefix> parse(std::string_view text);

  const Address& address() const { return address_; }
  std::int32_t len() const { return length_; }
  /// Whether it is the null prefix.
  bool isNullPrefix() const { return length_ < 0; }
  /// Whether `other` is this prefix or lies inside it.
  bool contains(const BasicPrefix& other) const;
  /// Where a walk over all that lies inside this prefix begins: at the host route of its first
  /// address. It ends with this prefix, and what the order has between the two is inside: its last
  /// address is an address of this prefix, and a wider prefix with such a last address ends where
  /// this one does, so that its shorter length puts it behind.
  BasicPrefix firstInside() const { return {address_, maxLength}; }
  std::size_t writeText(char* out) const;
  Lumo::String stringValue() const;
  std::size_t hash() const {
    return address_.hash() ^ mixHash(static_cast<std::uint64_t>(length_));
  }
  /// The last address as a number, an IPv6 one as its upper and lower half.
  auto last() const;

  friend bool operator==(const BasicPrefix&, const BasicPrefix&) = default;
  friend bool operator<(const BasicPrefix& a, const BasicPrefix& b) {
    const auto lastA = a.last(), lastB = b.last();
    return lastA == lastB ? a.length_ > b.length_ : lastA < lastB;
  }

 private:
  Address address_;
  std::int32_t length_ = 0;
};

using Prefix = BasicPrefix<IpAddr>;
using Ip6Prefix = BasicPrefix<Ip6Addr>;

template <>
inline auto BasicPrefix<IpAddr>::last() const {
  return length_ <= 0 ? ~0u : length_ >= 32 ? address_.host() : address_.host() | ~0u >> length_;
}

template <>
inline auto BasicPrefix<Ip6Addr>::last() const {
  constexpr std::uint64_t ones = ~std::uint64_t{0};
  if (length_ <= 0) return std::pair(ones, ones);
  if (length_ >= 128) return std::pair(address_.high(), address_.low());
  if (length_ < 64) return std::pair(address_.high() | ones >> length_, ones);
  return std::pair(address_.high(), address_.low() | ones >> (length_ - 64));
}

/// The prefix of that address and length; see the constructor for the rule and the error.
Prefix pfx(std::uint32_t hostOrderAddress, std::int32_t length);
Prefix pfx(const IpAddr& address, std::int32_t length);
Ip6Prefix pfx(const Ip6Addr& address, std::int32_t length);

/// The prefix as an address with mask, bits unchanged.
template <class Address>
AddrWithMask<Address> addrFromPrefix(const BasicPrefix<Address>& prefix) {
  return {prefix.address(), prefix.len()};
}

/// A prefix of either family, or none. Orders by family, address, length.
class IpGenPrefix {
 public:
  constexpr IpGenPrefix() = default;
  IpGenPrefix(const Prefix& prefix) : address_(prefix.address()), length_(prefix.len()) {}
  IpGenPrefix(const Ip6Prefix& prefix) : address_(prefix.address()), length_(prefix.len()) {}
  /// From "ADDRESS/LENGTH" of either family; any other text, the empty one too, gives no prefix.
  explicit IpGenPrefix(const Lumo::String& text);

  /// The same, but nothing for a text that is no prefix; reads the null prefixes too.
  static std::optional<IpGenPrefix> parse(std::string_view text);

  AddressFamily af() const { return address_.af(); }
  /// Puts the same bytes and length into another family.
  void afIs(AddressFamily family) { address_.afIs(family); }
  const IpGenAddr& address() const { return address_; }
  std::int32_t len() const { return length_; }
  /// The address read as that of one family, with the length:
  Prefix v4Prefix() const { return {address_.v4Addr(), length_}; }
  Ip6Prefix v6Prefix() const { return {address_.v6Addr(), length_}; }
  std::size_t writeText(char* out) const;
  Lumo::String stringValue() const;
  std::size_t hash() const {
    return address_.hash() ^ mixHash(static_cast<std::uint64_t>(length_));
  }

  friend bool operator==(const IpGenPrefix&, const IpGenPrefix&) = default;
  friend auto operator<=>(const IpGenPrefix&, const IpGenPrefix&) = default;

 private:
  IpGenAddr address_;
  std::int32_t length_ = 0;
};

} // namespace Kesh
