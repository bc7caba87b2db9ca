#include "kesh/IntfId.h"

#include "lumo/Exception.h"

#include <array>
#include <charconv>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace Kesh {

namespace {

constexpr unsigned managementFamily = 0x12;
constexpr unsigned tunnelFamily = 0x14;
constexpr unsigned dynamicTunnelFamily = 0x40;
constexpr unsigned fecFamily = 0x41;
constexpr unsigned nexthopGroupFamily = 0x42;
constexpr std::uint64_t numberMask = 0x00ffffffffffffffull;

constexpr IntfId make(unsigned family, std::uint64_t number) {
  return IntfId::fromValue(std::uint64_t{family} << 56 | (number & numberMask));
}

/// Reads a decimal number in its one canonical form and moves `text` behind it.
std::optional<std::uint64_t> takeNumber(std::string_view& text, std::uint64_t max) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const auto length = static_cast<std::size_t>(end - text.data());
  if (error != std::errc() || value > max || (length > 1 && text[0] == '0')) return {};
  text.remove_prefix(length);
  return value;
}

bool take(std::string_view& text, char c) {
  if (text.empty() || text[0] != c) return false;
  text.remove_prefix(1);
  return true;
}

// The parts of a hardware port's number: where each stands, and the character before it in a name.
struct Part {
  unsigned shift;
  std::uint64_t mask;
  char separator;
};
constexpr Part parts[] = {{36, 0xfffff, '\0'}, {24, 0xfff, '/'}, {12, 0xfff, '/'}, {0, 0xfff, '.'}};

std::optional<std::uint64_t> parsePort(std::string_view text) {
  std::uint64_t number = 0;
  for (const Part& part : parts) {
    if (part.separator && !take(text, part.separator)) continue;
    const auto value = takeNumber(text, part.mask - 1);
    if (!value) return {};
    number |= (*value + 1) << part.shift;
  }
  return text.empty() ? std::optional(number) : std::nullopt;
}

void writePort(std::string& out, std::uint64_t number) {
  for (const Part& part : parts) {
    const auto value = number >> part.shift & part.mask;
    if (!value) continue;
    if (part.separator) out += part.separator;
    out += std::to_string(value - 1);
  }
}

/// Two numbers with a point between, the first in the bits from `Shift` up.
template <unsigned Shift, std::uint64_t MaxHigh>
std::optional<std::uint64_t> parsePair(std::string_view text) {
  const auto high = takeNumber(text, MaxHigh);
  if (!high || !take(text, '.')) return {};
  const auto low = takeNumber(text, (std::uint64_t{1} << Shift) - 1);
  if (!low || !text.empty()) return {};
  return *high << Shift | *low;
}

template <unsigned Shift>
void writePair(std::string& out, std::uint64_t number) {
  out += std::to_string(number >> Shift) + "." +
         std::to_string(number & ((std::uint64_t{1} << Shift) - 1));
}

std::optional<std::uint64_t> parseGroup(std::string_view text) {
  const auto id = takeNumber(text, 0xffffffffu);
  return text.empty() ? id : std::nullopt;
}

void writeGroup(std::string& out, std::uint64_t number) { out += std::to_string(number); }

struct Family {
  unsigned code;
  std::string_view name;
  std::optional<std::uint64_t> (*parse)(std::string_view text);
  void (*write)(std::string& out, std::uint64_t number);
};
constexpr Family families[] = {
    {0x10, "Ethernet", parsePort, writePort},
    {0x11, "Loopback", parsePort, writePort},
    {managementFamily, "Management", parsePort, writePort},
    {0x13, "Port-Channel", parsePort, writePort},
    {tunnelFamily, "Tunnel", parsePort, writePort},
    {0x15, "Vlan", parsePort, writePort},
    {dynamicTunnelFamily, "DynamicTunnel:", parsePair<44, 0xf>, writePair<44>},
    {fecFamily, "Fec:", parsePair<48, 0xff>, writePair<48>},
    {nexthopGroupFamily, "NexthopGroup:", parseGroup, writeGroup},
};

std::optional<IntfId> parseKnown(std::string_view name) {
  for (const Family& family : families) {
    if (!name.starts_with(family.name)) continue;
    if (const auto number = family.parse(name.substr(family.name.size()))) {
      return make(family.code, *number);
    }
  }
  return {};
}

/// What stands before the number of an identifier whose name nobody knows.
constexpr std::string_view numberText = "Intf#";

/// FNV-1a, 64 bits, folded to the 56 that an identifier has for it.
std::uint64_t nameNumber(std::string_view name) {
  std::uint64_t hash = 0xcbf29ce484222325ull;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3ull;
  return (hash ^ hash >> 56) & numberMask;
}

/// The names behind the hashed identifiers that this process has seen.
class NameTable {
 public:
  static NameTable& shared() {
    static auto* const table = new NameTable; // identifiers may be printed while the process ends
    return *table;
  }

