#include "sources/kernel/Hop.h"

#include <arpa/inet.h>
#include <linux/lwtunnel.h>
#include <linux/mpls.h>
#include <linux/mpls_iptunnel.h>

namespace sources::kernel {

std::uint32_t Encapsulation::outermostLabel() const {
  std::uint32_t label = Kesh::MplsLabel::null;
  if (kind != LWTUNNEL_ENCAP_MPLS) return label;
  forEachAttribute(data, [&](unsigned type, Bytes value) {
    const auto entry = readRecord<mpls_label>(value);
    if (type == MPLS_IPTUNNEL_DST && entry) label = ntohl(entry->entry) >> MPLS_LS_LABEL_SHIFT;
  });
  return label;
}

} // namespace sources::kernel
