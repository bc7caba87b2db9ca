#include "kesh/Address.h"

#include "kesh/TextOf.h"

#include <arpa/inet.h>
#include <charconv>

namespace Kesh {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";

/// A byte's decimal digits and how many they are.
struct ByteText {
  char digits[3];
  std::uint8_t length;
};

constexpr std::array<ByteText, 256> byteTexts = [] {
  std::array<ByteText, 256> texts{};
  for (unsigned byte = 0; byte < 256; ++byte) {
    ByteText& text = texts[byte];
    if (byte >= 100) text.digits[text.length++] = static_cast<char>('0' + byte / 100);
    if (byte >= 10) text.digits[text.length++] = static_cast<char>('0' + byte / 10 % 10);
    text.digits[text.length++] = static_cast<char>('0' + byte % 10);
  }
  return texts;
}();

/// Writes three bytes, of which those behind the text do not count.
char* writeByte(char* out, std::uint8_t byte) {
  const ByteText& text = byteTexts[byte];
  std::memcpy(out, text.digits, sizeof text.digits);
  return out + text.length;
}

char* writeDotted(char* out, const std::uint8_t* bytes) {
  for (int i = 0; i < 4; ++i) {
    if (i) *out++ = '.';
    out = writeByte(out, bytes[i]);
  }
  return out;
}

char* writeGroup(char* out, unsigned value) {
  if (value >= 0x1000) *out++ = hexDigits[value >> 12];
  if (value >= 0x100) *out++ = hexDigits[value >> 8 & 15];
  if (value >= 0x10) *out++ = hexDigits[value >> 4 & 15];
  *out++ = hexDigits[value & 15];
  return out;
}

struct Run {
  int start = -1;
  int length = 0;
};

/// The zero groups that "::" replaces: the longest run of at least two, the first of equals.
Run longestZeroRun(const unsigned (&groups)[8]) {
  Run best;
  for (int i = 0; i < 8;) {
    int end = i;
    while (end < 8 && groups[end] == 0) ++end;
    if (end - i > best.length && end - i > 1) best = {i, end - i};
    i = end + 1;
  }
  return best;
}

bool isIpv4Mapped(const std::array<std::uint8_t, 16>& bytes) {
  for (int i = 0; i < 10; ++i) {
    if (bytes[i]) return false;
  }
  return bytes[10] == 0xff && bytes[11] == 0xff;
}

/// inet_pton over a view; texts with a NUL inside or longer than any address are no addresses.
bool parseColons(std::string_view text, std::uint8_t* bytes) {
  char buffer[maxAddressText];
  if (text.size() >= sizeof buffer || text.find('\0') != text.npos) return false;
  std::memcpy(buffer, text.data(), text.size());
  buffer[text.size()] = '\0';
  return inet_pton(AF_INET6, buffer, bytes) == 1;
}

/// Reads the number of one byte, without leading zeros, and gives its end; null when there is none.
const char* parseByte(const char* begin, const char* end, std::uint8_t& byte) {
  const char* at = begin;
  unsigned value = 0;
  while (at < end && at < begin + 3 && *at >= '0' && *at <= '9') {
    value = 10 * value + static_cast<unsigned>(*at++ - '0');
  }
  byte = static_cast<std::uint8_t>(value);
  const bool isCanonical = at == begin + 1 || (at > begin && *begin != '0');
  return isCanonical && value <= 255 ? at : nullptr;
}

/// Four numbers with points between. A table has so many that inet_pton, which wants a copy of each
/// text with a NUL behind it, would take a tenth of the time of reading it.
bool parseDotted(std::string_view text, std::uint8_t* bytes) {
  const char* at = text.data();
  const char* const end = at + text.size();
  for (int i = 0; i < 4; ++i) {
    if (i && (at == end || *at++ != '.')) return false;
    at = parseByte(at, end, bytes[i]);
    if (!at) return false;
  }
  return at == end;
}

} // namespace

std::optional<IpAddr> IpAddr::parse(std::string_view text) {
  IpAddr address;
  if (!parseDotted(text, address.bytes_.data())) return {};
  return address;
}

std::size_t IpAddr::writeText(char* out) const {
  return static_cast<std::size_t>(writeDotted(out, bytes_.data()) - out);
}

Lumo::String IpAddr::stringValue() const { return textOf(*this); }
std::size_t IpAddr::hash() const { return mixHash(host()); }

std::optional<Ip6Addr> Ip6Addr::parse(std::string_view text) {
  Ip6Addr address;
  if (!parseColons(text, address.bytes_.data())) return {};
  return address;
}

std::size_t Ip6Addr::writeText(char* out) const {
  char* const begin = out;
  if (isIpv4Mapped(bytes_)) { // RFC 5952, section 5
    std::memcpy(out, "::ffff:", 7);
    return static_cast<std::size_t>(writeDotted(out + 7, bytes_.data() + 12) - begin);
  }
  unsigned groups[8];
  for (int i = 0; i < 8; ++i) groups[i] = bytes_[2 * i] << 8 | bytes_[2 * i + 1];
  const Run zeros = longestZeroRun(groups);
  for (int i = 0; i < 8; ++i) {
    if (i == zeros.start) {
      *out++ = ':';
      *out++ = ':';
      i += zeros.length - 1;
      continue;
    }
    if (i && i != zeros.start + zeros.length) *out++ = ':';
    out = writeGroup(out, groups[i]);
  }
  return static_cast<std::size_t>(out - begin);
}

Lumo::String Ip6Addr::stringValue() const { return textOf(*this); }
std::size_t Ip6Addr::hash() const { return mixHash(high() ^ mixHash(low())); }

IpGenAddr::IpGenAddr(const IpAddr& address) : af_(AddressFamily::ip4) {
  std::array<std::uint8_t, 16> bytes{};
  std::memcpy(bytes.data(), address.bytes().data(), 4);
  bytes_ = Ip6Addr::fromBytes(bytes.data());
}

std::optional<IpGenAddr> IpGenAddr::parse(std::string_view text) {
  if (const auto v4 = IpAddr::parse(text)) return IpGenAddr(*v4);
  if (const auto v6 = Ip6Addr::parse(text)) return IpGenAddr(*v6);
  return {};
}

std::size_t IpGenAddr::writeText(char* out) const {
  switch (af_) {
  case AddressFamily::ip4:
    return v4Addr().writeText(out);
  case AddressFamily::ip6:
    return bytes_.writeText(out);
  case AddressFamily::unset:
    break;
  }
  return 0;
}

Lumo::String IpGenAddr::stringValue() const { return textOf(*this); }

std::optional<EthAddr> EthAddr::parse(std::string_view text) {
  if (text.size() != 17) return {};
  EthAddr address;
  for (std::size_t i = 0; i < 6; ++i) {
    const char* const first = text.data() + 3 * i;
    const auto [end, error] = std::from_chars(first, first + 2, address.bytes_[i], 16);
    if (error != std::errc() || end != first + 2 || (i < 5 && *end != ':')) return {};
  }
  return address;
}

Lumo::String EthAddr::stringValue() const {
  char text[17];
  for (std::size_t i = 0; i < 6; ++i) {
    text[3 * i] = hexDigits[bytes_[i] >> 4];
    text[3 * i + 1] = hexDigits[bytes_[i] & 15];
    if (i < 5) text[3 * i + 2] = ':';
  }
  return Lumo::String(std::string_view(text, sizeof text));
}

} // namespace Kesh
