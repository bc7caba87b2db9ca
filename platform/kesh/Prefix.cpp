#include "kesh/Prefix.h"

#include "kesh/TextOf.h"

#include "lumo/Exception.h"

#include <charconv>

namespace Kesh {

namespace {

IpAddr cut(const IpAddr& address, int length) {
  return length >= 32 ? address : IpAddr::fromHost(address.host() & ~(~0u >> length));
}

Ip6Addr cut(const Ip6Addr& address, int length) {
  constexpr std::uint64_t ones = ~std::uint64_t{0};
  if (length >= 128) return address;
  if (length >= 64) {
    return Ip6Addr::fromHalves(address.high(), address.low() & ~(ones >> (length - 64)));
  }
  return Ip6Addr::fromHalves(address.high() & ~(ones >> length), 0);
}

std::size_t writeWithLength(char* out, std::size_t addressLength, std::int32_t length) {
  out[addressLength] = '/';
  char* const begin = out + addressLength + 1;
  const auto result = std::to_chars(begin, begin + 12, length);
  return static_cast<std::size_t>(result.ptr - out);
}

template <class Address>
std::optional<std::pair<Address, std::int32_t>> parseWithLength(std::string_view text) {
  const auto slash = text.rfind('/');
  if (slash == text.npos) return {};
  const auto address = Address::parse(text.substr(0, slash));
  const auto digits = text.substr(slash + 1);
  std::int32_t length = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), length);
  const bool whole = error == std::errc() && end == digits.data() + digits.size();
  const bool canonical = digits.size() == 1 || (!digits.empty() && digits[0] != '0');
  if (!address || !whole || !canonical || length < 0 || length > Address::bits) return {};
  return std::pair(*address, length);
}

} // namespace

template <class Address>
std::optional<AddrWithMask<Address>> AddrWithMask<Address>::parse(std::string_view text) {
  const auto parsed = parseWithLength<Address>(text);
  if (!parsed) return {};
  return AddrWithMask(parsed->first, parsed->second);
}

template <class Address>
Lumo::String AddrWithMask<Address>::stringValue() const {
  char buffer[maxAddressText + 16];
  const auto length = writeWithLength(buffer, address_.writeText(buffer), length_);
  return Lumo::String(std::string_view(buffer, length));
}

template <class Address>
BasicPrefix<Address>::BasicPrefix(const Address& address, std::int32_t length) : length_(length) {
  if (length < -1 || length > maxLength) {
    throw Lumo::RangeException("Prefix::validAsPrefix != true not allowed");
  }
  if (length > 0) address_ = cut(address, length);
}

template <class Address>
BasicPrefix<Address> BasicPrefix<Address>::nullPrefix() {
  return {Address(), -1};
}

template <class Address>
std::optional<BasicPrefix<Address>> BasicPrefix<Address>::parse(std::string_view text) {
  const auto parsed = parseWithLength<Address>(text);
  if (!parsed) return {};
  const BasicPrefix prefix(parsed->first, parsed->second);
  if (prefix.address() != parsed->first) return {};
  return prefix;
}

template <class Address>
bool BasicPrefix<Address>::contains(const BasicPrefix& other) const {
  if (length_ <= 0) return length_ <= other.length_;
  return other.length_ >= length_ && cut(other.address_, length_) == address_;
}

template <class Address>
std::size_t BasicPrefix<Address>::writeText(char* out) const {
  return writeWithLength(out, address_.writeText(out), length_);
}

template <class Address>
Lumo::String BasicPrefix<Address>::stringValue() const {
  return textOf(*this);
}

template class AddrWithMask<IpAddr>;
template class AddrWithMask<Ip6Addr>;
template class BasicPrefix<IpAddr>;
template class BasicPrefix<Ip6Addr>;

Prefix pfx(std::uint32_t hostOrderAddress, std::int32_t length) {
  return {IpAddr::fromHost(hostOrderAddress), length};
}
Prefix pfx(const IpAddr& address, std::int32_t length) { return {address, length}; }
Ip6Prefix pfx(const Ip6Addr& address, std::int32_t length) { return {address, length}; }

IpGenPrefix::IpGenPrefix(const Lumo::String& text) {
  if (const auto v4 = Prefix::parse(text)) {
    *this = IpGenPrefix(*v4);
  } else if (const auto v6 = Ip6Prefix::parse(text)) {
    *this = IpGenPrefix(*v6);
  }
}

std::optional<IpGenPrefix> IpGenPrefix::parse(std::string_view text) {
  for (const IpGenPrefix& null :
       {IpGenPrefix(Prefix::nullPrefix()), IpGenPrefix(Ip6Prefix::nullPrefix())}) {
    if (text == null.stringValue().view()) return null;
  }
  const IpGenPrefix prefix{Lumo::String(text)};
  return prefix.af() == AddressFamily::unset ? std::nullopt : std::optional(prefix);
}

std::size_t IpGenPrefix::writeText(char* out) const {
  if (af() == AddressFamily::unset) return 0;
  return writeWithLength(out, address_.writeText(out), length_);
}

Lumo::String IpGenPrefix::stringValue() const { return textOf(*this); }

} // namespace Kesh
