// Tunnels of a device: from the encapsulations of its next hops, and its tunnel devices.
#include "kernel/DeviceFixture.h"

namespace kernel_test {
namespace {

/// Routes with tunnels: the hops of 10.N.0.0/16 are the N-th list, from 1.
class TunnelTest : public DeviceTest {
 protected:
  TunnelTest() {
    kernel.links[1].isVxlan = true; // eth2
  }

  void addLists(const std::vector<std::vector<Hop>>& lists) {
    for (const auto& hops : lists) {
      add(route(("10." + std::to_string(messages.size() + 1) + ".0.0").c_str(), 16, hops));
    }
  }
  /// The vias of the N-th list.
  std::string vias(const state::DeviceState& made, std::size_t number) const {
    const auto routes = showRoutes(made);
    const auto& shown = routes.at("default 10." + std::to_string(number) + ".0.0/16");
    const std::string head = "static [1/0] | ";
    return shown.starts_with(head) ? shown.substr(head.size()) : shown;
  }
  void expectVias(std::initializer_list<const char*> expected) const {
    const auto made = device();
    std::size_t number = 0;
    for (const char* const one : expected) EXPECT_EQ(vias(made, ++number), one) << number;
  }
};

TEST_F(TunnelTest, OneStackMakesAllViasOfAListTunnels) {
  Hop one = hop("10.0.0.5"), dead = hop("10.0.0.6");
  one.label = 300;
  dead.dead = 1;
  const Hop two = labelled(hop("10.0.0.3", 1, 4), {100, 200});
  addLists({{two, hop("10.0.0.4"), one, dead, hop("")}, {one, hop("10.0.0.4")}, {two}});
  expectVias({"1.2 (10.0.0.3 eth1 label 100 200) w4 | 1.3 (10.0.0.4 eth1) | "
              "1.4 (10.0.0.5 eth1 label 300) | 1.1 (0.0.0.0 eth1)",
              "10.0.0.5 eth1 label 300 | 10.0.0.4 eth1", "1.2 (10.0.0.3 eth1 label 100 200) w4"});
}

TEST_F(TunnelTest, SegmentsLeadToTheLastOfThem) {
  const Hop here = segmented(hop(""), {"fc00::1", "fc00::9"});
  const Hop there = segmented(hop("fe80::2"), {"fc00::3"});
  addLists({{here}, {there, here}, {segmented(hop(""), {"fc00::2", "fc00::9"})}});
  expectVias({"7.1 to fc00::9/128 (0.0.0.0 eth1)",
              "7.4 to fc00::3/128 (fe80::2 eth1) | 7.3 to fc00::9/128 (:: eth1)",
              "7.2 to fc00::9/128 (0.0.0.0 eth1)"});
}

TEST_F(TunnelTest, SegmentsAmongOtherHopsShowAsHops) {
  const Hop segments = segmented(hop("10.0.0.2"), {"fc00::1"});
  addLists({{segments, hop("10.0.0.3")},
            {segments, labelled(hop("10.0.0.3"), {1, 2})},
            {segments, remote(hop("10.0.0.4", 2), "192.0.2.1")}});
  expectVias({"1.1 (10.0.0.2 eth1) | 1.3 (10.0.0.3 eth1)",
              "1.1 (10.0.0.2 eth1) | 1.2 (10.0.0.3 eth1 label 1 2)",
              "1.1 (10.0.0.2 eth1) | 1.4 (10.0.0.4 eth2)"});
}

TEST_F(TunnelTest, RemoteEndsOfVxlanDevicesAreEvpnTunnels) {
  kernel.links.push_back({3, "geneve0", "", 0, 0});
  const auto ethernet = Kesh::EthAddr::parse("02:00:00:00:00:01").value();
  kernel.neighbours = {{2, addr("10.0.0.2"), ethernet, true}, {1, addr("10.0.0.3"), ethernet}};
  Hop dead = remote(hop("10.0.0.2", 2), "192.0.2.1");
  dead.dead = 1;
  addLists({{remote(hop("10.0.0.2", 2), "192.0.2.1")},
            {remote(hop("10.0.0.3", 2), "192.0.2.1"), hop("10.0.0.2")},
            {remote(hop("", 2), "fd00::1", 9)},
            {remote(hop("10.0.0.2", 3), "192.0.2.1")},
            {dead}});
  addLists({{remote(hop("10.0.0.9", 2), "fd00::1", 9)}});
  EXPECT_EQ(fecOf(device(), "10.3.0.0/16"), fecOf(device(), "10.6.0.0/16")) << "equal vias";
  expectVias({"6.2 VTEP 192.0.2.1 VNI 5 MAC 02:00:00:00:00:01",
              "6.1 VTEP 192.0.2.1 VNI 5 MAC 00:00:00:00:00:00 | 10.0.0.2 eth1",
              "6.3 VTEP fd00::1 VNI 9 MAC 00:00:00:00:00:00", "10.0.0.2 geneve0", "10.0.0.2 dead"});
}

TEST_F(TunnelTest, ConfiguredRoutesKeepTheirHops) {
  addLists({{labelled(hop("10.0.0.3"), {100, 200})}});
  EXPECT_EQ(showConfig(device().vrfs[0].routingConfig), "10.1.0.0/16[1] 10.0.0.3@eth1; ");
}

TEST_F(TunnelTest, EqualTunnelsHaveEqualNumbersInAnyOrderOfRoutes) {
  const Hop stack = labelled(hop("10.0.0.3"), {100, 200});
  addLists({{stack},
            {labelled(hop("10.0.0.2"), {100, 200})},
            {stack, segmented(hop("10.0.0.3"), {"fc00::1"})},
            {segmented(hop("10.0.0.3"), {"fc00::1"})},
            {stack}});
  add(route("10.1.0.0", 16, {labelled(hop("10.0.0.1"), {7, 8})})).metric = 6; // not listed
  for (int round = 0; round < 2; ++round) {
    expectVias({"1.2 (10.0.0.3 eth1 label 100 200)", "1.1 (10.0.0.2 eth1 label 100 200)",
                "1.2 (10.0.0.3 eth1 label 100 200) | 1.3 (10.0.0.3 eth1)",
                "7.1 to fc00::1/128 (10.0.0.3 eth1)", "1.2 (10.0.0.3 eth1 label 100 200)"});
    const auto made = device();
    EXPECT_EQ(made.tunnelFib->entries.size(), 4u);
    EXPECT_EQ(made.tunnelFib->labelStacks.size(), 2u) << "of none and of two labels";
    EXPECT_EQ(made.forwardingStatus->fec.members(), 4u);
    std::ranges::reverse(messages);
  }
}

/// A GRE or VTI device to 10.0.0.N.
Link tunnelLink(const char* name, Tunnel::TunnelTable::EncapKind kind, std::uint32_t end) {
  Link link{1, name, "", 0, 0};
  link.tunnel.emplace();
  link.tunnel->kind = kind;
  link.tunnel->ends.source = addr("10.0.0.1");
  link.tunnel->ends.destination = Kesh::IpAddr::fromHost(0x0a000000 + end);
  return link;
}

TEST_F(TunnelTest, DevicesOfTheNameAreConfiguredTunnels) {
  using Tunnel::TunnelTable::EncapKind, Tunnel::TunnelTable::TunnelId;
  constexpr auto gre = EncapKind::gre, vti = EncapKind::ipsecVti;
  kernel.links = {tunnelLink("Tunnel3", gre, 9),     tunnelLink("Tunnel65535", vti, 9),
                  tunnelLink("Tunnel0", gre, 8),     tunnelLink("Tunnel4", gre, 9),
                  tunnelLink("Tunnel65536", gre, 7), tunnelLink("Tunnel3.5", gre, 7),
                  tunnelLink("Tunnel05", gre, 7),    tunnelLink("gre5", gre, 7),
                  tunnelLink("Ethernet6", gre, 7),   {1, "Tunnel7", "", 0, 0}};
  const auto made = device();
  const auto& fib = *made.tunnelFib;
  EXPECT_EQ(fib.entries.size(), 4u);
  const struct {
    std::uint64_t port;
    std::uint32_t encap;
    const char* destination;
  } cases[] = {
      {0, 1, "10.0.0.8"}, {3, 2, "10.0.0.9"}, {4, 2, "10.0.0.9"}, {65535, 0x10000001, "10.0.0.9"}};
  for (const auto& one : cases) {
    const auto entry = fib.entry(TunnelId(TunnelId::convertToTunnelValue(9, one.port)));
    ASSERT_EQ(entry.tunnelVia.size(), 1u) << one.port;
    const auto encap = entry.tunnelVia[0].encapId;
    EXPECT_EQ(encap.value(), one.encap) << one.port;
    const Tunnel::L3TunnelInfo* ends = &fib.ipsecVtiEncap(encap);
    if (encap.kind() == gre) ends = &fib.greEncap(encap);
    EXPECT_EQ(ends->destination.stringValue().str(), one.destination) << one.port;
    EXPECT_EQ(ends->source.stringValue().str(), "10.0.0.1") << one.port;
  }
}

} // namespace
} // namespace kernel_test
