// Each decoder over good messages, and over every truncation and bent byte of them.
#include "kernel/Message.h"
#include "sources/kernel/Addresses.h"
#include "sources/kernel/Links.h"
#include "sources/kernel/Neighbours.h"
#include "sources/kernel/Nexthops.h"
#include "sources/kernel/Routes.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <linux/if_addr.h>
#include <linux/if_link.h>
#include <linux/if_tunnel.h>
#include <linux/lwtunnel.h>
#include <linux/mpls_iptunnel.h>
#include <linux/neighbour.h>
#include <linux/nexthop.h>
#include <linux/rtnetlink.h>
#include <linux/seg6_iptunnel.h>

namespace kernel_test {
namespace {

using namespace sources::kernel;

std::string show(const LabelStack& stack) {
  std::string out = " stack";
  for (std::uint8_t i = 0; i < stack.stackSize(); ++i) {
    out += " " + std::to_string(stack.label(Kesh::MplsStackEntryIndex(i)).value());
  }
  return out;
}

std::string show(const Segments& segments) {
  std::string out = " segments";
  for (const auto& segment : segments) out += " " + segment.stringValue().str();
  return out;
}

std::string show(const RemoteEnd& remote) {
  return " remote " + remote.address.stringValue().str() + " vni " + std::to_string(remote.vni);
}

std::string show(const Hop& hop, const Encapsulations& encapsulations) {
  std::string out = hop.gateway.stringValue().str() + "@" + std::to_string(hop.interface);
  if (hop.weight != 1) out += " w" + std::to_string(hop.weight);
  if (hop.label != Kesh::MplsLabel::null) out += " label " + std::to_string(hop.label);
  if (const auto* const pushed = encapsulations.byNumber().at(hop.encapsulation)) {
    out += std::visit([](const auto& one) { return show(one); }, *pushed);
  }
  return hop.dead ? out + " dead" : out;
}

std::string show(const RouteMessage& route, const Encapsulations& encapsulations) {
  std::string out = route.destination.stringValue().str() + "/" + std::to_string(route.length);
  out += " table " + std::to_string(route.table) + " metric " + std::to_string(route.metric);
  if (route.nexthopId) out += " nhid " + std::to_string(route.nexthopId);
  for (const Hop& hop : route.hops) out += " | " + show(hop, encapsulations);
  return out;
}

std::string show(const Nexthop& nexthop, const Encapsulations& encapsulations) {
  std::string out = std::to_string(nexthop.id) + " " + show(nexthop.hop, encapsulations);
  if (nexthop.family == Kesh::AddressFamily::ip6) out += " IPv6";
  if (nexthop.blackhole) out += " blackhole";
  if (nexthop.linkDown) out += " linkdown";
  if (nexthop.forwardsFrames) out += " fdb";
  for (const auto& member : nexthop.group) {
    out += " +" + std::to_string(member.id) + "*" + std::to_string(member.weight);
    if (member.packets) out += "=" + std::to_string(*member.packets) + "p";
  }
  return out;
}

std::string show(const TunnelDevice& device) {
  const bool gre = device.kind == Tunnel::TunnelTable::EncapKind::gre;
  const auto& ends = device.ends;
  return std::string(gre ? " GRE " : " VTI ") + ends.source.stringValue().str() + " to " +
         ends.destination.stringValue().str() + " key " + std::to_string(ends.greKey) + " ttl " +
         std::to_string(ends.ttl) + " tos " + std::to_string(ends.tos) + " pmtu " +
         std::to_string(ends.pathMtuDiscovery);
}

std::string show(const Link& link) {
  std::string out = std::to_string(link.index) + " " + link.name + " \"" + link.alias +
                    "\" master " + std::to_string(link.master) + " table " +
                    std::to_string(link.vrfTable);
  if (link.isVxlan) out += " vxlan";
  return link.tunnel ? out + show(*link.tunnel) : out;
}

std::string show(const Address& address) {
  std::string out = address.address.stringValue().str() + "/" + std::to_string(address.length) +
                    "@" + std::to_string(address.interface);
  if (address.isSecondary()) out += " secondary";
  return address.isDuplicate() ? out + " duplicate" : out;
}

std::string show(const Neighbour& neighbour) {
  return neighbour.address.stringValue().str() + "@" + std::to_string(neighbour.interface) + " " +
         neighbour.ethernet.stringValue().str() + (neighbour.unresolved ? " unresolved" : "");
}

std::string routeShown(Bytes payload) {
  RouteMessage route;
  Encapsulations encapsulations;
  return decodeRoute(payload, encapsulations, route) ? show(route, encapsulations) : "none";
}

std::string nexthopShown(Bytes payload) {
  Encapsulations encapsulations;
  const auto decoded = decodeNexthop(payload, encapsulations);
  return decoded ? show(*decoded, encapsulations) : "none";
}

template <auto decode>
std::string shown(Bytes payload) {
  const auto decoded = decode(payload);
  return decoded ? show(*decoded) : "none";
}

struct Case {
  const char* name;
  Message message;
  const char* expected; ///< what the message decodes to; "none" for what is passed over
};

/// `head` is what all of the cases decode to ahead of `expected`.
template <std::size_t count>
void expectDecoded(std::string (*decode)(Bytes), const Case (&cases)[count],
                   const std::string& head = "") {
  for (const Case& one : cases) {
    EXPECT_EQ(decode(one.message.bytes()), head + one.expected) << one.name;
    decodeDamaged(one.message.bytes(), decode);
  }
}

rtmsg routeHeader(unsigned char family, unsigned char length, unsigned flags = 0) {
  rtmsg header{};
  header.rtm_family = family;
  header.rtm_dst_len = length;
  header.rtm_table = RT_TABLE_MAIN;
  header.rtm_type = RTN_UNICAST;
  header.rtm_flags = flags;
  return header;
}

Message route4(unsigned char length) { return Message(routeHeader(AF_INET, length)); }
Message route6(unsigned char length) { return Message(routeHeader(AF_INET6, length)); }
/// A route to 10.0.0.0/8.
Message toTen(unsigned flags = 0) {
  return Message(routeHeader(AF_INET, 8, flags)).add(RTA_DST, ip("10.0.0.0"));
}

/// A row of a multipath route with its attributes.
Message row(int interface, unsigned char hops, unsigned char flags, const Message& attributes) {
  rtnexthop header{};
  header.rtnh_len = static_cast<unsigned short>(sizeof header + attributes.bytes().size());
  header.rtnh_hops = hops;
  header.rtnh_flags = flags;
  header.rtnh_ifindex = interface;
  return Message(header).then(attributes);
}

/// RTA_VIA's payload: the family, then the address.
std::vector<std::byte> via6(std::string_view address) {
  std::vector<std::byte> bytes = {std::byte{AF_INET6}, std::byte{0}};
  for (const std::byte one : ip(address)) bytes.push_back(one);
  return bytes;
}

/// A stack with `more` bytes behind it.
Message labels(std::initializer_list<std::uint32_t> values, std::size_t more = 0) {
  std::vector<std::byte> stack;
  for (const std::uint32_t value : values) {
    const std::uint32_t entry = htonl(value << 12);
    const auto* const first = reinterpret_cast<const std::byte*>(&entry);
    stack.insert(stack.end(), first, first + sizeof entry);
  }
  stack.resize(stack.size() + more);
  return Message().add(MPLS_IPTUNNEL_DST, stack);
}

TEST(RouteDecoder, Messages) {
  const Message multipath = Message()
                                .then(row(3, 0, 0, Message().add(RTA_GATEWAY, ip("10.0.0.2"))))
                                .then(row(4, 255, RTNH_F_DEAD, Message().add(RTA_VIA, via6("::9"))))
                                .then(row(5, 2, 0, {}));
  Message overlong = route4(0).add(RTA_PRIORITY, 5u).add(RTA_OIF, 2);
  overlong.bytes()[sizeof(rtmsg)] = std::byte{200}; // the length of RTA_PRIORITY
  const Case cases[] = {
      {"default", route4(0).add(RTA_OIF, 2).add(RTA_GATEWAY, ip("10.0.0.1")),
       "0.0.0.0/0 table 254 metric 0 | 10.0.0.1@2"},
      {"default6", route6(0).add(RTA_OIF, 2), "::/0 table 254 metric 0 | @2"},
      {"large table", toTen().add(RTA_TABLE, 70000u).add(RTA_PRIORITY, 20u),
       "10.0.0.0/8 table 70000 metric 20"},
      {"object", toTen().add(RTA_NH_ID, 7u), "10.0.0.0/8 table 254 metric 0 nhid 7"},
      {"multipath", toTen().add(RTA_MULTIPATH, multipath),
       "10.0.0.0/8 table 254 metric 0 | 10.0.0.2@3 | ::9@4 w256 dead | @5 w3"},
      {"via IPv6", toTen().add(RTA_VIA, via6("fe80::1")).add(RTA_OIF, 4),
       "10.0.0.0/8 table 254 metric 0 | fe80::1@4"},
      {"dead", toTen(RTNH_F_DEAD).add(RTA_OIF, 4), "10.0.0.0/8 table 254 metric 0 | @4 dead"},
      {"unknown attribute, flagged type", route4(0).add(999, 1u).add(RTA_OIF | NLA_F_NESTED, 2),
       "0.0.0.0/0 table 254 metric 0 | @2"},
      {"short interface", route4(0).add(RTA_OIF, std::uint16_t{2}), "0.0.0.0/0 table 254 metric 0"},
      {"attribute longer than the message", overlong, "0.0.0.0/0 table 254 metric 0"},
      {"without destination", route4(8).add(RTA_OIF, 2), "none"},
      {"short destination", route6(64).add(RTA_DST, ip("10.0.0.0")), "none"},
      {"long prefix", route4(33).add(RTA_DST, ip("10.0.0.0")), "none"},
      {"other family", Message(routeHeader(AF_PACKET, 0)), "none"},
      {"empty", Message(), "none"},
  };
  expectDecoded(routeShown, cases);
}

Message encapsulated(std::uint16_t kind, const Message& data) {
  return toTen().add(RTA_OIF, 4).add(RTA_ENCAP_TYPE, kind).add(RTA_ENCAP, data);
}

struct RoutingHeader {
  std::int32_t mode = SEG6_IPTUN_MODE_ENCAP;
  std::uint8_t nextHeader = 0, units = 4, type = 4, left = 1, last = 1, flags = 0, tag[2] = {};
};

/// A routing header with segments as they stand in it: the last one first.
Message segments(const RoutingHeader& header, std::initializer_list<const char*> stored) {
  const auto* const first = reinterpret_cast<const std::byte*>(&header);
  std::vector<std::byte> bytes(first, first + sizeof header);
  for (const char* const segment : stored) {
    for (const std::byte one : ip(segment)) bytes.push_back(one);
  }
  return Message().add(SEG6_IPTUNNEL_SRH, bytes);
}

Message remote(const char* address, std::uint64_t identifier) {
  return Message()
      .add(LWTUNNEL_IP_ID, __builtin_bswap64(identifier))
      .add(LWTUNNEL_IP_DST, ip(address));
}

TEST(RouteDecoder, Encapsulations) {
  constexpr std::uint16_t mpls = LWTUNNEL_ENCAP_MPLS, seg6 = LWTUNNEL_ENCAP_SEG6,
                          ip4 = LWTUNNEL_ENCAP_IP, ip6 = LWTUNNEL_ENCAP_IP6;
  const Message two = segments({}, {"fc00::2", "fc00::1"});
  const Message row5 = Message().add(RTA_ENCAP_TYPE, seg6).add(RTA_ENCAP, two);
  const Case cases[] = {
      {"label", encapsulated(mpls, labels({100})), "@4 label 100"},
      {"labels ahead of their kind",
       toTen().add(RTA_ENCAP, labels({100, 200})).add(RTA_ENCAP_TYPE, mpls).add(RTA_OIF, 4),
       "@4 stack 100 200"},
      {"seven labels", encapsulated(mpls, labels({1, 2, 3, 4, 5, 6, 7})), "@4 stack 1 2 3 4 5 6 7"},
      {"eight labels", encapsulated(mpls, labels({1, 2, 3, 4, 5, 6, 7, 8})),
       "@4 stack 1 2 3 4 5 6 7"},
      {"part of a label", encapsulated(mpls, labels({1}, 3)), "@4 label 1"},
      {"no whole label", encapsulated(mpls, labels({}, 3)), "@4"},
      {"segments", encapsulated(seg6, two), "@4 segments fc00::1 fc00::2"},
      {"segments of a row", toTen().add(RTA_MULTIPATH, row(5, 0, 0, row5)),
       "@5 segments fc00::1 fc00::2"},
      {"inline", encapsulated(seg6, segments({.mode = SEG6_IPTUN_MODE_INLINE}, {"::", "fc00::1"})),
       "@4 segments fc00::1"},
      {"inline without own segment",
       encapsulated(seg6,
                    segments({.mode = SEG6_IPTUN_MODE_INLINE, .units = 2, .last = 0}, {"::"})),
       "@4"},
      {"more bytes behind the segments",
       encapsulated(seg6, segments({.units = 4, .last = 0}, {"fc00::2", "fc00::1"})),
       "@4 segments fc00::2"},
      {"more segments than bytes", encapsulated(seg6, segments({.last = 2}, {"::1", "::2"})), "@4"},
      {"more segments than units", encapsulated(seg6, segments({.units = 2}, {"::1", "::2"})),
       "@4"},
      {"more units than bytes", encapsulated(seg6, segments({.units = 6}, {"::1", "::2"})), "@4"},
      {"other routing header", encapsulated(seg6, segments({.type = 3}, {"::1", "::2"})), "@4"},
      {"remote end", encapsulated(ip4, remote("192.0.2.1", 100)), "@4 remote 192.0.2.1 vni 100"},
      {"IPv6 remote end", encapsulated(ip6, remote("fd00::1", 100)), "@4 remote fd00::1 vni 100"},
      {"identifier above a VNI", encapsulated(ip4, remote("192.0.2.1", 0x501000007)),
       "@4 remote 192.0.2.1 vni 7"},
      {"remote end of no family", encapsulated(ip6, remote("192.0.2.1", 100)), "@4"},
      {"no remote end", encapsulated(ip4, remote("0.0.0.0", 100)), "@4"},
      {"local segment", encapsulated(LWTUNNEL_ENCAP_SEG6_LOCAL, two), "@4"},
      {"unknown kind", encapsulated(0xffff, two), "@4"},
      {"data without kind", toTen().add(RTA_OIF, 4).add(RTA_ENCAP, two), "@4"},
      {"kind without data", toTen().add(RTA_OIF, 4).add(RTA_ENCAP_TYPE, seg6), "@4"},
  };
  expectDecoded(routeShown, cases, "10.0.0.0/8 table 254 metric 0 | ");
}

TEST(RouteDecoder, EqualEncapsulationsShareANumber) {
  Encapsulations encapsulations;
  RouteMessage route;
  std::vector<std::uint32_t> numbers;
  for (const auto& stack : {labels({1, 2}), labels({2, 1}), labels({1, 2})}) {
    const Message message = encapsulated(LWTUNNEL_ENCAP_MPLS, stack);
    ASSERT_TRUE(decodeRoute(message.bytes(), encapsulations, route));
    numbers.push_back(route.hops.at(0).encapsulation);
  }
  EXPECT_EQ(numbers, (std::vector<std::uint32_t>{1, 2, 1}));
}

TEST(RouteDecoder, MessageObjectIsReused) {
  Encapsulations encapsulations;
  RouteMessage route;
  const Message full = toTen().add(RTA_NH_ID, 7u).add(RTA_OIF, 2).add(RTA_PRIORITY, 1);
  ASSERT_TRUE(decodeRoute(full.bytes(), encapsulations, route));
  ASSERT_TRUE(decodeRoute(route6(0).bytes(), encapsulations, route));
  EXPECT_EQ(show(route, encapsulations), "::/0 table 254 metric 0");
}

/// A nexthop object of that number.
Message nexthop(unsigned number, unsigned char family = AF_INET, unsigned flags = 0) {
  nhmsg header{};
  header.nh_family = family;
  header.nh_flags = flags;
  return Message(header).add(NHA_ID, number);
}

std::vector<std::byte> group() {
  // {number, weight - 1, its high byte}
  const nexthop_grp rows[] = {{1, 0, 0, 0}, {2, 9, 0, 0}, {3, 0xff, 1, 0}};
  const auto* const first = reinterpret_cast<const std::byte*>(rows);
  return {first, first + sizeof rows};
}

TEST(NexthopDecoder, Messages) {
  const Case cases[] = {
      {"gateway", nexthop(7).add(NHA_OIF, 2).add(NHA_GATEWAY, ip("10.0.0.1")), "7 10.0.0.1@2"},
      {"gateway6", nexthop(8, AF_INET6).add(NHA_GATEWAY, ip("fe80::1")), "8 fe80::1@0 IPv6"},
      {"blackhole", nexthop(9).add(NHA_BLACKHOLE, std::vector<std::byte>()), "9 @0 blackhole"},
      {"group", nexthop(10).add(NHA_GROUP, group()), "10 @0 +1*1 +2*10 +3*512"},
      {"dead", nexthop(7, AF_INET, RTNH_F_DEAD).add(NHA_OIF, 2), "7 @2 dead"},
      {"without carrier", nexthop(7, AF_INET, RTNH_F_LINKDOWN).add(NHA_OIF, 2), "7 @2 linkdown"},
      {"of a bridge", nexthop(7).add(NHA_FDB, std::vector<std::byte>()), "7 @0 fdb"},
      {"part of a member", nexthop(10).add(NHA_GROUP, std::vector<std::byte>(7)), "10 @0"},
      {"label",
       nexthop(7)
           .add(NHA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_MPLS})
           .add(NHA_ENCAP, labels({30})),
       "7 @0 label 30"},
      {"stack",
       nexthop(7)
           .add(NHA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_MPLS})
           .add(NHA_ENCAP, labels({30, 40})),
       "7 @0 stack 30 40"},
      {"without number", Message(nhmsg{}).add(NHA_OIF, 2), "none"},
      {"empty", Message(), "none"},
  };
  expectDecoded(nexthopShown, cases);
}

