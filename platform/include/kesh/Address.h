// Addresses: IPv4, IPv6, either, and Ethernet, with their text.
#pragma once

#include "lumo/String.h"

#include <array>
#include <compare>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace Kesh {

/// Bytes that hold the longest address or prefix text ("...%" zones are never written) with room
/// for a "/128" behind it.
inline constexpr std::size_t maxAddressText = 52;

/// An IPv4 address: 4 bytes in network byte order.
class IpAddr {
 public:
  /// The length of an address in bits, which is the longest mask too.
  static constexpr int bits = 32;

  constexpr IpAddr() = default;
  /// From a number in host byte order: 0x0a000001 is 10.0.0.1.
  static constexpr IpAddr fromHost(std::uint32_t value) {
    IpAddr address;
    for (int i = 0; i < 4; ++i)
      address.bytes_[i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
    return address;
  }
  /// From its bytes as they stand in a packet; as many are read as an address has.
  static IpAddr fromBytes(const void* bytes) {
    IpAddr address;
    std::memcpy(address.bytes_.data(), bytes, 4);
    return address;
  }
  /// Dotted decimal, four parts; nothing for any other text.
  static std::optional<IpAddr> parse(std::string_view text);

  /// The address as a number in the byte order of the host.
  std::uint32_t host() const {
    std::uint32_t value;
    std::memcpy(&value, bytes_.data(), 4);
    return __builtin_bswap32(value);
  }
  const std::array<std::uint8_t, 4>& bytes() const { return bytes_; }
  /// Whether it is the address of no host, 0.0.0.0 or ::.
  bool isZero() const { return host() == 0; }
  /// Writes the text at `out` (maxAddressText bytes) and returns its length; no NUL.
  std::size_t writeText(char* out) const;
  Lumo::String stringValue() const;
  std::size_t hash() const;

  friend bool operator==(const IpAddr&, const IpAddr&) = default;
  friend auto operator<=>(const IpAddr& a, const IpAddr& b) { return a.host() <=> b.host(); }

 private:
  std::array<std::uint8_t, 4> bytes_{};
};

/// An IPv6 address: 16 bytes in network byte order. Its text is that of RFC 5952.
class Ip6Addr {
 public:
  static constexpr int bits = 128;

  constexpr Ip6Addr() = default;
  static Ip6Addr fromBytes(const void* bytes) {
    Ip6Addr address;
    std::memcpy(address.bytes_.data(), bytes, 16);
    return address;
  }
  /// From its upper and lower half as numbers.
  static Ip6Addr fromHalves(std::uint64_t high, std::uint64_t low) {
    const std::uint64_t halves[2] = {__builtin_bswap64(high), __builtin_bswap64(low)};
    return fromBytes(halves);
  }
  static std::optional<Ip6Addr> parse(std::string_view text);

  /// The upper and the lower 64 bits as numbers:
  std::uint64_t high() const { return half(0); }
  std::uint64_t low() const { return half(8); }
  const std::array<std::uint8_t, 16>& bytes() const { return bytes_; }
  /// Whether it is "::".
  bool isUnspecified() const { return (high() | low()) == 0; }
  bool isZero() const { return isUnspecified(); }
  /// fe80::/10, RFC 4291.
  bool isLinkLocal() const { return bytes_[0] == 0xfe && (bytes_[1] & 0xc0) == 0x80; }
  std::size_t writeText(char* out) const;
  Lumo::String stringValue() const;
  std::size_t hash() const;

  friend bool operator==(const Ip6Addr&, const Ip6Addr&) = default;
  friend std::strong_ordering operator<=>(const Ip6Addr& a, const Ip6Addr& b) {
    if (const auto order = a.high() <=> b.high(); order != 0) return order;
    return a.low() <=> b.low();
  }

 private:
  std::uint64_t half(std::size_t offset) const {
    std::uint64_t value;
    std::memcpy(&value, bytes_.data() + offset, 8);
    return __builtin_bswap64(value);
  }
  std::array<std::uint8_t, 16> bytes_{};
};

/// The family word of a generic address or prefix.
enum class AddressFamily : std::uint32_t { unset = 0, ip4 = 1, ip6 = 2 };

/// An address of either family, or none. An IPv4 address stands in the first four of the 16 bytes,
/// the rest zero. Orders by family, then address; the unset address comes first and has no text.
class IpGenAddr {
 public:
  constexpr IpGenAddr() = default;
  IpGenAddr(const IpAddr& address);
  IpGenAddr(const Ip6Addr& address) : af_(AddressFamily::ip6), bytes_(address) {}
  static std::optional<IpGenAddr> parse(std::string_view text);

  AddressFamily af() const { return af_; }
  /// Puts the same bytes into another family, for instance to show a zero address in the family of
  /// what stands beside it.
  void afIs(AddressFamily family) { af_ = family; }
  /// The bytes read as an address of one family, whichever it is of; IPv4 has the first four:
  IpAddr v4Addr() const { return IpAddr::fromBytes(bytes_.bytes().data()); }
  const Ip6Addr& v6Addr() const { return bytes_; }
  /// All 16 bytes zero, whatever the family.
  bool isAddrZero() const { return bytes_.isUnspecified(); }
  std::size_t writeText(char* out) const;
  Lumo::String stringValue() const;
  std::size_t hash() const { return bytes_.hash() ^ static_cast<std::size_t>(af_); }

  friend bool operator==(const IpGenAddr&, const IpGenAddr&) = default;
  friend auto operator<=>(const IpGenAddr&, const IpGenAddr&) = default;

 private:
  AddressFamily af_ = AddressFamily::unset;
  Ip6Addr bytes_;
};

/// An Ethernet address, written as six colon-separated hexadecimal bytes.
class EthAddr {
 public:
  constexpr EthAddr() = default;
  static EthAddr fromBytes(const void* bytes) {
    EthAddr address;
    std::memcpy(address.bytes_.data(), bytes, 6);
    return address;
  }
  static std::optional<EthAddr> parse(std::string_view text);
  const std::array<std::uint8_t, 6>& bytes() const { return bytes_; }
  Lumo::String stringValue() const;

  friend bool operator==(const EthAddr&, const EthAddr&) = default;
  friend auto operator<=>(const EthAddr&, const EthAddr&) = default;

 private:
  std::array<std::uint8_t, 6> bytes_{};
};

/// Mixes 64 bits so that every bit counts in the low ones (the finaliser of splitmix64).
inline std::size_t mixHash(std::uint64_t value) {
  value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9ull;
  value = (value ^ (value >> 27)) * 0x94d049bb133111ebull;
  return value ^ (value >> 31);
}

} // namespace Kesh
