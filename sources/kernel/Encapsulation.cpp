#include "sources/kernel/Encapsulation.h"

#include "sources/kernel/Addresses.h"

#include <arpa/inet.h>
#include <linux/lwtunnel.h>
#include <linux/mpls.h>
#include <linux/mpls_iptunnel.h>
#include <linux/seg6_iptunnel.h>

#include <array>
#include <bit>
#include <cstddef>

namespace sources::kernel {

namespace {

using Decoded = std::optional<Encapsulation>;

Bytes findAttribute(Bytes attributes, unsigned wanted) {
  Bytes found;
  forEachAttribute(attributes, [&](unsigned type, Bytes value) {
    if (type == wanted) found = value;
  });
  return found;
}

Decoded decodeLabels(Bytes data) {
  Bytes entries = findAttribute(data, MPLS_IPTUNNEL_DST);
  LabelStack stack;
  while (const auto entry = readRecord<mpls_label>(entries)) {
    if (stack.stackSize() > Kesh::MplsStackEntryIndex::max) break;
    stack.labelAppend(Kesh::MplsLabel(ntohl(entry->entry) >> MPLS_LS_LABEL_SHIFT));
    entries = entries.subspan(sizeof *entry);
  }
  if (stack.stackSize() == 0) return {};
  stack.operationIs(Kesh::LabelAction::push);
  return stack;
}

constexpr std::uint8_t segmentRoutingType = 4; // of a routing header, RFC 8754
constexpr std::size_t segmentBytes = 16;

/// The segments as they stand in the header, the last one of the travel first. The header counts
/// its own length in units of 8 bytes behind the first 8.
Bytes storedSegments(Bytes routingHeader) {
  const auto header = readRecord<std::array<std::uint8_t, sizeof(ipv6_sr_hdr)>>(routingHeader);
  if (!header || (*header)[offsetof(ipv6_sr_hdr, type)] != segmentRoutingType) return {};
  const std::size_t last = (*header)[offsetof(ipv6_sr_hdr, first_segment)]; // the highest index
  const std::size_t units = (*header)[offsetof(ipv6_sr_hdr, hdrlen)];
  const std::size_t size = (last + 1) * segmentBytes;
  const Bytes rest = routingHeader.subspan(sizeof *header);
  if (size > units * 8 || units * 8 > rest.size()) return {};
  return rest.first(size);
}

Decoded decodeSegments(Bytes data) {
  const Bytes value = findAttribute(data, SEG6_IPTUNNEL_SRH);
  const auto mode = readRecord<std::int32_t>(value);
  if (!mode) return {};
  Bytes stored = storedSegments(value.subspan(sizeof *mode));
  // Inline, the first place is kept free for the packet's own destination.
  if (*mode == SEG6_IPTUN_MODE_INLINE && !stored.empty()) stored = stored.subspan(segmentBytes);
  Segments segments;
  for (; !stored.empty(); stored = stored.first(stored.size() - segmentBytes)) {
    segments.push_back(Kesh::Ip6Addr::fromBytes(stored.last(segmentBytes).data()));
  }
  if (segments.empty()) return {};
  return segments;
}

static_assert(LWTUNNEL_IP_ID == int{LWTUNNEL_IP6_ID} && LWTUNNEL_IP_DST == int{LWTUNNEL_IP6_DST});

// A VXLAN header has room for the lower 24 bits of the identifier, and the kernel sends those.
constexpr std::uint32_t vniMask = 0xffffff;

std::uint32_t vniOf(Bytes identifier) {
  const auto bigEndian = readRecord<std::uint64_t>(identifier);
  static_assert(std::endian::native == std::endian::little);
  return bigEndian ? static_cast<std::uint32_t>(__builtin_bswap64(*bigEndian)) & vniMask : 0;
}

template <unsigned family>
Decoded decodeRemoteEnd(Bytes data) {
  const auto address = readAddress(family, findAttribute(data, LWTUNNEL_IP_DST));
  if (address.isAddrZero()) return {};
  return RemoteEnd{address, vniOf(findAttribute(data, LWTUNNEL_IP_ID))};
}

struct Decoder {
  std::uint16_t kind;
  Decoded (*decode)(Bytes data);
};
constexpr Decoder decoders[] = {
    {LWTUNNEL_ENCAP_MPLS, decodeLabels},
    {LWTUNNEL_ENCAP_SEG6, decodeSegments},
    {LWTUNNEL_ENCAP_IP, decodeRemoteEnd<AF_INET>},
    {LWTUNNEL_ENCAP_IP6, decodeRemoteEnd<AF_INET6>},
};

} // namespace

std::uint32_t Encapsulations::enter(Encapsulation encapsulation) {
  const auto next = static_cast<std::uint32_t>(numbers_.size() + 1);
  return numbers_.try_emplace(std::move(encapsulation), next).first->second;
}

std::vector<const Encapsulation*> Encapsulations::byNumber() const {
  std::vector<const Encapsulation*> out(numbers_.size() + 1);
  for (const auto& [encapsulation, number] : numbers_) out[number] = &encapsulation;
  return out;
}

void EncapsulationAttributes::fill(Hop& hop, Encapsulations& encapsulations) const {
  for (const Decoder& decoder : decoders) {
    if (decoder.kind != kind) continue;
    Decoded decoded = decoder.decode(data);
    if (!decoded) return;
    const auto* const stack = std::get_if<LabelStack>(&*decoded);
    if (stack && stack->stackSize() == 1) {
      hop.label = stack->label(Kesh::MplsStackEntryIndex(0)).value();
    } else {
      hop.encapsulation = encapsulations.enter(std::move(*decoded));
    }
  }
}

} // namespace sources::kernel