// The numbers of linux/nexthop.h since Linux 6.9, which older headers lack.
constexpr unsigned statistics = 15, entry = 1, entryId = 1, entryPackets = 2;

/// The statistics of one member; `packets` is of the type that the kernel chose.
template <class Number>
Message counted(std::uint32_t id, Number packets) {
  return Message().add(entry, Message().add(entryId, id).add(entryPackets, packets));
}

TEST(NexthopDecoder, Statistics) {
  const Message two = counted(1, 5u).then(counted(2, std::uint64_t{1} << 40));
  const Message backwards =
      Message().add(entry, Message().add(entryPackets, 5u).add(entryId, 1u)).then(counted(3, 0u));
  const Case cases[] = {
      {"of four and eight bytes", nexthop(10).add(NHA_GROUP, group()).add(statistics, two),
       "10 @0 +1*1=5p +2*10=1099511627776p +3*512"},
      {"ahead of the members", nexthop(10).add(statistics, backwards).add(NHA_GROUP, group()),
       "10 @0 +1*1=5p +2*10 +3*512=0p"},
      {"of a stranger", nexthop(10).add(NHA_GROUP, group()).add(statistics, counted(9, 5u)),
       "10 @0 +1*1 +2*10 +3*512"},
      {"too short",
       nexthop(10).add(NHA_GROUP, group()).add(statistics, counted(1, std::uint16_t{5})),
       "10 @0 +1*1 +2*10 +3*512"},
      {"without a number",
       nexthop(10).add(NHA_GROUP, group()).add(statistics, Message().add(entry, Message())),
       "10 @0 +1*1 +2*10 +3*512"},
      {"of a single next hop", nexthop(7).add(statistics, two), "7 @0"},
  };
  expectDecoded(nexthopShown, cases);
}

