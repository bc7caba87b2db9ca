// Reading netlink bytes without trust in any length: bytes behind the end of a message are never
// read, whatever the message says of itself.
#pragma once

#include <linux/netlink.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <type_traits>

namespace sources::kernel {

using Bytes = std::span<const std::byte>;

/// The record at the start of `bytes`; nothing when there are too few of them.
template <class Record>
std::optional<Record> readRecord(Bytes bytes) {
  static_assert(std::is_trivially_copyable_v<Record>);
  if (bytes.size() < sizeof(Record)) return {};
  Record record;
  std::memcpy(&record, bytes.data(), sizeof record);
  return record;
}

/// What stands behind `length` bytes and their padding to netlink's 4-byte units.
inline Bytes behind(Bytes bytes, std::size_t length) {
  const std::size_t padded = (length + NLA_ALIGNTO - 1) & ~std::size_t{NLA_ALIGNTO - 1};
  return padded < bytes.size() ? bytes.subspan(padded) : Bytes();
}

/// Calls `visit(type, payload)` for each attribute. Ends at one that is shorter than its own header
/// or longer than what is left: where the next would begin is unknown.
template <class Visit>
void forEachAttribute(Bytes bytes, Visit&& visit) {
  while (const auto header = readRecord<nlattr>(bytes)) {
    if (header->nla_len < NLA_HDRLEN || header->nla_len > bytes.size()) return;
    visit(header->nla_type & NLA_TYPE_MASK, bytes.first(header->nla_len).subspan(NLA_HDRLEN));
    bytes = behind(bytes, header->nla_len);
  }
}

/// Calls `visit(header, payload)` for each message of a datagram, with the same care. libmnl's own
/// walk takes a length of 2 GiB and more for a negative number and accepts it.
template <class Visit>
void forEachMessage(Bytes datagram, Visit&& visit) {
  while (const auto header = readRecord<nlmsghdr>(datagram)) {
    if (header->nlmsg_len < sizeof *header || header->nlmsg_len > datagram.size()) break;
    const Bytes payload = datagram.first(header->nlmsg_len).subspan(sizeof *header);
    datagram = behind(datagram, header->nlmsg_len);
    visit(*header, payload);
  }
}

/// Sets `out` from a payload of at least its size, else leaves it alone.
template <class Record>
void take(Bytes payload, Record& out) {
  if (const auto record = readRecord<Record>(payload)) out = *record;
}

/// The text of a payload up to its NUL or its end.
inline std::string textOf(Bytes payload) {
  const auto* const text = reinterpret_cast<const char*>(payload.data());
  return payload.empty() ? std::string() : std::string(text, strnlen(text, payload.size()));
}

} // namespace sources::kernel
