#include "rova/core/DirectlyConnected.h"

namespace Rova {

bool isHostRoute(const Kesh::IpGenPrefix& prefix) {
  switch (prefix.af()) {
  case Kesh::AddressFamily::ip4:
    return prefix.len() == Kesh::Prefix::maxLength;
  case Kesh::AddressFamily::ip6:
    return prefix.len() == Kesh::Ip6Prefix::maxLength;
  case Kesh::AddressFamily::unset:
    break;
  }
  return false;
}

bool isDirectlyConnected(const Kesh::IpGenPrefix& prefix, std::string_view nexthop) {
  if (nexthop == "::" || nexthop == "0.0.0.0") return true;
  if (nexthop.empty() || !isHostRoute(prefix)) return false;
  char text[Kesh::maxAddressText];
  return nexthop == std::string_view(text, prefix.address().writeText(text));
}

} // namespace Rova