/// Interface 5, of that name unless it is empty.
Message link(const char* name, unsigned char family = AF_UNSPEC) {
  ifinfomsg header{};
  header.ifi_family = family;
  header.ifi_index = 5;
  Message message(header);
  return *name ? message.add(IFLA_IFNAME, text(name)) : message;
}

Message linkInfo(const char* kind) {
  return Message()
      .add(IFLA_INFO_KIND, text(kind))
      .add(IFLA_INFO_DATA, Message().add(IFLA_VRF_TABLE, 10u));
}

Message greData(const char* local, const char* remote) {
  return Message()
      .add(IFLA_GRE_LOCAL, ip(local))
      .add(IFLA_GRE_REMOTE, ip(remote))
      .add(IFLA_GRE_IKEY, htonl(7))
      .add(IFLA_GRE_OKEY, htonl(8))
      .add(IFLA_GRE_TTL, std::uint8_t{9})
      .add(IFLA_GRE_TOS, std::uint8_t{4})
      .add(IFLA_GRE_PMTUDISC, std::uint8_t{1});
}

Message vtiData(const char* local, const char* remote) {
  return Message()
      .add(IFLA_VTI_LOCAL, ip(local))
      .add(IFLA_VTI_REMOTE, ip(remote))
      .add(IFLA_VTI_IKEY, htonl(7));
}

