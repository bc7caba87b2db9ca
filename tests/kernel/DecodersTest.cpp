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
#include <linux/lwtunnel.h>
#include <linux/mpls_iptunnel.h>
#include <linux/neighbour.h>
#include <linux/nexthop.h>
#include <linux/rtnetlink.h>

namespace kernel_test {
namespace {

using namespace sources::kernel;

std::string show(const Hop& hop) {
  std::string out = hop.gateway.stringValue().str() + "@" + std::to_string(hop.interface);
  if (hop.weight != 1) out += " w" + std::to_string(hop.weight);
  if (hop.label != Kesh::MplsLabel::null) out += " label " + std::to_string(hop.label);
  return hop.dead ? out + " dead" : out;
}

std::string show(const RouteMessage& route) {
  std::string out = route.destination.stringValue().str() + "/" + std::to_string(route.length);
  out += " table " + std::to_string(route.table) + " metric " + std::to_string(route.metric);
  if (route.nexthopId) out += " nhid " + std::to_string(route.nexthopId);
  for (const Hop& hop : route.hops) out += " | " + show(hop);
  return out;
}

std::string decodeShown(Bytes payload) {
  RouteMessage route;
  return decodeRoute(payload, route) ? show(route) : "damaged";
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

Message route4(unsigned char length, unsigned flags = 0) {
  return Message(routeHeader(AF_INET, length, flags));
}
Message route6(unsigned char length) { return Message(routeHeader(AF_INET6, length)); }

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

Message labels(std::initializer_list<std::uint32_t> values) {
  std::vector<std::byte> stack;
  for (const std::uint32_t value : values) {
    const std::uint32_t entry = htonl(value << 12);
    const auto* const first = reinterpret_cast<const std::byte*>(&entry);
    stack.insert(stack.end(), first, first + sizeof entry);
  }
  return Message().add(MPLS_IPTUNNEL_DST, stack);
}

Message multipath() {
  return Message()
      .then(row(3, 0, 0, Message().add(RTA_GATEWAY, ip("10.0.0.2"))))
      .then(row(4, 255, RTNH_F_DEAD, Message().add(RTA_VIA, via6("fe80::9"))))
      .then(row(5, 2, 0, {}));
}

struct RouteCase {
  const char* name;
  Message message;
  const char* expected;
};

const RouteCase routeCases[] = {
    {"default", route4(0).add(RTA_OIF, 2).add(RTA_GATEWAY, ip("10.0.0.1")),
     "0.0.0.0/0 table 254 metric 0 | 10.0.0.1@2"},
    {"default6", route6(0).add(RTA_OIF, 2), "::/0 table 254 metric 0 | @2"},
    {"largeTable",
     route4(8).add(RTA_TABLE, 70000u).add(RTA_DST, ip("10.0.0.0")).add(RTA_PRIORITY, 20u),
     "10.0.0.0/8 table 70000 metric 20"},
    {"nexthopObject", route4(8).add(RTA_DST, ip("10.0.0.0")).add(RTA_NH_ID, 7u),
     "10.0.0.0/8 table 254 metric 0 nhid 7"},
    {"multipath", route4(8).add(RTA_DST, ip("10.0.0.0")).add(RTA_MULTIPATH, multipath()),
     "10.0.0.0/8 table 254 metric 0 | 10.0.0.2@3 | fe80::9@4 w256 dead | @5 w3"},
    {"viaIp6", route4(8).add(RTA_DST, ip("10.0.0.0")).add(RTA_VIA, via6("fe80::1")).add(RTA_OIF, 4),
     "10.0.0.0/8 table 254 metric 0 | fe80::1@4"},
    {"deadHop", route4(8, RTNH_F_DEAD).add(RTA_DST, ip("10.0.0.0")).add(RTA_OIF, 4),
     "10.0.0.0/8 table 254 metric 0 | @4 dead"},
    {"mplsDataBeforeItsKind",
     route4(8)
         .add(RTA_DST, ip("10.0.0.0"))
         .add(RTA_ENCAP, labels({100, 200}))
         .add(RTA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_MPLS})
         .add(RTA_OIF, 4),
     "10.0.0.0/8 table 254 metric 0 | @4 label 100"},
    {"otherEncapsulation",
     route4(8)
         .add(RTA_DST, ip("10.0.0.0"))
         .add(RTA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_SEG6})
         .add(RTA_ENCAP, labels({100}))
         .add(RTA_OIF, 4),
     "10.0.0.0/8 table 254 metric 0 | @4"},
    {"unknownAttribute", route4(0).add(999, 1u).add(RTA_OIF, 2),
     "0.0.0.0/0 table 254 metric 0 | @2"},
    {"nestedFlagOfAType", route4(0).add(RTA_OIF | NLA_F_NESTED, 2),
     "0.0.0.0/0 table 254 metric 0 | @2"},
    {"shortInterface", route4(0).add(RTA_OIF, std::uint16_t{2}), "0.0.0.0/0 table 254 metric 0"},
    {"withoutDestination", route4(8).add(RTA_OIF, 2), "damaged"},
    {"shortDestination", route6(64).add(RTA_DST, ip("10.0.0.0")), "damaged"},
    {"longPrefix", route4(33).add(RTA_DST, ip("10.0.0.0")), "damaged"},
    {"otherFamily", Message(routeHeader(AF_PACKET, 0)), "damaged"},
    {"empty", Message(), "damaged"},
};

TEST(RouteDecoder, Messages) {
  for (const RouteCase& one : routeCases) {
    EXPECT_EQ(decodeShown(one.message.bytes()), one.expected) << one.name;
  }
}

TEST(RouteDecoder, DamageIsNeverReadBeyond) {
  for (const RouteCase& one : routeCases) {
    decodeDamaged(one.message.bytes(), [](Bytes bytes) { decodeShown(bytes); });
  }
}

TEST(RouteDecoder, AttributeLongerThanTheMessageEndsTheWalk) {
  Message message = route4(0).add(RTA_PRIORITY, 5u).add(RTA_OIF, 2);
  message.bytes()[sizeof(rtmsg)] = std::byte{200}; // the length of RTA_PRIORITY
  EXPECT_EQ(decodeShown(message.bytes()), "0.0.0.0/0 table 254 metric 0");
}

TEST(RouteDecoder, MessageObjectIsReused) {
  RouteMessage route;
  ASSERT_TRUE(decodeRoute(route4(8)
                              .add(RTA_DST, ip("10.0.0.0"))
                              .add(RTA_NH_ID, 7u)
                              .add(RTA_OIF, 2)
                              .add(RTA_PRIORITY, 1)
                              .bytes(),
                          route));
  ASSERT_TRUE(decodeRoute(route6(0).bytes(), route));
  EXPECT_EQ(show(route), "::/0 table 254 metric 0");
}

std::string decodeNexthopShown(Bytes payload) {
  const auto nexthop = decodeNexthop(payload);
  if (!nexthop) return "damaged";
  std::string out = std::to_string(nexthop->id) + " " + show(nexthop->hop);
  if (nexthop->blackhole) out += " blackhole";
  for (const auto& member : nexthop->group) {
    out += " +" + std::to_string(member.id) + "*" + std::to_string(member.weight);
  }
  return out;
}

Message nexthop(unsigned char family, unsigned flags = 0) {
  nhmsg header{};
  header.nh_family = family;
  header.nh_flags = flags;
  return Message(header);
}

std::vector<std::byte> group() {
  // {number, weight - 1, its high byte}
  const nexthop_grp rows[] = {{1, 0, 0, 0}, {2, 9, 0, 0}, {3, 0xff, 1, 0}};
  const auto* const first = reinterpret_cast<const std::byte*>(rows);
  return {first, first + sizeof rows};
}

const RouteCase nexthopCases[] = {
    {"gateway", nexthop(AF_INET).add(NHA_ID, 7u).add(NHA_OIF, 2).add(NHA_GATEWAY, ip("10.0.0.1")),
     "7 10.0.0.1@2"},
    {"gateway6", nexthop(AF_INET6).add(NHA_ID, 8u).add(NHA_OIF, 2).add(NHA_GATEWAY, ip("fe80::1")),
     "8 fe80::1@2"},
    {"blackhole", nexthop(AF_INET).add(NHA_ID, 9u).add(NHA_BLACKHOLE, std::vector<std::byte>()),
     "9 @0 blackhole"},
    {"group", nexthop(AF_UNSPEC).add(NHA_ID, 10u).add(NHA_GROUP, group()),
     "10 @0 +1*1 +2*10 +3*512"},
    {"dead", nexthop(AF_INET, RTNH_F_DEAD).add(NHA_ID, 7u).add(NHA_OIF, 2), "7 @2 dead"},
    {"label",
     nexthop(AF_INET)
         .add(NHA_ID, 7u)
         .add(NHA_ENCAP_TYPE, std::uint16_t{LWTUNNEL_ENCAP_MPLS})
         .add(NHA_ENCAP, labels({30})),
     "7 @0 label 30"},
    {"withoutNumber", nexthop(AF_INET).add(NHA_OIF, 2), "damaged"},
    {"empty", Message(), "damaged"},
};

TEST(NexthopDecoder, Messages) {
  for (const RouteCase& one : nexthopCases) {
    EXPECT_EQ(decodeNexthopShown(one.message.bytes()), one.expected) << one.name;
    decodeDamaged(one.message.bytes(), [](Bytes bytes) { decodeNexthopShown(bytes); });
  }
}

std::string decodeLinkShown(Bytes payload) {
  const auto link = decodeLink(payload);
  if (!link) return "damaged";
  return std::to_string(link->index) + " " + link->name + " \"" + link->alias + "\" master " +
         std::to_string(link->master) + " table " + std::to_string(link->vrfTable);
}

Message link(unsigned char family = AF_UNSPEC) {
  ifinfomsg header{};
  header.ifi_family = family;
  header.ifi_index = 5;
  return Message(header);
}

Message linkInfo(const char* kind) {
  return Message()
      .add(IFLA_INFO_KIND, text(kind))
      .add(IFLA_INFO_DATA, Message().add(IFLA_VRF_TABLE, 10u));
}

const RouteCase linkCases[] = {
    {"plain", link().add(IFLA_IFNAME, text("eth0")), "5 eth0 \"\" master 0 table 0"},
    {"described", link().add(IFLA_IFNAME, text("eth0")).add(IFLA_IFALIAS, text("to core")),
     "5 eth0 \"to core\" master 0 table 0"},
    {"member", link().add(IFLA_IFNAME, text("eth0")).add(IFLA_MASTER, 9u),
     "5 eth0 \"\" master 9 table 0"},
    {"vrf", link().add(IFLA_IFNAME, text("red")).add(IFLA_LINKINFO, linkInfo("vrf")),
     "5 red \"\" master 0 table 10"},
    {"notAVrf", link().add(IFLA_IFNAME, text("br0")).add(IFLA_LINKINFO, linkInfo("bridge")),
     "5 br0 \"\" master 0 table 0"},
    {"bridgePort", link(AF_BRIDGE).add(IFLA_IFNAME, text("eth0")), "damaged"},
    {"nameless", link(), "damaged"},
};

TEST(LinkDecoder, Messages) {
  for (const RouteCase& one : linkCases) {
    EXPECT_EQ(decodeLinkShown(one.message.bytes()), one.expected) << one.name;
    decodeDamaged(one.message.bytes(), [](Bytes bytes) { decodeLinkShown(bytes); });
  }
}

TEST(LinkDecoder, NameWithoutItsNulEndsWithTheAttribute) {
  EXPECT_EQ(
      decodeLinkShown(link().add(IFLA_IFNAME, std::vector<std::byte>(4, std::byte{'x'})).bytes()),
      "5 xxxx \"\" master 0 table 0");
}

std::string decodeAddressShown(Bytes payload) {
  const auto address = decodeAddress(payload);
  if (!address) return "damaged";
  std::string out = address->address.stringValue().str() + "/" + std::to_string(address->length) +
                    "@" + std::to_string(address->interface);
  if (address->isSecondary()) out += " secondary";
  return address->isDuplicate() ? out + " duplicate" : out;
}

Message address(unsigned char family, unsigned char length, unsigned char flags = 0) {
  return Message(ifaddrmsg{family, length, flags, 0, 3});
}

const RouteCase addressCases[] = {
    {"broadcastLink",
     address(AF_INET, 24).add(IFA_ADDRESS, ip("10.0.0.1")).add(IFA_LOCAL, ip("10.0.0.1")),
     "10.0.0.1/24@3"},
    {"pointToPoint",
     address(AF_INET, 32).add(IFA_ADDRESS, ip("10.0.0.2")).add(IFA_LOCAL, ip("10.0.0.1")),
     "10.0.0.1/32@3"},
    {"ip6", address(AF_INET6, 64).add(IFA_ADDRESS, ip("fd00::1")), "fd00::1/64@3"},
    {"secondary", address(AF_INET, 24, IFA_F_SECONDARY).add(IFA_LOCAL, ip("10.0.0.1")),
     "10.0.0.1/24@3 secondary"},
    {"wideFlags", address(AF_INET, 24).add(IFA_LOCAL, ip("10.0.0.1")).add(IFA_FLAGS, 0x401u),
     "10.0.0.1/24@3 secondary"},
    {"duplicate", address(AF_INET6, 64, IFA_F_DADFAILED).add(IFA_ADDRESS, ip("fd00::1")),
     "fd00::1/64@3 duplicate"},
    {"longMask", address(AF_INET, 33).add(IFA_LOCAL, ip("10.0.0.1")), "damaged"},
    {"withoutAddress", address(AF_INET, 24), "damaged"},
};

TEST(AddressDecoder, Messages) {
  for (const RouteCase& one : addressCases) {
    EXPECT_EQ(decodeAddressShown(one.message.bytes()), one.expected) << one.name;
    decodeDamaged(one.message.bytes(), [](Bytes bytes) { decodeAddressShown(bytes); });
  }
}

std::string decodeNeighbourShown(Bytes payload) {
  const auto found = decodeNeighbour(payload);
  if (!found) return "none";
  return found->address.stringValue().str() + "@" + std::to_string(found->interface) + " " +
         found->ethernet.stringValue().str();
}

Message neighbour(unsigned short state, std::size_t ethernetBytes = 6,
                  const char* address = "10.0.0.2") {
  ndmsg header{};
  header.ndm_family = AF_INET;
  header.ndm_ifindex = 3;
  header.ndm_state = state;
  Message message(header);
  message.add(NDA_DST, ip(address));
  if (ethernetBytes) message.add(NDA_LLADDR, std::vector<std::byte>(ethernetBytes, std::byte{2}));
  return message;
}

const RouteCase neighbourCases[] = {
    {"reachable", neighbour(NUD_REACHABLE), "10.0.0.2@3 02:02:02:02:02:02"},
    {"stale", neighbour(NUD_STALE), "10.0.0.2@3 02:02:02:02:02:02"},
    {"permanent", neighbour(NUD_PERMANENT), "10.0.0.2@3 02:02:02:02:02:02"},
    {"none", neighbour(NUD_NONE), "none"},
    {"incomplete", neighbour(NUD_INCOMPLETE), "none"},
    {"failed", neighbour(NUD_FAILED), "none"},
    {"noArp", neighbour(NUD_NOARP), "none"},
    {"withoutEthernet", neighbour(NUD_REACHABLE, 0), "none"},
    {"otherLinkLayer", neighbour(NUD_REACHABLE, 20), "none"},
};

TEST(NeighbourDecoder, Messages) {
  for (const RouteCase& one : neighbourCases) {
    EXPECT_EQ(decodeNeighbourShown(one.message.bytes()), one.expected) << one.name;
    decodeDamaged(one.message.bytes(), [](Bytes bytes) { decodeNeighbourShown(bytes); });
  }
}

} // namespace
} // namespace kernel_test
