#include "rova/staticroute/StaticRouteTypes.h"

namespace Rova {

LUMO_DEFINE_TYPE(RovaConsts);
LUMO_DEFINE_TYPE(RouteSortKey);
LUMO_DEFINE_TYPE(NexthopInfo);

bool operator<(const RouteSortKey& a, const RouteSortKey& b) {
  const Kesh::Ip6Addr& left = a.prefix_.address().v6Addr();
  const Kesh::Ip6Addr& right = b.prefix_.address().v6Addr();
  if (left < right) return true;
  if (left != right) return false;
  const auto leftLength = static_cast<std::uint32_t>(a.prefix_.len());
  const auto rightLength = static_cast<std::uint32_t>(b.prefix_.len());
  if (leftLength != rightLength) return leftLength < rightLength;
  return a.preference_ < b.preference_;
}

} // namespace Rova
