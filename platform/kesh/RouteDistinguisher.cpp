#include "kesh/RouteDistinguisher.h"

#include "kesh/Address.h"

#include <charconv>
#include <string>

namespace Kesh {

namespace {

constexpr unsigned typePos = 48;
constexpr unsigned longNumber = 32, shortNumber = 16; // bits
constexpr std::uint64_t maxAsn2 = 0xffff;

/// A decimal number of 32 bits in its one form.
std::optional<std::uint32_t> parseNumber(std::string_view text) {
  std::uint32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return {};
  if (text.size() > 1 && text[0] == '0') return {};
  return value;
}

} // namespace

std::optional<RouteDistinguisher> RouteDistinguisher::make(Type type, std::uint64_t administrator,
                                                           std::uint64_t number,
                                                           unsigned numberBits) {
  if (number >> numberBits != 0) return {};
  const auto typeBits = std::uint64_t{static_cast<std::uint16_t>(type)} << typePos;
  return RouteDistinguisher(typeBits | administrator << numberBits | number);
}

std::optional<RouteDistinguisher> RouteDistinguisher::parse(std::string_view text) {
  const auto colon = text.find(':');
  if (colon == text.npos) return {};
  const std::string_view administrator = text.substr(0, colon);
  const auto number = parseNumber(text.substr(colon + 1));
  if (!number) return {};
  if (const auto address = IpAddr::parse(administrator)) {
    return make(Type::address, address->host(), *number, shortNumber);
  }
  const auto asn = parseNumber(administrator);
  if (!asn) return {};
  if (*asn <= maxAsn2) return make(Type::asn2, *asn, *number, longNumber);
  return make(Type::asn4, *asn, *number, shortNumber);
}

Lumo::String RouteDistinguisher::stringValue() const {
  const auto type = static_cast<Type>(value_ >> typePos);
  const unsigned numberBits = type == Type::asn2 ? longNumber : shortNumber;
  const auto number = value_ & ((std::uint64_t{1} << numberBits) - 1);
  const auto administrator =
      static_cast<std::uint32_t>((value_ & ((std::uint64_t{1} << typePos) - 1)) >> numberBits);
  const std::string text = type == Type::address
                               ? IpAddr::fromHost(administrator).stringValue().str()
                               : std::to_string(administrator);
  return text + ":" + std::to_string(number);
}

} // namespace Kesh