  void enter(std::uint64_t number, const Lumo::String& name) {
    const std::lock_guard guard(mutex_);
    const auto [it, inserted] = names_.try_emplace(number, name);
    if (!inserted && !(it->second == name)) {
      throw Lumo::RangeException("interface names " + it->second.str() + " and " + name.str() +
                                 " have the same identifier: rename one of them");
    }
  }

  Lumo::String name(std::uint64_t number) {
    const std::lock_guard guard(mutex_);
    const auto it = names_.find(number);
    return it == names_.end() ? Lumo::String() : it->second;
  }

 private:
  std::mutex mutex_;
  std::unordered_map<std::uint64_t, Lumo::String> names_;
};

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Cuts the leading run of digits (leading zeros dropped) or of other characters.
std::string_view takeRun(std::string_view& text, bool digits) {
  std::size_t length = 0;
  while (length < text.size() && isDigit(text[length]) == digits) ++length;
  auto run = text.substr(0, length);
  text.remove_prefix(length);
  while (digits && run.size() > 1 && run[0] == '0') run.remove_prefix(1);
  return run;
}

} // namespace

bool naturalLess(std::string_view a, std::string_view b) {
  const auto wholeA = a, wholeB = b;
  while (!a.empty() && !b.empty()) {
    const bool digits = isDigit(a[0]) && isDigit(b[0]);
    if (!digits && isDigit(a[0]) != isDigit(b[0])) return a[0] < b[0];
    const auto runA = takeRun(a, digits), runB = takeRun(b, digits);
    if (digits && runA.size() != runB.size()) return runA.size() < runB.size();
    if (runA != runB) return runA < runB;
  }
  if (a.empty() != b.empty()) return a.empty();
  return wholeA < wholeB;
}

IntfId::IntfId(const Lumo::String& name) {
  if (name.empty()) return;
  if (const auto known = parseKnown(name)) {
    *this = *known;
    return;
  }
  const auto number = nameNumber(name);
  NameTable::shared().enter(number, name);
  *this = make(namedFamily, number);
}

std::optional<IntfId> IntfId::parse(std::string_view text) {
  if (text.starts_with(numberText)) {
    const auto digits = text.substr(numberText.size());
    std::uint64_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    const auto id = fromValue(value);
    if (error == std::errc() && id.stringValue() == text) return id;
  }
  return IntfId(Lumo::String(text));
}

Lumo::String IntfId::stringValue() const {
  if (!*this) return {};
  for (const Family& known : families) {
    if (known.code != family()) continue;
    std::string text(known.name);
    known.write(text, number());
    return Lumo::String(text);
  }
  if (family() == namedFamily) {
    if (auto name = NameTable::shared().name(number()); !name.empty()) return name;
  }
  char digits[17];
  const auto end = std::to_chars(digits, digits + sizeof digits, value(), 16).ptr;
  return Lumo::String(std::string(numberText) + std::string(digits, end));
}

bool IntfId::lessByName(const IntfId& a, const IntfId& b) {
  if (a == b) return false;
  const auto nameA = a.stringValue(), nameB = b.stringValue();
  return naturalLess(nameA, nameB);
}

bool MgmtIntfId::isMgmtIntfId(const IntfId& id) { return id.family() == managementFamily; }

bool TunnelIntfId::isTunnelIntfId(const IntfId& id) { return id.family() == tunnelFamily; }
std::uint32_t TunnelIntfId::port(const IntfId& id) {
  const auto stored = static_cast<std::uint32_t>(id.number() >> parts[0].shift & parts[0].mask);
  return stored ? stored - 1 : 0;
}

bool DynamicTunnelIntfId::isDynamicTunnelIntfId(const IntfId& id) {
  return id.family() == dynamicTunnelFamily;
}
std::uint64_t DynamicTunnelIntfId::tunnelId(const IntfId& id) { return id.number(); }
IntfId DynamicTunnelIntfId::tunnelIdToIntfId(std::uint64_t tunnelId) {
  return make(dynamicTunnelFamily, tunnelId);
}

bool NexthopGroupIntfId::isNexthopGroupIntfId(const IntfId& id) {
  return id.family() == nexthopGroupFamily;
}
std::uint32_t NexthopGroupIntfId::nexthopGroupId(const IntfId& id) {
  return isNexthopGroupIntfId(id) ? static_cast<std::uint32_t>(id.number()) : 0;
}
IntfId NexthopGroupIntfId::intfId(std::uint32_t nexthopGroupId) {
  return make(nexthopGroupFamily, nexthopGroupId);
}

bool FecIdIntfId::isFecIdIntfId(const IntfId& id) { return id.family() == fecFamily; }

std::uint64_t FecIdIntfId::fecId(const IntfId& id) {
  if (!isFecIdIntfId(id)) return 0;
  const auto number = id.number();
  return (number >> 48) << 56 | (number & 0xffffffffffffull);
}

IntfId FecIdIntfId::intfId(std::uint64_t fecId) {
  const auto low = fecId & numberMask;
  if (fecId == 0 || low > 0xffffffffffffull) return {};
  return make(fecFamily, (fecId >> 56) << 48 | low);
}

} // namespace Kesh
