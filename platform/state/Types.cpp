// The attribute tables of the state's records.
#include "state/TypeNames.h"

namespace Vanta {
template <>
LUMO_DEFINE_TYPE(Fib::Route);
template <>
LUMO_DEFINE_TYPE(Fib6::Route);
} // namespace Vanta

namespace Routing {
LUMO_DEFINE_TYPE(RouteKey);
LUMO_DEFINE_TYPE(Via);
LUMO_DEFINE_TYPE(Route);
LUMO_DEFINE_TYPE(RouteList);
LUMO_DEFINE_TYPE(ConfigGen);
LUMO_DEFINE_TYPE(RouteInput);
LUMO_DEFINE_TYPE(NexthopGroup::NexthopGroupConfigEntry);
} // namespace Routing

namespace SrTePolicy {
LUMO_DEFINE_TYPE(EndPoint);
LUMO_DEFINE_TYPE(PolicyKey);
} // namespace SrTePolicy

namespace Tunnel::TunnelTable {
LUMO_DEFINE_TYPE(Via);
LUMO_DEFINE_TYPE(TunnelVia);
LUMO_DEFINE_TYPE(EvpnVxlanTunnelEntry);
} // namespace Tunnel::TunnelTable
