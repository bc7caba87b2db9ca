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

std::ostream& operator<<(std::ostream& out, const RovaConsts& consts) {
  return out << Lumo::valueToStrep(consts);
}
std::ostream& operator<<(std::ostream& out, const RouteSortKey& key) {
  return out << Lumo::valueToStrep(key);
}
std::ostream& operator<<(std::ostream& out, const NexthopInfo& info) {
  return out << Lumo::valueToStrep(info);
}

} // namespace Rova