/// A device called Tunnel3 of that kind, with the data ahead of the kind.
Message device(const char* kind, const Message& data) {
  return link("Tunnel3").add(IFLA_LINKINFO,
                             Message().add(IFLA_INFO_DATA, data).add(IFLA_INFO_KIND, text(kind)));
}

TEST(LinkDecoder, TunnelDevices) {
  const Message gre4 = greData("10.0.0.1", "10.0.0.2"), gre6 = greData("fd00::1", "fd00::2");
  const Message vti4 = vtiData("10.0.0.1", "10.0.0.2"), vti6 = vtiData("fd00::1", "fd00::2");
  const Case cases[] = {
      {"gre", device("gre", gre4), " GRE 10.0.0.1 to 10.0.0.2 key 7 ttl 9 tos 4 pmtu 1"},
      {"gretap", device("gretap", gre4), " GRE 10.0.0.1 to 10.0.0.2 key 7 ttl 9 tos 4 pmtu 1"},
      {"ip6gre", device("ip6gre", gre6), " GRE fd00::1 to fd00::2 key 7 ttl 9 tos 4 pmtu 1"},
      {"ip6gretap", device("ip6gretap", gre6), " GRE fd00::1 to fd00::2 key 7 ttl 9 tos 4 pmtu 1"},
      {"vti", device("vti", vti4), " VTI 10.0.0.1 to 10.0.0.2 key 0 ttl 0 tos 0 pmtu 0"},
      {"vti6", device("vti6", vti6), " VTI fd00::1 to fd00::2 key 0 ttl 0 tos 0 pmtu 0"},
      {"from any address", device("gre", greData("0.0.0.0", "10.0.0.2")),
       " GRE 0.0.0.0 to 10.0.0.2 key 7 ttl 9 tos 4 pmtu 1"},
      {"multipoint", device("gre", greData("10.0.0.1", "0.0.0.0")), ""},
      {"addresses too short", device("ip6gre", gre4), ""},
      {"without data", device("gre", Message()), ""},
      {"erspan", device("erspan", gre4), ""},
      {"vxlan", device("vxlan", gre4), " vxlan"},
      {"of no kind", device("", gre4), ""},
  };
  expectDecoded(shown<decodeLink>, cases, "5 Tunnel3 \"\" master 0 table 0");
}

