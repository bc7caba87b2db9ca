// What a snapshot must not hold, each with the one line that its author gets to see.
#include "sources/snapshot/Snapshot.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace {

struct Bad {
  std::string text;
  std::string message; ///< behind "leaf1: "
};

void PrintTo(const Bad& bad, std::ostream* out) { *out << bad.message; }

std::string errorOf(const std::string& text) {
  try {
    sources::snapshot::loadText(text, "leaf1");
  } catch (const sources::SourceError& error) {
    return error.what();
  }
  return "loaded without an error";
}

std::string snapshot(const std::string& sections) {
  return R"({"rovaSnapshot": 1, )" + sections + "}";
}
std::string vrf(const std::string& fields) {
  return snapshot(R"("vrfs": {"default": {)" + fields + "}}");
}
std::string route(const std::string& fields) {
  return vrf(R"("routingStatus": {"10.0.0.0/8": {"type": "static", )" + fields + "}}");
}
std::string configured(const std::string& fields) {
  return vrf(R"("routingConfig": {"routes": [{"prefix": "10.0.0.0/8", )" + fields + "}]}");
}
std::string fec(const std::string& fields) {
  return snapshot(R"("forwardingStatus": {"0.1": {)" + fields + "}}");
}
std::string group(const std::string& fields) {
  return snapshot(R"("nhgConfig": {"edge": {)" + fields + "}}");
}
std::string groupVia(const std::string& fields) {
  return snapshot(R"("nhgHwStatus": {"default": {"7": {"via": {"0": {)" + fields + "}}}}}");
}
std::string times(int count, const std::string& element) {
  std::string text = element;
  for (int i = 1; i < count; ++i) text += ", " + element;
  return text;
}

class BadSnapshot : public testing::TestWithParam<Bad> {};

TEST_P(BadSnapshot, IsRefusedWithOneLine) {
  const std::string message = errorOf(GetParam().text);
  EXPECT_EQ(message, "leaf1: " + GetParam().message);
  EXPECT_EQ(message.find('\n'), message.npos);
}

const std::string routePath = "$.vrfs.default.routingStatus[\"10.0.0.0/8\"]";
const std::string configPath = "$.vrfs.default.routingConfig.routes[0]";
const std::string broken =
    "found broken JSON at or before this place, expected values with commas, "
    "colons, quotes and matching brackets";

INSTANTIATE_TEST_SUITE_P(
    Json, BadSnapshot,
    testing::ValuesIn(std::vector<Bad>{
        {"", "line 1, column 1: found nothing, expected a snapshot"},
        {" \n ", "line 1, column 1: found nothing, expected a snapshot"},
        {"7", "$: found a lone value, expected an object"},
        {"[]", "$: found an array, expected an object"},
        {"{\"rovaSnapshot\": 1,\n \"a",
         "line 2, column 2: found the end inside a text, expected its "
         "closing quote"},
        {"{\"rova\nSnapshot\": 1}",
         "line 1, column 7: found a control character in a text, expected "
         "an escape such as \\n"},
        {"{\"rovaSnapshot\": 1,\n \"\xff\": 2}",
         "line 2, column 3: found bytes that are not UTF-8, expected UTF-8"},
        {R"({"rovaSnapshot": 1} 2)",
         "line 1, column 21: found more text behind the snapshot, expected its end"},
        {R"({"rovaSnapshot": 1}})",
         "line 1, column 20: found more text behind the snapshot, expected its end"},
        {R"({"rovaSnapshot": 1, })", "line 1, column 21: " + broken},
        {R"({"rovaSnapshot": 1, "vrfs")", "line 1, column 27: " + broken},
        {"{\"rovaSnapshot\": 1\n \"vrfs\": {}}", "line 2, column 2: " + broken},
        {R"({"rovaSnapshot": 1, 5: 6})", "line 1, column 21: " + broken},
        {R"({"rovaSnapshot" 1})", "line 1, column 17: " + broken},
        {vrf(R"("unprogrammedRouteStatus": ["10.0.0.0/8")"), "line 1, column 82: " + broken},
    }));

