#include "rova/route/RouteTypeStrings.h"

namespace Rova {

Lumo::String legendOf(Routing::Fib::RouteType) {
  return "Codes: C - connected, S - static, K - kernel, \n"
         "       O - OSPF, IA - OSPF inter area, E1 - OSPF external type 1,\n"
         "       E2 - OSPF external type 2, N1 - OSPF NSSA external type 1,\n"
         "       N2 - OSPF NSSA external type2, B I - iBGP, B E - eBGP,\n"
         "       R - RIP, I L1 - IS-IS level 1, I L2 - IS-IS level 2,\n"
         "       O3 - OSPFv3, A B - BGP Aggregate, A O - OSPF Summary,\n"
         "       NG - Nexthop Group Static Route, V - VXLAN Control Service,\n"
         "       DH - DHCP client installed default route, M - Martian,\n"
         "       DP - Dynamic Policy Route, L - VRF Leaked\n";
}

Lumo::String legendOf(Routing6::Fib::RouteType) {
  return "Codes: C - connected, S - static, K - kernel, O3 - OSPFv3,"
         " B - BGP, R - RIP, A B - BGP Aggregate,"
         " I L1 - IS-IS level 1, I L2 - IS-IS level 2, DH - DHCP,"
         " NG - Nexthop Group Static Route, M - Martian,"
         " DP - Dynamic Policy Route, L - VRF Leaked\n";
}

Lumo::String hostLegendOf(Routing::Fib::RouteType) {
  return "R - receive, B - broadcast, F - FIB, A - attached, D - directed broadcast\n";
}

Lumo::String hostLegendOf(Routing6::Fib::RouteType) {
  return "R - receive, F - FIB, A - attached\n";
}

} // namespace Rova