TEST(LinkDecoder, Messages) {
  const std::vector<std::byte> withoutNul(4, std::byte{'x'});
  const Case cases[] = {
      {"member", link("eth0").add(IFLA_MASTER, 9u), "5 eth0 \"\" master 9 table 0"},
      {"described", link("eth0").add(IFLA_IFALIAS, text("to core")),
       "5 eth0 \"to core\" master 0 table 0"},
      {"vrf", link("red").add(IFLA_LINKINFO, linkInfo("vrf")), "5 red \"\" master 0 table 10"},
      {"no vrf", link("br0").add(IFLA_LINKINFO, linkInfo("bridge")), "5 br0 \"\" master 0 table 0"},
      {"without NUL", link("").add(IFLA_IFNAME, withoutNul), "5 xxxx \"\" master 0 table 0"},
      {"bridge port", link("eth0", AF_BRIDGE), "none"},
      {"nameless", link(""), "none"},
  };
  expectDecoded(shown<decodeLink>, cases);
}

Message address(unsigned char family, unsigned char length, unsigned char flags = 0) {
  return Message(ifaddrmsg{family, length, flags, 0, 3});
}

TEST(AddressDecoder, Messages) {
  const auto one = ip("10.0.0.1"), peer = ip("10.0.0.2"), six = ip("fd00::1");
  const Case cases[] = {
      {"point to point", address(AF_INET, 32).add(IFA_ADDRESS, peer).add(IFA_LOCAL, one),
       "10.0.0.1/32@3"},
      {"IPv6", address(AF_INET6, 64).add(IFA_ADDRESS, six), "fd00::1/64@3"},
      {"secondary", address(AF_INET, 24, IFA_F_SECONDARY).add(IFA_LOCAL, one),
       "10.0.0.1/24@3 secondary"},
      {"wide flags", address(AF_INET, 24).add(IFA_LOCAL, one).add(IFA_FLAGS, 0x401u),
       "10.0.0.1/24@3 secondary"},
      {"duplicate", address(AF_INET6, 64, IFA_F_DADFAILED).add(IFA_ADDRESS, six),
       "fd00::1/64@3 duplicate"},
      {"long mask", address(AF_INET, 33).add(IFA_LOCAL, one), "none"},
      {"without address", address(AF_INET, 24), "none"},
  };
  expectDecoded(shown<decodeAddress>, cases);
}

