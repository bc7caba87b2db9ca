// The vocabulary of route types, written down apart from the code.
#pragma once

#include "rova/CliSupport.h"

#include <cstdint>

namespace support {

struct RouteTypeRow {
  std::uint32_t number;
  const char* pcode;
  const char* pcodeWord;
  const char* protocolCode;
  const char* summaryWord;
};

/// Every type that has texts, in the order of the numbers.
template <class RouteType>
inline constexpr RouteTypeRow routeTypeRows[] = {
    {0, "", "", "", ""},
    {1, "C", "connected", "C", "internal"},
    {2, "C", "connected", "C", "internal"},
    {3, "C", "connected", "C", "internal"},
    {4, "C", "connected", "C", "internal"},
    {5, "", "", "", "attached"},
    {7, "S", "static", "S", "static"},
    {8, "V", "vcs", "V", "vcs"},
    {9, "K", "kernel", "K", "internal"},
    {10, "R", "RIP", "R", "rip"},
    {11, "C", "connected", "C", "connected"},
    {12, "", "", "", ""},
    {13, "A B", "bgpAggregate", "A", "aggregate"},
    {14, "A O", "ospfSummary", "A", "aggregate"},
    {15, "O", "OSPF", "O", "ospfIntraArea"},
    {16, "O IA", "ospfInterArea", "O", "ospfInterArea"},
    {17, "O E1", "ospfExternalType1", "O", "ospfExternal1"},
    {18, "O E2", "ospfExternalType2", "O", "ospfExternal2"},
    {19, "O N1", "ospfNssaExternalType1", "O", "nssaExternal1"},
    {20, "O N2", "ospfNssaExternalType2", "O", "nssaExternal2"},
    {21, "B I", "iBGP", "B", "bgpInternal"},
    {22, "B E", "eBGP", "B", "bgpExternal"},
    {23, "I L1", "ISISLevel1", "I", "isisLevel1"},
    {24, "I L2", "ISISLevel2", "I", "isisLevel2"},
    {25, "NG", "nexthopGroupStaticRoute", "S", "staticNexthopGroup"},
    {26, "S", "dropRoute", "S", "internal"},
    {27, "O3", "OSPFv3", "O3", "ospfv3Total"},
    {28, "O3", "OSPFv3", "O3", "ospfv3Total"},
    {29, "O3", "OSPFv3", "O3", "ospfv3Total"},
    {30, "O3", "OSPFv3", "O3", "ospfv3Total"},
    {31, "O3", "OSPFv3", "O3", "ospfv3Total"},
    {32, "DH", "dhcp", "DH", "DhcpDefaultRoute"},
    {33, "M", "martian", "M", "internal"},
    {34, "DP", "dynamicPolicy", "DP", "dynamicPolicy"},
    {36, "", "", "", ""},
};

template <>
inline constexpr RouteTypeRow routeTypeRows<Routing6::Fib::RouteType>[] = {
    {0, "", "", "", ""},
    {1, "C", "connected", "C", "internal"},
    {2, "C", "connected", "C", "internal"},
    {3, "", "", "", "attached"},
    {4, "S", "static", "S", "static"},
    {5, "K", "kernel", "K", "internal"},
    {6, "R", "RIP", "R", ""},
    {7, "C", "connected", "C", "connected"},
    {8, "", "", "", ""},
    {9, "A B", "bgpAggregate", "A", "aggregate"},
    {10, "A O", "ospfSummary", "A", "aggregate"},
    {11, "O3", "ospf", "O3", "ospfTotal"},
    {12, "B", "bgp", "B", "bgpTotal"},
    {13, "I L1", "isisL1", "I", "isisLevel1"},
    {14, "I L2", "isisL2", "I", "isisLevel2"},
    {15, "NG", "nexthopGroupStaticRoute", "S", "staticNexthopGroup"},
    {16, "S", "dropRoute", "S", "internal"},
    {17, "DH", "dhcp", "DH", "dhcp"},
    {18, "M", "martian", "M", "internal"},
    {19, "DP", "dynamicPolicy", "DP", "dynamicPolicy"},
    {21, "", "", "", ""},
};

} // namespace support
