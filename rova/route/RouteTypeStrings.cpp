#include "rova/route/RouteTypeStrings.h"

#include "lumo/Assert.h"

#include <array>
#include <cstring>

namespace Rova {

namespace {

using V4 = Routing::Fib::RouteType;
using V6 = Routing6::Fib::RouteType;

template <class RouteType>
struct Row {
  RouteType type;
  RouteTypeStrings strings;
};

// By ascending number: Rova_protocolCodeWordToCode takes the first row that fits.
constexpr Row<V4> rows4[] = {
    {V4::invalid, {"", "", "", ""}},
    {V4::receive, {"C", "connected", "C", "internal"}},
    {V4::receiveAll, {"C", "connected", "C", "internal"}},
    {V4::receiveBroadcast, {"C", "connected", "C", "internal"}},
    {V4::receiveDirectedBroadcast, {"C", "connected", "C", "internal"}},
    {V4::attached, {"", "", "", "attached"}},
    {V4::staticRoute, {"S", "static", "S", "static"}},
    {V4::vcs, {"V", "vcs", "V", "vcs"}},
    {V4::kernel, {"K", "kernel", "K", "internal"}},
    {V4::rip, {"R", "RIP", "R", "rip"}},
    {V4::connected, {"C", "connected", "C", "connected"}},
    {V4::unresolved, {"", "", "", ""}},
    {V4::bgpAggregate, {"A B", "bgpAggregate", "A", "aggregate"}},
    {V4::ospfSummary, {"A O", "ospfSummary", "A", "aggregate"}},
    {V4::ospfIntraArea, {"O", "OSPF", "O", "ospfIntraArea"}},
    {V4::ospfInterArea, {"O IA", "ospfInterArea", "O", "ospfInterArea"}},
    {V4::ospfExternal1, {"O E1", "ospfExternalType1", "O", "ospfExternal1"}},
    {V4::ospfExternal2, {"O E2", "ospfExternalType2", "O", "ospfExternal2"}},
    {V4::ospfNssaExternal1, {"O N1", "ospfNssaExternalType1", "O", "nssaExternal1"}},
    {V4::ospfNssaExternal2, {"O N2", "ospfNssaExternalType2", "O", "nssaExternal2"}},
    {V4::bgpInternal, {"B I", "iBGP", "B", "bgpInternal"}},
    {V4::bgpExternal, {"B E", "eBGP", "B", "bgpExternal"}},
    {V4::isisLevel1, {"I L1", "ISISLevel1", "I", "isisLevel1"}},
    {V4::isisLevel2, {"I L2", "ISISLevel2", "I", "isisLevel2"}},
    {V4::nexthopGroup, {"NG", "nexthopGroupStaticRoute", "S", "staticNexthopGroup"}},
    {V4::drop, {"S", "dropRoute", "S", "internal"}},
    {V4::ospf3IntraArea, {"O3", "OSPFv3", "O3", "ospfv3Total"}},
    {V4::ospf3InterArea, {"O3", "OSPFv3", "O3", "ospfv3Total"}},
    {V4::ospf3External1, {"O3", "OSPFv3", "O3", "ospfv3Total"}},
    {V4::ospf3External2, {"O3", "OSPFv3", "O3", "ospfv3Total"}},
    {V4::ospf3Nssa, {"O3", "OSPFv3", "O3", "ospfv3Total"}},
    {V4::dhcp, {"DH", "dhcp", "DH", "DhcpDefaultRoute"}},
    {V4::martian, {"M", "martian", "M", "internal"}},
    {V4::dynamicPolicy, {"DP", "dynamicPolicy", "DP", "dynamicPolicy"}},
    {V4::reserved, {"", "", "", ""}},
};

constexpr Row<V6> rows6[] = {
    {V6::invalid, {"", "", "", ""}},
    {V6::receive, {"C", "connected", "C", "internal"}},
    {V6::receiveAll, {"C", "connected", "C", "internal"}},
    {V6::attached, {"", "", "", "attached"}},
    {V6::staticRoute, {"S", "static", "S", "static"}},
    {V6::kernel, {"K", "kernel", "K", "internal"}},
    {V6::rip, {"R", "RIP", "R", ""}},
    {V6::connected, {"C", "connected", "C", "connected"}},
    {V6::unresolved, {"", "", "", ""}},
    {V6::bgpAggregate, {"A B", "bgpAggregate", "A", "aggregate"}},
    {V6::ospfSummary, {"A O", "ospfSummary", "A", "aggregate"}},
    {V6::ospf3, {"O3", "ospf", "O3", "ospfTotal"}},
    {V6::bgp, {"B", "bgp", "B", "bgpTotal"}},
    {V6::isisLevel1, {"I L1", "isisL1", "I", "isisLevel1"}},
    {V6::isisLevel2, {"I L2", "isisL2", "I", "isisLevel2"}},
    {V6::nexthopGroup, {"NG", "nexthopGroupStaticRoute", "S", "staticNexthopGroup"}},
    {V6::drop, {"S", "dropRoute", "S", "internal"}},
    {V6::dhcp, {"DH", "dhcp", "DH", "dhcp"}},
    {V6::martian, {"M", "martian", "M", "internal"}},
    {V6::dynamicPolicy, {"DP", "dynamicPolicy", "DP", "dynamicPolicy"}},
    {V6::reserved, {"", "", "", ""}},
};

/// The rows under their numbers, so that a lookup is one step; built when the library is loaded.
template <class RouteType, std::size_t count>
class Vocabulary {
 public:
  explicit constexpr Vocabulary(const Row<RouteType> (&rows)[count]) {
    for (const auto& row : rows) byNumber_[static_cast<std::size_t>(row.type)] = &row.strings;
  }
  const RouteTypeStrings& lookup(RouteType type) const {
    const auto number = static_cast<std::size_t>(type);
    const bool known = number < byNumber_.size() && byNumber_[number];
    LUMO_ASSERT(known, "0 && \"unexpected RouteType\"");
    return *byNumber_[number];
  }