INSTANTIATE_TEST_SUITE_P(
    Keys, BadSnapshot,
    testing::ValuesIn(std::vector<Bad>{
        {"{}", "$: found no \"rovaSnapshot\", expected that key"},
        {R"({"rovaSnapshot": 2})", "$.rovaSnapshot: found 2, expected a number from 1 to 1"},
        {snapshot(R"("rovaSnapshot": 1)"),
         "$.rovaSnapshot: found the key a second time, expected each key once"},
        {snapshot(R"("counters": {})"),
         "$.counters: found an unknown key, expected one of \"rovaSnapshot\", \"vrfs\", "
         "\"forwardingStatus\", \"forwarding6Status\", \"policyForwardingStatus\", "
         "\"allIntfConfig\", \"ipStatus\", \"ip6Status\", \"ipConfig\", \"ip6Config\", "
         "\"arpVanta\", "
         "\"routeDistinguisherInputDir\", \"nhgConfig\", \"nhEntryStatus\", \"nhgHwStatus\", "
         "\"counterKeyTable\", \"counterTable\", \"snapshotTable\", "
         "\"routingHardwareStatus\", \"routing6HardwareStatus\", \"tunnelFib\", "
         "\"evpnVxlanTunnelTable\", \"tunnelTableDir\", \"srTePolicyStatus\""},
        {route(R"("via": [])"), routePath + ".via: found an unknown key, expected one of \"type\", "
                                            "\"fec\", \"metric\", \"preference\", \"srcVrfId\""},
        {route(R"("t\u0079pe": "static")"),
         routePath + ".type: found the key a second time, expected each key once"},
        {vrf(R"("routing6Status": {"2001:DB8::/32": {"type": "bgp"}, "::/0": {"type": "bgp"},
                "2001:db8::/32": {"type": "bgp"}})"),
         "$.vrfs.default.routing6Status: found \"2001:db8::/32\" twice, expected each key once"},
        {vrf(R"("routingStatus": {"10.0.0.0/8": {}})"),
         routePath + ": found no \"type\", expected that key"},
        {snapshot(R"("allIntfConfig": {"": {}})"),
         "$.allIntfConfig[\"\"]: found \"\", expected an interface name"},
        {snapshot(R"("allIntfConfig": {"a\nb": {"x": 1}})"),
         "$.allIntfConfig[\"a\\u000ab\"].x: found an unknown key, expected one of \"description\""},
        {snapshot(R"("forwardingStatus": {"0.1": {}, "0.01": {}})"),
         "$.forwardingStatus[\"0.01\"]: found \"0.01\", expected a FEC as TYPE.NUMBER, from 0.1 to "
         "19.72057594037927935"},
        {snapshot(R"("forwardingStatus": {"0.0": {}})"),
         "$.forwardingStatus[\"0.0\"]: found \"0.0\", expected a FEC as TYPE.NUMBER, from 0.1 to "
         "19.72057594037927935"},
        {snapshot(R"("forwardingStatus": {"1.5": {}})"),
         "$.forwardingStatus[\"1.5\"]: found a FEC of type 1, expected any type but 1: those FECs "
         "stand in forwarding6Status"},
        {snapshot(R"("forwarding6Status": {"0.5": {}})"),
         "$.forwarding6Status[\"0.5\"]: found a FEC of type 0, expected type 1 alone: the others "
         "stand in forwardingStatus"},
        {snapshot(R"("evpnVxlanTunnelTable": {"16.1": {}})"),
         "$.evpnVxlanTunnelTable[\"16.1\"]: found \"16.1\", expected a tunnel as KIND.INDEX, from "
         "0.1 to 15.17592186044415"},
        {snapshot(R"("tunnelFib": {"greEncaps": {"0.268435456": {}}})"),
         "$.tunnelFib.greEncaps[\"0.268435456\"]: found \"0.268435456\", expected an encapsulation "
         "as KIND.NUMBER, from 0.0 to 15.268435455"},
        {snapshot(R"("nhEntryStatus": {"edge": 7, "core": 7})"),
         "$.nhEntryStatus: found the identifier 7 twice, expected each key once"},
        {snapshot(R"("nhEntryStatus": {")" + std::string(129, 'n') + R"(": 7})"),
         "$.nhEntryStatus." + std::string(60, 'n') + "...: found \"" + std::string(59, 'n') +
             "..., expected a nexthop group name of 1 to 128 bytes"},
        {snapshot(R"("arpVanta": [{"interface": "Vlan1", "address": "10.0.0.1"},
                     {"interface": "Vlan1", "address": "10.0.0.1", "vrfId": 0}])"),
         "$.arpVanta: found neighbour 10.0.0.1 on Vlan1 twice, expected each key once"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Vrfs, BadSnapshot,
    testing::ValuesIn(std::vector<Bad>{
        {vrf(R"("id": 5)"), "$.vrfs.default.id: found 5, expected 0, the default VRF's number"},
        {snapshot(R"("vrfs": {"red": {}})"), "$.vrfs.red: found no \"id\", expected that key"},
        {snapshot(R"("vrfs": {"red": {"id": 0}})"),
         "$.vrfs.red.id: found 0, expected a number other than the default VRF's 0"},
        {snapshot(R"("vrfs": {"red": {"id": 16777215}})"),
         "$.vrfs.red.id: found 16777215, expected a number from 0 to 16777214"},
        {snapshot(R"("vrfs": {"red": {"id": 4}, "blue": {"id": 4}})"),
         "$.vrfs: found the number 4 twice, expected each key once"},
        {snapshot(R"("vrfs": {"red": {"id": 4}, "red": {"id": 5}})"),
         "$.vrfs.red: found the VRF a second time, expected each VRF once"},
        {snapshot(R"("vrfs": {"": {"id": 4}})"),
         "$.vrfs[\"\"]: found \"\", expected a VRF name of 1 to 100 bytes"},
        {snapshot(R"("vrfs": {")" + std::string(101, 'v') + R"(": {"id": 4}})"),
         "$.vrfs." + std::string(60, 'v') + "...: found \"" + std::string(59, 'v') +
             "..., expected a VRF name of 1 to 100 bytes"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Values, BadSnapshot,
    testing::ValuesIn(std::vector<Bad>{
        {route(R"("preference": 300)"),
         routePath + ".preference: found 300, expected a number from 0 to 255"},
        {route(R"("preference": -1)"),
         routePath + ".preference: found -1, expected a number from 0 to 255"},
        {route(R"("metric": 1.5)"),
         routePath + ".metric: found 1.5, expected a number from 0 to 4294967295"},
        {route(R"("metric": 99999999999999999999999999)"),
         routePath + ".metric: found 99999999999999999999999999, expected a number from 0 to "
                     "4294967295"},
        {route(R"("metric": "7")"),
         routePath + ".metric: found \"7\", expected a number from 0 to 4294967295"},
        {route(R"("metric": null)"),
         routePath + ".metric: found null, expected a number from 0 to 4294967295"},
        {route(R"("metric": {})"),
         routePath + ".metric: found an object, expected a number from 0 to 4294967295"},
        {route(R"("fec": 17)"), routePath + ".fec: found 17, expected a text"},
        {route(R"("fec": "20.1")"), routePath +
                                        ".fec: found \"20.1\", expected a FEC as TYPE.NUMBER, "
                                        "from 0.1 to 19.72057594037927935"},
        {route(R"("fec": "0.72057594037927936")"),
         routePath + ".fec: found \"0.72057594037927936\", expected a FEC as TYPE.NUMBER, from 0.1 "
                     "to 19.72057594037927935"},
        {route(R"("srcVrfId": 16777215)"),
         routePath + ".srcVrfId: found 16777215, expected a number from 0 to 16777214"},
        {vrf(R"("routingStatus": {"10.0.0.0/8": {"type": "bgp"}})"),
         routePath +
             ".type: found \"bgp\", expected a route type of this family, such as \"static\""},
        {vrf(R"("routingStatus": {"10.0.0.1/8": {"type": "static"}})"),
         "$.vrfs.default.routingStatus[\"10.0.0.1/8\"]: found \"10.0.0.1/8\", expected "
         "\"10.0.0.0/8\""},
        {vrf(R"("routing6Status": {"2001:db8::1/32": {"type": "static"}})"),
         "$.vrfs.default.routing6Status[\"2001:db8::1/32\"]: found \"2001:db8::1/32\", expected "
         "\"2001:db8::/32\""},
        {vrf(R"("routingStatus": {"::/0": {"type": "static"}})"),
         "$.vrfs.default.routingStatus[\"::/0\"]: found \"::/0\", expected an IPv4 prefix"},
        {vrf(R"("routing6Status": {"10.0.0.0/8": {"type": "static"}})"),
         "$.vrfs.default.routing6Status[\"10.0.0.0/8\"]: found \"10.0.0.0/8\", expected an IPv6 "
         "prefix"},
        {vrf(R"("unprogrammedRouteStatus": ["10.0.0.0/8", "10.0.0.0/8"])"),
         "$.vrfs.default.unprogrammedRouteStatus: found \"10.0.0.0/8\" twice, expected each key "
         "once"},
        {vrf(R"("kernelUnprogrammedRoute": [{"prefix": "10.0.0.0/8", "error": -2147483649}])"),
         "$.vrfs.default.kernelUnprogrammedRoute[0].error: found -2147483649, expected a number "
         "from "
         "-2147483648 to 2147483647"},
        {vrf(R"("kernelUnprogrammedRoute": [{"error": -22}])"),
         "$.vrfs.default.kernelUnprogrammedRoute[0]: found no \"prefix\", expected that key"},
        {fec(R"("vias": [{"hop": "fe80::1"}])"),
         "$.forwardingStatus[\"0.1\"].vias[0].hop: found \"fe80::1\", expected an IPv4 address"},
        {snapshot(R"("forwarding6Status": {"1.5": {"vias": [{"hop": "10.0.0.1"}]}})"),
         "$.forwarding6Status[\"1.5\"].vias[0].hop: found \"10.0.0.1\", expected an IPv6 address"},
        {fec(R"("vias": [{}, {"label": 8388609}])"),
         "$.forwardingStatus[\"0.1\"].vias[1].label: found 8388609, expected a number from 0 to "
         "8388608"},
        {fec(R"("vias": [)" + times(513, "{}") + "]"),
         "$.forwardingStatus[\"0.1\"].vias[512]: found one via more, expected at most 512 vias"},
        {fec(R"("backupViaIndex": 512)"),
         "$.forwardingStatus[\"0.1\"].backupViaIndex: found 512, expected a number from 0 to 511"},
        {snapshot(R"("ipStatus": {"Vlan1": {"primary": "10.0.0.1"}})"),
         "$.ipStatus.Vlan1.primary: found \"10.0.0.1\", expected an IPv4 address with a mask "
         "length"},
        {snapshot(
             R"("arpVanta": [{"interface": "Vlan1", "address": "10.0.0.1", "ethAddr": "00:11"}])"),
         "$.arpVanta[0].ethAddr: found \"00:11\", expected an Ethernet address such as "
         "00:1c:73:00:00:01"},
        {snapshot(R"("allIntfConfig": {"Vlan1": {"description": "\ud800"}})"),
         "$.allIntfConfig.Vlan1.description: found \"\\ud800\", expected a text with the escapes "
         "of "
         "JSON"},
        {snapshot(R"("tunnelFib": {"labelStacks": {"3.1": {"operation": "peel"}}})"),
         "$.tunnelFib.labelStacks[\"3.1\"].operation: found \"peel\", expected one of \"push\", "
         "\"swap\", \"pop\""},
        {snapshot(R"("tunnelFib": {"labelStacks": {"3.1": {"labels": [1,2,3,4,5,6,7,8]}}})"),
         "$.tunnelFib.labelStacks[\"3.1\"].labels[7]: found one label more, expected at most 7 "
         "labels"},
        {snapshot(R"("tunnelTableDir": {"sr": {"7.1": "10.0.0.1/8"}})"),
         "$.tunnelTableDir.sr[\"7.1\"]: found \"10.0.0.1/8\", expected \"10.0.0.0/8\""},
    }));

INSTANTIATE_TEST_SUITE_P(
    ConfiguredRoutes, BadSnapshot,
    testing::ValuesIn(std::vector<Bad>{
        {configured(R"("vias": [{"hop": "10.1.0.1", "vtep": "10.1.0.2"}])"),
         configPath + ".vias[0]: found a hop and a VTEP on one via, expected one of them"},
        {configured(R"("vias": [{"hop": "10.1.0.1"}, {"hop": "10.1.0.1", "name": "b"}])"),
         configPath + ": found a via a second time, expected each via once"},
        {configured(R"("vias": [)" + times(513, "{}") + "]"),
         configPath + ": found 513 vias, expected at most 512"},
        {configured(R"("type": "reject")"), configPath + ".type: found \"reject\", expected one of "
                                                         "\"forward\", \"drop\", \"nexthopGroup\""},
        {configured(R"("dynamic": 1)"), configPath + ".dynamic: found 1, expected true or false"},
        {vrf(R"("routingConfig": {"routes": [{"prefix": "10.0.0.0/8"}, {"prefix": "10.0.0.0/8"}]})"),
         "$.vrfs.default.routingConfig.routes[1]: found a second route to 10.0.0.0/8 of preference "
         "1, expected one"},
        {vrf(R"("routing6Config": {"routes": [{"prefix": "10.0.0.0/8"}]})"),
         "$.vrfs.default.routing6Config.routes[0].prefix: found \"10.0.0.0/8\", expected an IPv6 "
         "prefix"},
        {vrf(R"("routingConfig": nul)"),
         "$.vrfs.default.routingConfig: found nul, expected an object"},
    }));

const std::string viaPath = "$.nhgHwStatus.default.7.via.0";

INSTANTIATE_TEST_SUITE_P(
    NexthopGroups, BadSnapshot,
    testing::ValuesIn(std::vector<Bad>{
        {group(R"("type": "tunnel")"),
         "$.nhgConfig.edge.type: found \"tunnel\", expected one of \"invalid\", \"ipInIp\", "
         "\"gre\", "
         "\"mpls\", \"ip\", \"mplsOverGre\", \"mplsOverUdp\", \"vxlan\""},
        {group(R"("type": -1)"),
         "$.nhgConfig.edge.type: found -1, expected a number from 0 to 4294967295"},
        {group(R"("type": {})"),
         "$.nhgConfig.edge.type: found an object, expected a number from 0 to 4294967295"},
        {group(R"("entryCounterType": "shared")"),
         "$.nhgConfig.edge.entryCounterType: found \"shared\", expected one of \"perTunnel\", "
         "\"perEntry\""},
        {group(R"("greKeyType": "vlan")"),
         "$.nhgConfig.edge.greKeyType: found \"vlan\", expected one of \"none\", "
         "\"ingressInterface\""},
        {group(R"("addressFamily": "ip4")"),
         "$.nhgConfig.edge.addressFamily: found \"ip4\", expected one of \"ipv4\", \"ipv6\""},
        {group(R"("destinationIp": ["10.0.0.1"])"),
         "$.nhgConfig.edge.destinationIp: found an array, expected an object"},
        {group(R"("destinationIp": {"65536": "10.0.0.1"})"),
         "$.nhgConfig.edge.destinationIp.65536: found \"65536\", expected a number from 0 to "
         "65535"},
        {group(R"("destinationIp": {"01": "10.0.0.1"})"),
         "$.nhgConfig.edge.destinationIp.01: found \"01\", expected a number from 0 to 65535"},
        {group(R"("destinationIp": {"1": "10.0.0.1", "1": "10.0.0.2"})"),
         "$.nhgConfig.edge.destinationIp: found \"1\" twice, expected each key once"},
        {group(R"("destinationIp": {"1": "10.0.0.0/8"})"),
         "$.nhgConfig.edge.destinationIp.1: found \"10.0.0.0/8\", expected an IPv4 or IPv6 "
         "address"},
        {group(R"("mplsLabelStack": {"0": {"labels": [1,2,3,4,5,6,7,8]}})"),
         "$.nhgConfig.edge.mplsLabelStack.0.labels[7]: found one label more, expected at most 7 "
         "labels"},
        {snapshot(R"("nhgConfig": {"edge": {}, "edge": {}})"),
         "$.nhgConfig: found \"edge\" twice, expected each key once"},
        {snapshot(R"("nhgHwStatus": {"": {}})"),
         "$.nhgHwStatus[\"\"]: found \"\", expected a VRF name of 1 to 100 bytes"},
        {snapshot(R"("nhgHwStatus": {"default": {"edge": {}}})"),
         "$.nhgHwStatus.default.edge: found \"edge\", expected a number from 0 to 4294967295"},
        {snapshot(R"("nhgHwStatus": {"default": {"4294967296": {}}})"),
         "$.nhgHwStatus.default.4294967296: found \"4294967296\", expected a number from 0 to "
         "4294967295"},
        {groupVia(R"("route": "10.0.0.1/8")"),
         viaPath + ".route: found \"10.0.0.1/8\", expected \"10.0.0.0/8\""},
        {groupVia(R"("tunnelId": 18446744073709551616)"),
         viaPath + ".tunnelId: found 18446744073709551616, expected a number from 0 to "
                   "18446744073709551615"},
        {groupVia(R"("l3Intf": "")"), viaPath + ".l3Intf: found \"\", expected an interface name"},
        {groupVia(R"("interface": "Vlan1")"),
         viaPath + ".interface: found an unknown key, expected one of \"route\", \"hop\", "
                   "\"l3Intf\", \"vlanId\", \"l2Intf\", \"macAddr\", \"tunnelId\", \"fecId\""},
        {snapshot(R"("counterKeyTable": {"7": {}})"),
         "$.counterKeyTable.7: found \"7\", expected an entry as GROUP.ENTRY, from 0.0 to "
         "4294967295.4294967295"},
        {snapshot(R"("counterKeyTable": {"7.4294967296": {}})"),
         "$.counterKeyTable[\"7.4294967296\"]: found \"7.4294967296\", expected an entry as "
         "GROUP.ENTRY, from 0.0 to 4294967295.4294967295"},
        {snapshot(R"("counterTable": {"18446744073709551616": {}})"),
         "$.counterTable.18446744073709551616: found \"18446744073709551616\", expected a number "
         "from 0 to 18446744073709551615"},
        {snapshot(R"("snapshotTable": {"1": {"packets": -1}})"),
         "$.snapshotTable.1.packets: found -1, expected a number from 0 to 18446744073709551615"},
        {snapshot(R"("routingHardwareStatus": {"hierarchicalFecSupported": 1})"),
         "$.routingHardwareStatus.hierarchicalFecSupported: found 1, expected true or false"},
        {snapshot(R"("routing6HardwareStatus": {"maxNexthopGroupSize": 1})"),
         "$.routing6HardwareStatus.maxNexthopGroupSize: found an unknown key, expected one of "
         "\"maxUcmpWeight\""},
    }));

INSTANTIATE_TEST_SUITE_P(
    Configuration, BadSnapshot,
    testing::ValuesIn(std::vector<Bad>{
        {snapshot(R"("ipConfig": {"Vlan1": {"addrWithMask": "2001:db8::1/64"}})"),
         "$.ipConfig.Vlan1.addrWithMask: found \"2001:db8::1/64\", expected an IPv4 address with a "
         "mask length"},
        {snapshot(R"("ipConfig": {"Vlan1": {"secondaryWithMask": ["10.0.0.1/8", "10.0.0.1/8"]}})"),
         "$.ipConfig.Vlan1.secondaryWithMask: found \"10.0.0.1/8\" twice, expected each key once"},
        {snapshot(R"("ipConfig": {"Vlan1": {"vrf": ""}})"),
         "$.ipConfig.Vlan1.vrf: found \"\", expected a VRF name of 1 to 100 bytes"},
        {snapshot(R"("ip6Config": {"Vlan1": {"addr": ["2001:DB8::1/64", "2001:db8::1/64"]}})"),
         "$.ip6Config.Vlan1.addr: found \"2001:db8::1/64\" twice, expected each key once"},
        {snapshot(R"("ip6Config": {"Vlan1": {"addr": ["2001:db8::1/129"]}})"),
         "$.ip6Config.Vlan1.addr[0]: found \"2001:db8::1/129\", expected an IPv6 address with a "
         "mask "
         "length"},
        {snapshot(R"("routeDistinguisherInputDir": {"bgp": {"red": "65536:65536"}})"),
         "$.routeDistinguisherInputDir.bgp.red: found \"65536:65536\", expected a route "
         "distinguisher as ASN:N or A.B.C.D:N"},
        {snapshot(R"("routeDistinguisherInputDir": {"bgp": {"red": "1:1", "red": "1:2"}})"),
         "$.routeDistinguisherInputDir.bgp: found \"red\" twice, expected each key once"},
        {vrf(R"("routeInput": {"config": [{"prefix": "::/0"}]})"),
         "$.vrfs.default.routeInput.config[0].prefix: found \"::/0\", expected an IPv4 prefix"},
        {vrf(R"("route6Input": {"config": [{"prefix": "::/0"}, {"prefix": "::/0"}]})"),
         "$.vrfs.default.route6Input.config[1]: found a second route to ::/0 of preference 1, "
         "expected one"},
        {vrf(R"("routeInput": {"config": {}})"),
         "$.vrfs.default.routeInput.config: found an object, expected an array"},
    }));

} // namespace
