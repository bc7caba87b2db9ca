// Nexthop objects of the kernel as nexthop groups.
#include "kernel/DeviceFixture.h"

namespace kernel_test {
namespace {

/// Nexthop objects: eth1 is in the default VRF, eth2 in VRF red.
class NexthopGroupTest : public DeviceTest {
 protected:
  NexthopGroupTest() {
    kernel.links = {{1, "eth1", "", 0, 0}, {2, "eth2", "", 3, 0}, {3, "red", "", 0, 10}};
    kernel.addresses = {{1, addr("10.9.0.1"), 8, 0},
                        {1, addr("10.1.0.1"), 24, 0},
                        {1, addr("10.1.0.9"), 16, 0},
                        {2, addr("fd02::1"), 64, IFA_F_DADFAILED},
                        {2, addr("fd03::1"), 64, 0}};
    const auto ethernet = Kesh::EthAddr::parse("02:00:00:00:00:01").value();
    kernel.neighbours = {{1, addr("10.1.0.2"), ethernet}, {2, addr("fd02::2"), ethernet, true}};
  }

  Nexthop& single(std::uint32_t id, const Hop& to) {
    Nexthop& made = kernel.nexthops.emplace_back();
    made.id = id;
    made.hop = to;
    const bool ip6 = to.gateway.af() == Kesh::AddressFamily::ip6;
    made.family = ip6 ? Kesh::AddressFamily::ip6 : Kesh::AddressFamily::ip4;
    return made;
  }
  void group(std::uint32_t id, std::vector<Nexthop::Member> members) {
    Nexthop& made = kernel.nexthops.emplace_back();
    made.id = id;
    made.group = std::move(members);
  }
};

TEST_F(NexthopGroupTest, EverySingleNextHopIsAGroupOfOne) {
  Hop label = hop("10.1.0.2"), dead = hop("10.1.0.2");
  label.label = 30;
  dead.dead = 1;
  single(1, hop("10.1.0.2"));
  single(2, hop("fd02::2", 2));
  single(3, {}).blackhole = true;
  single(4, labelled(hop("10.200.0.2"), {100, 200})); // the top label first
  single(5, label);
  single(6, dead);
  single(7, hop("10.1.0.2")).linkDown = true;
  single(8, hop("", 1));
  single(9, hop("", 2)).family = Kesh::AddressFamily::ip6;
  single(10, segmented(hop("11.0.0.2"), {"fc00::1"}));
  single(11, hop("10.1.0.2", 0)).forwardsFrames = true;
  single(12, hop("fd03::2", 2));
  EXPECT_EQ(showNexthopGroups(device()),
            (Routes{{"nexthop-1",
                     "1 ip4 1 of 1 in default | 10.1.0.2 eth1 02:00:00:00:00:01 10.1.0.0/24"},
                    {"nexthop-2", "2 ip6 1 of 1 in default red | fd02::2 eth2 02:00:00:00:00:01"},
                    {"nexthop-3", "3 ip4 0 of 1 in default | -"},
                    {"nexthop-4", "4 mpls ip4 1 of 1 in default | 10.200.0.2 label 200 100 eth1 "
                                  "00:00:00:00:00:00 10.0.0.0/8"},
                    {"nexthop-5", "5 mpls ip4 1 of 1 in default | 10.1.0.2 label 30 eth1 "
                                  "02:00:00:00:00:01 10.1.0.0/24"},
                    {"nexthop-6", "6 ip4 0 of 1 in default | 10.1.0.2 -"},
                    {"nexthop-7", "7 ip4 0 of 1 in default | 10.1.0.2 -"},
                    {"nexthop-8", "8 ip4 1 of 1 in default | 0.0.0.0 eth1 00:00:00:00:00:00"},
                    {"nexthop-9", "9 ip6 1 of 1 in default red | :: eth2 00:00:00:00:00:00"},
                    {"nexthop-10", "10 ip4 1 of 1 in default | 11.0.0.2 eth1 00:00:00:00:00:00"},
                    {"nexthop-12", "12 ip6 1 of 1 in default red | fd03::2 eth2 "
                                   "00:00:00:00:00:00 fd03::/64"}}));
}

TEST_F(NexthopGroupTest, GroupsHaveAnEntryAMember) {
  single(1, hop("10.1.0.2"));
  single(2, hop("fd02::2", 2));
  single(3, {}).blackhole = true;
  single(4, labelled(hop("10.1.0.2"), {100, 200}));
  single(5, hop("", 1));
  group(20, {{1, 1, 7}, {4, 6}, {99, 1, 5}});
  group(21, {{5, 1, 0}, {1, 1, 8}, {2, 1, {}}});
  group(22, {{3, 1, 4}});
  const auto made = device();
  const auto groups = showNexthopGroups(made);
  const Routes expected{
      {"nexthop-20", "20 mpls ip4 2 of 3 in default | 10.1.0.2 eth1 02:00:00:00:00:01 "
                     "10.1.0.0/24 7p | 10.1.0.2 label 200 100 eth1 02:00:00:00:00:01 "
                     "10.1.0.0/24 | - 5p"},
      {"nexthop-21", "21 ip6 3 of 3 in default red | :: eth1 00:00:00:00:00:00 0p | "
                     "::ffff:10.1.0.2 eth1 02:00:00:00:00:01 10.1.0.0/24 8p | "
                     "fd02::2 eth2 02:00:00:00:00:01"},
      {"nexthop-22", "22 ip4 0 of 1 in default | - 4p"}};
  EXPECT_EQ(groups.size(), 8u);
  for (const auto& [name, shown] : expected) EXPECT_EQ(groups.at(name), shown) << name;
  EXPECT_TRUE(made.routingHardwareStatus->nexthopGroupEntryCounterSupported);
  EXPECT_FALSE(made.routingHardwareStatus->hierarchicalFecSupported());
}

TEST_F(NexthopGroupTest, CountersAreThereOnceTheKernelCounts) {
  single(1, hop("10.1.0.2"));
  group(20, {{1, 1}});
  EXPECT_FALSE(device().routingHardwareStatus->nexthopGroupEntryCounterSupported);
  group(21, {{1, 1, 0}});
  const auto made = device();
  EXPECT_TRUE(made.routingHardwareStatus->nexthopGroupEntryCounterSupported);
  const auto& config = *made.nhgConfig->nexthopGroup.find(Lumo::Name("nexthop-21"));
  EXPECT_EQ(config->entryCounterType, Routing::NexthopGroup::EntryCounterType::perEntry);
}

} // namespace
} // namespace kernel_test
