#include "command/filter/Comparison.h"

#include "command/filter/Pattern.h"

#include <algorithm>

namespace command::filter {

namespace {

bool covers(const Kesh::IpGenPrefix& prefix, const Kesh::IpGenPrefix& other) {
  if (prefix.af() != other.af()) return false;
  return prefix.af() == Kesh::AddressFamily::ip4 ? prefix.v4Prefix().contains(other.v4Prefix())
                                                 : prefix.v6Prefix().contains(other.v6Prefix());
}

// Whether a value is that of an element; one of another type is none.
template <class Value>
bool isOf(const Element&, const Value&);

template <>
bool isOf(const Element& element, const std::uint32_t& value) {
  const auto* const range = std::get_if<Range>(&element);
  return range && range->first <= value && value <= range->last;
}

template <>
bool isOf(const Element& element, const Kesh::IpGenPrefix& value) {
  if (const auto* const same = std::get_if<Same>(&element)) return same->prefix == value;
  const auto* const inside = std::get_if<Inside>(&element);
  return inside && covers(inside->prefix, value);
}

template <>
bool isOf(const Element& element, const std::string_view& value) {
  if (const auto* const pattern = std::get_if<Pattern>(&element)) return fits(value, pattern->text);
  const auto* const text = std::get_if<std::string>(&element);
  return text && *text == value;
}

using Elements = std::vector<Element>;

template <class Value>
bool isAmong(const Elements& elements, const Value& value) {
  return std::any_of(elements.begin(), elements.end(),
                     [&](const Element& element) { return isOf<Value>(element, value); });
}

bool isAmong(const Elements&, bool value) { return value; }

/// An empty text is no value.
bool isAmong(const Elements& elements, std::string_view value) {
  return !value.empty() && isAmong<std::string_view>(elements, value);
}
bool isAmong(const Elements& elements, const std::string& value) {
  return isAmong(elements, std::string_view(value));
}

template <class Value>
bool isAmong(const Elements& elements, const std::vector<Value>& values) {
  return std::any_of(values.begin(), values.end(),
                     [&](const Value& value) { return isAmong(elements, value); });
}

template <class Subject>
bool holdsFor(const Comparison& comparison, const Subject& subject) {
  const auto isOne = [&](auto member) {
    if constexpr (requires { subject.*member; }) {
      return isAmong(comparison.elements, subject.*member);
    } else {
      return false;
    }
  };
  return std::visit(isOne, comparison.field->values);
}

} // namespace

bool Comparison::holds(const Rova::RouteHead& head) const { return holdsFor(*this, head); }
bool Comparison::holds(const Rova::ShownVias& vias) const { return holdsFor(*this, vias); }

} // namespace command::filter
