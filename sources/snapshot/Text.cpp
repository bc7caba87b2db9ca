#include "Text.h"

#include "lumo/Exception.h"

#include <charconv>

namespace sources::snapshot {

namespace {

/// The number that a text begins with; moves the text behind it.
std::optional<std::uint64_t> takeNumber(std::string_view& text, std::uint64_t max) {
  std::uint64_t value = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const auto digits = static_cast<std::size_t>(stop - text.data());
  if (error != std::errc() || value > max || (digits > 1 && text[0] == '0')) return {};
  text.remove_prefix(digits);
  return value;
}

/// Two numbers with a point between, packed as "high above `lowBits` bits of low".
struct PairForm {
  unsigned maxHigh;
  unsigned lowBits;
  const char* name;
  bool zeroIsNull;

  std::uint64_t maxLow() const { return (std::uint64_t{1} << lowBits) - 1; }
};
constexpr PairForm fecForm = {Vanta::Fib::adjTypeMax() - 1, Vanta::Fib::adjTypePos(),
                              "a FEC as TYPE.NUMBER", true};
constexpr PairForm tunnelForm = {15, 44, "a tunnel as KIND.INDEX", true};
constexpr PairForm encapForm = {15, 28, "an encapsulation as KIND.NUMBER", false};
constexpr PairForm counterKeyForm = {0xffffffff, 32, "an entry as GROUP.ENTRY", false};

std::optional<std::uint64_t> parsePair(const PairForm& form, std::string_view text) {
  const auto high = takeNumber(text, form.maxHigh);
  if (!high || !text.starts_with('.')) return {};
  text.remove_prefix(1);
  const auto low = takeNumber(text, form.maxLow());
  if (!low || !text.empty()) return {};
  const std::uint64_t value = *high << form.lowBits | *low;
  if (form.zeroIsNull && value == 0) return {};
  return value;
}

std::string pairExpected(const PairForm& form) {
  std::string text = std::string(form.name) + ", from 0." + (form.zeroIsNull ? "1" : "0") + " to ";
  return text + std::to_string(form.maxHigh) + "." + std::to_string(form.maxLow());
}

Lumo::String pairText(const PairForm& form, std::uint64_t value) {
  return std::to_string(value >> form.lowBits) + "." + std::to_string(value & form.maxLow());
}

/// The prefix that was probably meant by an address with host bits; empty for no such text.
template <class Address>
std::string cutPrefix(std::string_view text) {
  const auto parsed = Kesh::AddrWithMask<Address>::parse(text);
  if (!parsed) return {};
  const Kesh::BasicPrefix<Address> prefix(parsed->address(), parsed->len());
  return "\"" + prefix.stringValue().str() + "\"";
}

std::string orElse(std::string text, const char* otherwise) {
  return text.empty() ? otherwise : std::move(text);
}

} // namespace

std::optional<std::uint64_t> parseNumber(std::string_view text, std::uint64_t max) {
  const auto value = takeNumber(text, max);
  return text.empty() ? value : std::nullopt;
}

std::string Text<Kesh::Prefix>::expected(std::string_view text) {
  return orElse(cutPrefix<Kesh::IpAddr>(text), "an IPv4 prefix");
}

std::string Text<Kesh::Ip6Prefix>::expected(std::string_view text) {
  return orElse(cutPrefix<Kesh::Ip6Addr>(text), "an IPv6 prefix");
}

std::optional<Kesh::IpGenPrefix> Text<Kesh::IpGenPrefix>::parse(std::string_view text) {
  const Kesh::IpGenPrefix prefix{Lumo::String(text)};
  if (prefix.af() == Kesh::AddressFamily::unset) return {};
  return prefix;
}

std::string Text<Kesh::IpGenPrefix>::expected(std::string_view text) {
  return orElse(cutPrefix<Kesh::IpAddr>(text) + cutPrefix<Kesh::Ip6Addr>(text),
                "an IPv4 or IPv6 prefix");
}

std::optional<Kesh::IntfId> Text<Kesh::IntfId>::parse(std::string_view text) {
  if (text.empty()) return {};
  try {
    return Kesh::IntfId(Lumo::String(text));
  } catch (const Lumo::RangeException&) { // another name has the same identifier
    return {};
  }
}

using FecId = Vanta::Fib::FecId;

std::optional<FecId> Text<FecId>::parse(std::string_view text) {
  const auto value = parsePair(fecForm, text);
  return value ? std::optional(FecId(*value)) : std::nullopt;
}
std::string Text<FecId>::expected(std::string_view) { return pairExpected(fecForm); }
Lumo::String Text<FecId>::write(const FecId& id) { return pairText(fecForm, id.value()); }

using Tunnel::TunnelTable::TunnelId;

std::optional<TunnelId> Text<TunnelId>::parse(std::string_view text) {
  const auto value = parsePair(tunnelForm, text);
  return value ? std::optional(TunnelId(*value)) : std::nullopt;
}
std::string Text<TunnelId>::expected(std::string_view) { return pairExpected(tunnelForm); }
Lumo::String Text<TunnelId>::write(const TunnelId& id) { return pairText(tunnelForm, id.value()); }

using Tunnel::TunnelTable::EncapId;

std::optional<EncapId> Text<EncapId>::parse(std::string_view text) {
  const auto value = parsePair(encapForm, text);
  if (!value) return {};
  return EncapId(static_cast<std::uint32_t>(*value));
}
std::string Text<EncapId>::expected(std::string_view) { return pairExpected(encapForm); }
Lumo::String Text<EncapId>::write(const EncapId& id) { return pairText(encapForm, id.value()); }

using Gaugex::CounterIndex;

std::optional<CounterIndex> Text<CounterIndex>::parse(std::string_view text) {
  const auto index = Text<std::uint64_t>::parse(text);
  return index ? std::optional(CounterIndex(*index)) : std::nullopt;
}

using CounterKey = Routing::NexthopGroup::NexthopGroupEntryCounterKey;

std::optional<CounterKey> Text<CounterKey>::parse(std::string_view text) {
  const auto value = parsePair(counterKeyForm, text);
  if (!value) return {};
  return CounterKey{static_cast<std::uint32_t>(*value >> 32), static_cast<std::uint32_t>(*value)};
}
std::string Text<CounterKey>::expected(std::string_view) { return pairExpected(counterKeyForm); }
Lumo::String Text<CounterKey>::write(const CounterKey& key) {
  return pairText(counterKeyForm, std::uint64_t{key.nhgId} << 32 | key.entryIndex);
}

std::optional<L3::VrfName> Text<L3::VrfName>::parse(std::string_view text) {
  if (text.empty() || text.size() > L3::VrfName::maxLength) return {};
  return L3::VrfName(Lumo::String(text));
}

} // namespace sources::snapshot
