// How each type of value stands in a snapshot: as a text, a number, true or false, or an array.
#pragma once

#include "Escapes.h"
#include "Input.h"
#include "Output.h"
#include "Text.h"

#include "kesh/Mpls.h"
#include "state/Vrf.h"

#include <limits>
#include <optional>
#include <type_traits>
#include <vector>

namespace sources::snapshot {

/// Specialised for each type:
///   static T read(Node& node);                      raises `SourceError` for any other value
///   static void write(Output& out, const T& value);
template <class T>
struct Codec;

/// The value of a text, of a key too. None has a NUL: what takes names to their NUL alone would
/// take two for one.
template <class T>
T parseText(Node& node, std::string_view text) {
  const bool hasNul = text.find('\0') != text.npos;
  const auto value = hasNul ? std::nullopt : Text<T>::parse(text);
  if (value) return *value;
  std::string found;
  appendQuoted(found, text);
  node.fail(found, hasNul ? "a text without NUL" : Text<T>::expected(text));
}

// Numbers are texts only where they are keys.
template <HasText T>
requires(!std::is_unsigned_v<T>) struct Codec<T> {
  static T read(Node& node) { return parseText<T>(node, node.text()); }
  static void write(Output& out, const T& value) { out.text(Text<T>::write(value)); }
};

template <class T>
requires std::is_unsigned_v<T>
struct Codec<T> {
  static T read(Node& node) { return static_cast<T>(node.number(std::numeric_limits<T>::max())); }
  static void write(Output& out, T value) { out.number(std::uint64_t{value}); }
};

template <>
struct Codec<std::int32_t> {
  static std::int32_t read(Node& node) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(node.integer(Limits::min(), Limits::max()));
  }
  static void write(Output& out, std::int32_t value) { out.number(std::int64_t{value}); }
};

template <>
struct Codec<bool> {
  static bool read(Node& node) { return node.boolean(); }
  static void write(Output& out, bool value) { out.boolean(value); }
};

/// A VRF's number in 24 bits, as routes hold it; the highest means none and is left out.
template <>
struct Codec<Vrf::VrfIdMap::VrfId> {
  using VrfId = Vrf::VrfIdMap::VrfId;
  static VrfId read(Node& node) {
    return VrfId(static_cast<std::uint32_t>(node.number(VrfId::none - 1)));
  }
  static void write(Output& out, VrfId id) { out.number(std::uint64_t{id.value()}); }
};

template <>
struct Codec<Kesh::MplsLabel> {
  static Kesh::MplsLabel read(Node& node) {
    return Kesh::MplsLabel(static_cast<std::uint32_t>(node.number(Kesh::MplsLabel::luWithdraw)));
  }
  static void write(Output& out, Kesh::MplsLabel label) {
    out.number(std::uint64_t{label.value()});
  }
};

template <class T>
struct Codec<std::optional<T>> {
  static std::optional<T> read(Node& node) { return Codec<T>::read(node); }
  static void write(Output& out, const std::optional<T>& value) { Codec<T>::write(out, *value); }
};

template <class T>
struct Codec<std::vector<T>> {
  static std::vector<T> read(Node& node) {
    std::vector<T> values;
    node.elements([&](Node& element) { values.push_back(Codec<T>::read(element)); });
    return values;
  }
  static void write(Output& out, const std::vector<T>& values) {
    const auto scope = out.array(Output::Layout::row);
    for (const T& value : values) Codec<T>::write(out, value);
  }
};

} // namespace sources::snapshot