 private:
  std::array<const RouteTypeStrings*, 40> byNumber_{};
};
constinit const Vocabulary vocabulary4(rows4);
constinit const Vocabulary vocabulary6(rows6);

/// A host table code with its word.
struct HostCode {
  char code;
  const char* word;
};
constexpr HostCode fib{'F', "FIB"};

HostCode hostCode(V4 type) {
  switch (type) {
  case V4::invalid:
    return {'-', "-"};
  case V4::attached:
    return {'A', "attached"};
  case V4::receive:
  case V4::receiveAll:
    return {'R', "receive"};
  case V4::receiveBroadcast:
    return {'B', "broadcast"};
  case V4::receiveDirectedBroadcast:
    return {'D', "directedBcast"};
  case V4::connected:
    return {'R', "FIB"}; // the code of a receive route, the word of any other
  default:
    return fib;
  }
}

HostCode hostCode(V6 type) {
  switch (type) {
  case V6::invalid:
    return {'-', "-"};
  case V6::attached:
    return {'A', "attached"};
  case V6::receive:
  case V6::receiveAll:
    return {'R', "receive"};
  case V6::connected:
    return {'R', "FIB"};
  default:
    return fib;
  }
}

struct Action {
  const char* word;
  const char* code;
};
constexpr Action actions[] = {{"forward", "F"}, {"drop", "D"}, {"nexthopGroup", "NG"}};

const Action& actionOf(Routing::RouteType type) {
  const auto number = static_cast<std::size_t>(type);
  LUMO_ASSERT(number < std::size(actions), "!\"Invalid Routing::RouteType argument\"");
  return actions[number];
}

} // namespace

const RouteTypeStrings& routeTypeStringsLookup(V4 type) { return vocabulary4.lookup(type); }
const RouteTypeStrings& routeTypeStringsLookup(V6 type) { return vocabulary6.lookup(type); }

char hcode(V4 type) { return hostCode(type).code; }
char hcode(V6 type) { return hostCode(type).code; }
const char* hcodeWord(V4 type) { return hostCode(type).word; }
const char* hcodeWord(V6 type) { return hostCode(type).word; }

const char* ribRouteType(Routing::RouteType type) { return actionOf(type).word; }
const char* ribRouteTypeCode(Routing::RouteType type) { return actionOf(type).code; }

} // namespace Rova

const char* Rova_protocolCodeWordToCode(const char* word) {
  for (const auto& row : Rova::rows4) {
    const std::string_view rowWord = row.strings.pcodeWord;
    if (!rowWord.empty() && std::strncmp(rowWord.data(), word, rowWord.size()) == 0) {
      return row.strings.pcode;
    }
  }
  LUMO_ASSERT(false, "0 && \"Invalid string\"");
}
