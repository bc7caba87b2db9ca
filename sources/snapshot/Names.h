// Enumerations that a snapshot writes by name.
#pragma once

#include "Codec.h"
#include "Field.h"

#include "kesh/Address.h"
#include "state/NexthopGroupTypes.h"
#include "state/RouteType.h"

namespace sources::snapshot {

template <class Enum>
struct Name {
  Enum value;
  std::string_view name;
};

/// The names of an enumeration. What has no name here is a default and is never written, or, with
/// `orNumber` set, is written as its number.
template <class Enum>
struct NamesOf;

template <>
struct NamesOf<Routing::RouteType> {
  static constexpr Name<Routing::RouteType> rows[] = {
      {Routing::RouteType::forward, "forward"},
      {Routing::RouteType::drop, "drop"},
      {Routing::RouteType::nexthopGroup, "nexthopGroup"},
  };
};

template <>
struct NamesOf<Kesh::LabelAction> {
  static constexpr Name<Kesh::LabelAction> rows[] = {
      {Kesh::LabelAction::push, "push"},
      {Kesh::LabelAction::swap, "swap"},
      {Kesh::LabelAction::pop, "pop"},
  };
};

template <>
struct NamesOf<Kesh::AddressFamily> {
  static constexpr bool orNumber = true;
  static constexpr Name<Kesh::AddressFamily> rows[] = {
      {Kesh::AddressFamily::ip4, "ipv4"},
      {Kesh::AddressFamily::ip6, "ipv6"},
  };
};

template <>
struct NamesOf<Routing::GreKeyType> {
  static constexpr bool orNumber = true;
  static constexpr const auto& rows = Routing::greKeyTypeNames;
};

template <>
struct NamesOf<Routing::NexthopGroup::NexthopGroupType> {
  static constexpr bool orNumber = true;
  static constexpr const auto& rows = Routing::NexthopGroup::nexthopGroupTypeNames;
};

template <>
struct NamesOf<Routing::NexthopGroup::EntryCounterType> {
  static constexpr bool orNumber = true;
  static constexpr const auto& rows = Routing::NexthopGroup::entryCounterTypeNames;
};

template <class Enum>
requires requires { NamesOf<Enum>::rows; }
struct Codec<Enum> {
  static constexpr bool orNumber = requires { NamesOf<Enum>::orNumber; };

  static Enum read(Node& node) {
    if (orNumber && !node.isText()) return static_cast<Enum>(Codec<std::uint32_t>::read(node));
    const auto& rows = NamesOf<Enum>::rows;
    const std::size_t place = placeOf(rows, node.text());
    if (place == std::size(rows)) node.refuse(namesOf(rows));
    return rows[place].value;
  }
  static void write(Output& out, Enum value) {
    for (const auto& row : NamesOf<Enum>::rows) {
      if (row.value == value) return out.text(row.name);
    }
    if (!orNumber) return out.null();
    Codec<std::uint32_t>::write(out, static_cast<std::uint32_t>(value));
  }
};

/// The type of a route of one family: its name, or its number when it has none.
template <class RouteType>
struct RouteTypeCodec {
  static RouteType read(Node& node) {
    if (!node.isText()) return static_cast<RouteType>(Codec<std::uint32_t>::read(node));
    const auto type = state::routeTypeFromName<RouteType>(node.text());
    if (!type) node.refuse("a route type of this family, such as \"static\"");
    return *type;
  }
  static void write(Output& out, RouteType type) {
    const std::string_view name = state::routeTypeName(type);
    if (name.empty()) return Codec<std::uint32_t>::write(out, static_cast<std::uint32_t>(type));
    out.text(name);
  }
};
template <>
struct Codec<Routing::Fib::RouteType> : RouteTypeCodec<Routing::Fib::RouteType> {};
template <>
struct Codec<Routing6::Fib::RouteType> : RouteTypeCodec<Routing6::Fib::RouteType> {};

} // namespace sources::snapshot
