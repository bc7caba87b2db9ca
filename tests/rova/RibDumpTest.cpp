// The routes of routing inputs as a display.
#include "scrivo/Capture.h"
#include "support/Expect.h"
#include "support/Process.h"
#include "support/StaticRoutes.h"

namespace {

using namespace support;
using Routing::RouteType;

constexpr const char* legend = "Codes: F - forward, D - drop, NG - nexthop group\n\n";

struct RibDumpTest : testing::Test {
  Lumo::Ptr<Interface::AllIntfConfigDir> interfaces =
      Lumo::newEntity<Interface::AllIntfConfigDir>();
  Rova::StaticRoutesRibCommon common{interfaces};
  Lumo::Ptr<Routing::RouteInput> input = newInput();

  Lumo::Ptr<Routing::RouteInput> newInput() {
    const auto made = Lumo::newEntity<Routing::RouteInput>();
    common.routeInputConfIs(made, false); // whose value is not looked at
    return made;
  }
  Routing::Route& route(const char* to, std::uint8_t preference = 1,
                        RouteType type = RouteType::forward) {
    return enterRoute(*input, to, preference, type);
  }
  void describe(const char* interface, const char* description) {
    const auto id = intf(interface);
    interfaces->configs.insertOrAssign(id, Lumo::newEntity<Interface::IntfConfig>(id, description));
  }
  std::string dumped(std::uint32_t format, const Rova::RovaConsts& consts = {}) {
    const Sink sink;
    common.fdIs(static_cast<std::uint32_t>(sink.fd()));
    common.fmtIs(format);
    common.dump(consts);
    return sink.text();
  }
  std::string text(const Rova::RovaConsts& consts = {}) {
    const auto all = dumped(1, consts);
    const bool hasLegend = all.starts_with(legend);
    EXPECT_TRUE(hasLegend) << all;
    return hasLegend ? all.substr(std::string(legend).size()) : all;
  }
};

TEST_F(RibDumpTest, WithoutRoutesThereIsTheLegendAlone) {
  EXPECT_EQ(dumped(1), legend);
  EXPECT_EQ(dumped(2), "\"routes\":{}");
  EXPECT_EQ(common.legend().str(), "Codes: F - forward, D - drop, NG - nexthop group\n");
}

// The scenarios of the command show the kinds of routes; these vias are not among them.
TEST_F(RibDumpTest, ShowsWhatAViaHas) {
  describe("Ethernet2", "");
  auto& forward = route("10.0.0.0/8", 5);
  addVias(forward, {{.interface = "Ethernet2", .hop = "0.0.0.0", .label = 100},
                    {.hop = "1.1.1.3", .label = 0},
                    {.interface = "Ethernet3", .vtep = "192.0.2.9"}});
  forward.viaNextHopName.insertOrAssign(viaOf({.hop = "1.1.1.3", .label = 0}), "");
  addVias(route("10.1.0.0/16", 1, RouteType::drop), {{.hop = "1.1.1.1"}});
  EXPECT_EQ(text(), "F    10.0.0.0/8 [5]\n"
                    "      via 1.1.1.3, label 0\n"
                    "      Ethernet2\n"
                    "      Ethernet3\n"
                    "D    10.1.0.0/16 [1]\n"
                    "      Null0\n\n");
  EXPECT_EQ(dumped(2), R"("routes":{
"10.0.0.0/8":{"preference":{
"5":{"routeType":"forward","preference":5,"vias":[{"nexthopAddr":"1.1.1.3","mplsLabel":0},)"
                       R"({"interface":"Ethernet2"},{"interface":"Ethernet3"}]}}},
"10.1.0.0/16":{"preference":{
"1":{"routeType":"drop","preference":1,"vias":[]}}}})");
}

TEST_F(RibDumpTest, LeavesOutWhatTheCallersDefaultsSay) {
  auto& drop = route("10.0.0.0/8", 200, RouteType::drop);
  drop.tag = 9;
  drop.dropNextHopName = "spare";
  route("11.0.0.0/8", 200, RouteType::drop);
  auto& forward = route("2001:db8::/32", 200);
  addVias(forward, {{.hop = "fe80::1"}});
  forward.viaNextHopName.insertOrAssign(viaOf({.hop = "fe80::1"}), "spare");
  EXPECT_EQ(text({200, 9, "spare"}), "D    10.0.0.0/8 [200]\n      Null0\n"
                                     "D    11.0.0.0/8 [200] tag 0\n      Null0, name: \n"
                                     "F    2001:db8::/32 [200] tag 0\n      via fe80::1\n\n");
}

TEST_F(RibDumpTest, TheLaterOfTwoInputsWinsAndRoutesStay) {
  route("10.0.0.0/8", 1, RouteType::drop);
  input = newInput();
  addVias(route("10.0.0.0/8"), {{.hop = "1.1.1.1"}});
  const std::string forward = "F    10.0.0.0/8 [1]\n      via 1.1.1.1\n";
  EXPECT_EQ(text(), forward + "\n");
  input->route = {};
  common.routeInputConfDel(input);
  EXPECT_EQ(text(), "D    10.0.0.0/8 [1]\n      Null0\n\n") << "the first input is the last now";
  common.routeInputConfDel(common.routeInputConfMap().cursor().key());
  EXPECT_EQ(text(), "D    10.0.0.0/8 [1]\n      Null0\n\n") << "what was shown stays";
}

TEST_F(RibDumpTest, ANullRouteIsRefused) {
  input->route.insertOrAssign({prefix("10.0.0.0/8"), 1}, nullptr);
  EXPECT_EQ(messageOf<Lumo::RangeException>([&] { dumped(1); }),
            "null _sortedRoute parameter to mutator for "
            "Rova::StaticRoutesRibCommon::sortedRoute not allowed\"");
}

TEST_F(RibDumpTest, AnUnknownTypeStopsTheProcess) {
  route("10.0.0.0/8", 1, static_cast<RouteType>(3));
  EXPECT_DEATH(dumped(1), assertion("!\"Invalid Routing::RouteType argument\""));
}

TEST_F(RibDumpTest, AnInterruptIsToldAndEndsTheDump) {
  route("10.0.0.0/8", 1, RouteType::drop);
  testing::internal::CaptureStdout();
  const Interrupted interrupted;
  EXPECT_EQ(dumped(1), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "exiting interrupted by the user\n");
}

} // namespace