Message neighbour(unsigned short state, std::size_t ethernetBytes = 6) {
  ndmsg header{};
  header.ndm_family = AF_INET;
  header.ndm_ifindex = 3;
  header.ndm_state = state;
  Message message(header);
  message.add(NDA_DST, ip("10.0.0.2"));
  if (ethernetBytes) message.add(NDA_LLADDR, std::vector<std::byte>(ethernetBytes, std::byte{2}));
  return message;
}

TEST(NeighbourDecoder, Messages) {
  const Case cases[] = {
      {"reachable", neighbour(NUD_REACHABLE), "10.0.0.2@3 02:02:02:02:02:02"},
      {"stale", neighbour(NUD_STALE), "10.0.0.2@3 02:02:02:02:02:02"},
      {"permanent", neighbour(NUD_PERMANENT), "10.0.0.2@3 02:02:02:02:02:02"},
      {"none", neighbour(NUD_NONE), "none"},
      {"incomplete", neighbour(NUD_INCOMPLETE), "none"},
      {"failed", neighbour(NUD_FAILED), "none"},
      {"no ARP", neighbour(NUD_NOARP), "10.0.0.2@3 02:02:02:02:02:02 unresolved"},
      {"without Ethernet", neighbour(NUD_REACHABLE, 0), "none"},
      {"other link layer", neighbour(NUD_REACHABLE, 20), "none"},
  };
  expectDecoded(shown<decodeNeighbour>, cases);
}

} // namespace
} // namespace kernel_test
