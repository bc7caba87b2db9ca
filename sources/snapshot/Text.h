// The values that a snapshot writes as texts, be it as a key or as a value: how each is read, how
// it is written, and what an error message says was expected.
#pragma once

#include "kesh/Address.h"
#include "kesh/IntfId.h"
#include "kesh/Prefix.h"
#include "kesh/RouteDistinguisher.h"
#include "lumo/String.h"
#include "state/Counters.h"
#include "state/FecId.h"
#include "state/TunnelId.h"
#include "state/Vrf.h"

#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace sources::snapshot {

/// Specialised for each such type:
///   static std::optional<T> parse(std::string_view text);  nothing for any other text
///   static std::string expected(std::string_view text);    what should stand instead of `text`
///   static Lumo::String write(const T& value);
template <class T>
struct Text;

template <class T>
concept HasText = requires(std::string_view text) {
  Text<T>::parse(text);
};

/// For types with a `parse` and a `stringValue` of their own.
template <class T>
struct OwnText {
  static std::optional<T> parse(std::string_view text) { return T::parse(text); }
  static Lumo::String write(const T& value) { return value.stringValue(); }
};

template <>
struct Text<Kesh::IpAddr> : OwnText<Kesh::IpAddr> {
  static std::string expected(std::string_view) { return "an IPv4 address"; }
};

template <>
struct Text<Kesh::Ip6Addr> : OwnText<Kesh::Ip6Addr> {
  static std::string expected(std::string_view) { return "an IPv6 address"; }
};

template <>
struct Text<Kesh::IpGenAddr> : OwnText<Kesh::IpGenAddr> {
  static std::string expected(std::string_view) { return "an IPv4 or IPv6 address"; }
};

template <>
struct Text<Kesh::EthAddr> : OwnText<Kesh::EthAddr> {
  static std::string expected(std::string_view) {
    return "an Ethernet address such as 00:1c:73:00:00:01";
  }
};

template <>
struct Text<Kesh::IpAddrWithMask> : OwnText<Kesh::IpAddrWithMask> {
  static std::string expected(std::string_view) { return "an IPv4 address with a mask length"; }
};

template <>
struct Text<Kesh::Ip6AddrWithMask> : OwnText<Kesh::Ip6AddrWithMask> {
  static std::string expected(std::string_view) { return "an IPv6 address with a mask length"; }
};

/// A prefix with host bits is refused with the prefix that was meant.
template <>
struct Text<Kesh::Prefix> : OwnText<Kesh::Prefix> {
  static std::string expected(std::string_view text);
};

template <>
struct Text<Kesh::Ip6Prefix> : OwnText<Kesh::Ip6Prefix> {
  static std::string expected(std::string_view text);
};

template <>
struct Text<Kesh::IpGenPrefix> {
  static std::optional<Kesh::IpGenPrefix> parse(std::string_view text);
  static std::string expected(std::string_view text);
  static Lumo::String write(const Kesh::IpGenPrefix& prefix) { return prefix.stringValue(); }
};

/// An interface by its name; the empty name, which is no interface, is refused.
template <>
struct Text<Kesh::IntfId> {
  static std::optional<Kesh::IntfId> parse(std::string_view text);
  static std::string expected(std::string_view) { return "an interface name"; }
  static Lumo::String write(const Kesh::IntfId& intfId) { return intfId.stringValue(); }
};

/// "TYPE.NUMBER". The null identifier is no text: it is left out.
template <>
struct Text<Vanta::Fib::FecId> {
  static std::optional<Vanta::Fib::FecId> parse(std::string_view text);
  static std::string expected(std::string_view text);
  static Lumo::String write(const Vanta::Fib::FecId& id);
};

/// "KIND.INDEX". The null identifier is no text: it is left out.
template <>
struct Text<Tunnel::TunnelTable::TunnelId> {
  static std::optional<Tunnel::TunnelTable::TunnelId> parse(std::string_view text);
  static std::string expected(std::string_view text);
  static Lumo::String write(const Tunnel::TunnelTable::TunnelId& id);
};

/// "KIND.NUMBER".
template <>
struct Text<Tunnel::TunnelTable::EncapId> {
  static std::optional<Tunnel::TunnelTable::EncapId> parse(std::string_view text);
  static std::string expected(std::string_view text);
  static Lumo::String write(const Tunnel::TunnelTable::EncapId& id);
};

template <>
struct Text<Kesh::RouteDistinguisher> : OwnText<Kesh::RouteDistinguisher> {
  static std::string expected(std::string_view) {
    return "a route distinguisher as ASN:N or A.B.C.D:N";
  }
};

/// A decimal number in its one form, no sign, no leading zeros; nothing for one above `max`.
std::optional<std::uint64_t> parseNumber(std::string_view text, std::uint64_t max);

/// A number as a key.
template <class T>
requires(std::is_unsigned_v<T> && !std::is_same_v<T, bool>) struct Text<T> {
  static constexpr T max = std::numeric_limits<T>::max();
  static std::optional<T> parse(std::string_view text) {
    const auto value = parseNumber(text, max);
    return value ? std::optional(static_cast<T>(*value)) : std::nullopt;
  }
  static std::string expected(std::string_view) {
    return "a number from 0 to " + std::to_string(max);
  }
  static Lumo::String write(T value) { return std::to_string(value); }
};

/// A group's identifier as a key.
template <>
struct Text<Routing::NexthopGroup::NexthopGroupId> {
  using Id = Routing::NexthopGroup::NexthopGroupId;
  static std::optional<Id> parse(std::string_view text) { return Text<std::uint32_t>::parse(text); }
  static std::string expected(std::string_view text) { return Text<std::uint32_t>::expected(text); }
  static Lumo::String write(Id id) { return Text<std::uint32_t>::write(id); }
};

template <>
struct Text<Gaugex::CounterIndex> {
  static std::optional<Gaugex::CounterIndex> parse(std::string_view text);
  static std::string expected(std::string_view text) { return Text<std::uint64_t>::expected(text); }
  static Lumo::String write(const Gaugex::CounterIndex& counter) {
    return std::to_string(counter.index());
  }
};

/// "GROUP.ENTRY".
template <>
struct Text<Routing::NexthopGroup::NexthopGroupEntryCounterKey> {
  using Key = Routing::NexthopGroup::NexthopGroupEntryCounterKey;
  static std::optional<Key> parse(std::string_view text);
  static std::string expected(std::string_view text);
  static Lumo::String write(const Key& key);
};

template <>
struct Text<L3::VrfName> {
  static std::optional<L3::VrfName> parse(std::string_view text);
  static std::string expected(std::string_view) { return "a VRF name of 1 to 100 bytes"; }
  static Lumo::String write(const L3::VrfName& name) { return name.stringValue(); }
};

template <>
struct Text<Lumo::String> {
  static std::optional<Lumo::String> parse(std::string_view text) { return Lumo::String(text); }
  static std::string expected(std::string_view) { return "a text"; }
  static Lumo::String write(const Lumo::String& text) { return text; }
};

template <>
struct Text<Lumo::Name> : Text<Lumo::String> {};

} // namespace sources::snapshot
