// What a test that runs for both address families says of each: sample texts in one shape.
#pragma once

#include "rova/CliSupport.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace support {

using Families = testing::Types<Rova::Ip4Family, Rova::Ip6Family>;

/// Names the typed suites "SuiteName/Ip4" and "SuiteName/Ip6".
struct FamilyNames {
  template <class Family>
  static std::string GetName(int) {
    return std::is_same_v<Family, Rova::Ip4Family> ? "Ip4" : "Ip6";
  }
};

/// Texts of a family. `wide` covers `inside`, which covers `host`; `other` and `otherHost` lie
/// apart from them.
template <class Family>
struct Texts;

template <>
struct Texts<Rova::Ip4Family> {
  using Type = Rova::Ip4Family::RouteType;
  static constexpr const char* everything = "0.0.0.0/0";
  static constexpr const char* wide = "10.0.0.0/8";
  static constexpr const char* inside = "10.1.0.0/16";
  static constexpr const char* host = "10.1.1.1/32";
  static constexpr const char* hostAddress = "10.1.1.1";
  static constexpr const char* other = "11.0.0.0/8";
  static constexpr const char* otherHost = "11.1.1.1/32";
  static constexpr const char* hop = "192.0.2.1";
  static constexpr const char* zero = "0.0.0.0";
};

template <>
struct Texts<Rova::Ip6Family> {
  using Type = Rova::Ip6Family::RouteType;
  static constexpr const char* everything = "::/0";
  static constexpr const char* wide = "2001:db8::/32";
  static constexpr const char* inside = "2001:db8:1::/48";
  static constexpr const char* host = "2001:db8:1::1/128";
  static constexpr const char* hostAddress = "2001:db8:1::1";
  static constexpr const char* other = "2001:db9::/32";
  static constexpr const char* otherHost = "2001:db9::1/128";
  static constexpr const char* hop = "fe80::1";
  static constexpr const char* zero = "::";
};

/// The value that `text` parses to; a test with a misspelt text ends here.
template <class Value>
Value parsed(const std::string& text) {
  const auto value = Value::parse(text);
  if (!value) throw std::invalid_argument("bad text in a test: " + text);
  return *value;
}

template <class Family>
typename Family::Prefix prefixOf(const std::string& text) {
  return parsed<typename Family::Prefix>(text);
}

inline Kesh::IntfId intf(const char* name) { return Kesh::IntfId(Lumo::String(name)); }
inline Kesh::IpGenAddr addr(const std::string& text) { return parsed<Kesh::IpGenAddr>(text); }

} // namespace support
