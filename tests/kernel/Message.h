// Netlink messages made by hand:
//
//   Message(rtmsg{...}).add(RTA_OIF, 3u).add(RTA_GATEWAY, ip("10.0.0.1")).bytes()
#pragma once

#include "kesh/Address.h"
#include "sources/kernel/Attributes.h"

#include <string_view>
#include <vector>

namespace kernel_test {

using sources::kernel::Bytes;

/// The 4 or 16 bytes of an address.
inline std::vector<std::byte> ip(std::string_view text) {
  const auto address = Kesh::IpGenAddr::parse(text).value();
  const auto* const first = reinterpret_cast<const std::byte*>(address.v6Addr().bytes().data());
  return {first, first + (address.af() == Kesh::AddressFamily::ip4 ? 4 : 16)};
}

inline std::vector<std::byte> text(std::string_view value) {
  const auto* const first = reinterpret_cast<const std::byte*>(value.data());
  std::vector<std::byte> bytes(first, first + value.size());
  bytes.push_back(std::byte{0});
  return bytes;
}

/// A header with attributes behind it; without a header, the payload of a nested attribute.
class Message {
 public:
  Message() = default;
  template <class Header>
  explicit Message(const Header& header) {
    append(&header, sizeof header);
  }

  Message& add(unsigned type, const std::vector<std::byte>& payload) {
    const nlattr header{static_cast<std::uint16_t>(NLA_HDRLEN + payload.size()),
                        static_cast<std::uint16_t>(type)};
    append(&header, sizeof header);
    append(payload.data(), payload.size());
    return *this;
  }
  template <class Number>
  Message& add(unsigned type, Number value) {
    static_assert(std::is_arithmetic_v<Number>);
    const auto* const first = reinterpret_cast<const std::byte*>(&value);
    return add(type, std::vector<std::byte>(first, first + sizeof value));
  }
  Message& add(unsigned type, const Message& nested) { return add(type, nested.bytes_); }

  /// Appends another message as it is: a row of an array.
  Message& then(const Message& row) {
    append(row.bytes_.data(), row.bytes_.size());
    return *this;
  }

  const std::vector<std::byte>& bytes() const { return bytes_; }
  std::vector<std::byte>& bytes() { return bytes_; }

 private:
  void append(const void* from, std::size_t size) {
    const auto* const first = static_cast<const std::byte*>(from);
    bytes_.insert(bytes_.end(), first, first + size);
    bytes_.resize((bytes_.size() + NLA_ALIGNTO - 1) / NLA_ALIGNTO * NLA_ALIGNTO);
  }

  std::vector<std::byte> bytes_;
};

/// Calls `decode` with every beginning of `good`, each in memory of exactly its size, so that
/// a sanitizer sees any read behind it; then with every length field of it bent.
template <class Decode>
void decodeDamaged(const std::vector<std::byte>& good, Decode&& decode) {
  for (std::size_t size = 0; size <= good.size(); ++size) {
    const std::vector<std::byte> cut(good.begin(),
                                     good.begin() + static_cast<std::ptrdiff_t>(size));
    decode(Bytes(cut));
  }
  for (std::size_t at = 0; at + 1 < good.size(); ++at) {
    for (const unsigned value : {0u, 1u, 3u, 5u, 0x7fu, 0xffu}) {
      std::vector<std::byte> bent = good;
      bent[at] = static_cast<std::byte>(value);
      decode(Bytes(bent));
    }
  }
}

} // namespace kernel_test
