#include "rova/core/DirectlyConnected.h"

namespace Rova {

namespace {

int hostLength(Kesh::AddressFamily family) {
  switch (family) {
  case Kesh::AddressFamily::ip4:
    return Kesh::Prefix::maxLength;
  case Kesh::AddressFamily::ip6:
    return Kesh::Ip6Prefix::maxLength;
  case Kesh::AddressFamily::unset:
    break;
  }
  return -1;
}

} // namespace

bool isDirectlyConnected(const Kesh::IpGenPrefix& prefix, std::string_view nexthop) {
  if (nexthop == "::" || nexthop == "0.0.0.0") return true;
  if (nexthop.empty() || prefix.af() == Kesh::AddressFamily::unset) return false;
  if (prefix.len() != hostLength(prefix.af())) return false;
  char text[Kesh::maxAddressText];
  return nexthop == std::string_view(text, prefix.address().writeText(text));
}

} // namespace Rova
