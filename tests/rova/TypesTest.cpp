// The face by name of the library's types: their attribute tables, held against lists that were
// written down apart from them, their strep text, and the registry.
#include "support/Device.h"
#include "support/Expect.h"

#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace support;
using Lumo::valueToStrep;
using Lumo::wrapAttrValue;
// "name: type", a "*" behind the name of a constructor argument; "name (order): key to value" for
// a collection; "name(argument: type): result" for a method.
// Both sorters: "@" stands for "" or "6", "#" for "" or "Ip6"; "4 " or "6 " in front of a row that
// one family alone has.
constexpr const char* sorterRows[] = {
    "routingConfig*: Routing::ConfigGen",
    "routingStatus*: Vanta::Fib@::RouteStatus",
    "forwardingStatus*: Vanta::Fib::ForwardingStatus",
    "forwarding6Status*: Vanta::Fib6::ForwardingStatus",
    "tunnelFib*: Tunnel::TunnelFib::TunnelFib",
    "arpVanta*: Arp::Table::Status",
    "vrfIdMap*: Vrf::VrfIdMap::Status",
    "4 reverseMapper: Vrf::VrfIdMap::ReverseMapper",
    "allIntfConfig*: Interface::AllIntfConfigDir",
    "ipStatus*: Ip@::Status",
    "routingHardwareStatus*: Routing@::Hardware::Status",
    "nhEntryStatus*: NexthopGroup::EntryStatus",
    "kernelUnprogrammedRoute*: Vanta::KernelUnprogrammedRoute::UnprogrammedRoute",
    "evpnVxlanTunnelTable*: Tunnel::TunnelTable::EvpnVxlanTunnelTable",
    "tunnelTableDir*: Lumo::Dir",
    "prefix*: Kesh::#Prefix",
    "intfStatus*: Interface::IntfStatus",
    "protocol*: Lumo::String",
    "detail*: bool",
    "longerPrefixes*: bool",
    "vrfName*: L3::VrfName",
    "vrfId*: Vrf::VrfIdMap::VrfId",
    "host*: bool",
    "fd*: int",
    "quantify*: double",
    "originalMask*: bool",
    "6 intf*: bool",
    "srTePolicyStatus*: SrTePolicy::PolicyStatus",
    "policyForwardingStatus*: Vanta::Fib::ForwardingStatus",
    "degradeNhgModel*: bool",
    "unprogrammedRouteStatus*: Vanta::Fib@::UnprogrammedRouteStatus",
    "printCount: int",
    "4 hasV6Nexthop: bool",
    "initialized: bool",
    "srTunnelTable: Tunnel::TunnelTable::SrTunnelTable",
    "staticTunnelTable: Tunnel::TunnelTable::StaticTunnelTable",
    "ldpTunnelTable: Tunnel::TunnelTable::LdpTunnelTable",
    "bgpLuTunnelTable: Tunnel::TunnelTable::BgpLuTunnelTable",
    "addrToIntfId (hashed): Kesh::Ip@AddrWithMask to Kesh::IntfId",
    "sortedRoute (ordered): Kesh::#Prefix to Vanta::Fib@::Route",
    "fec (hashed): Vanta::Fib::FecId to Rova::CachedFec",
    "cachedNexthopGroupIdToName (hashed): Routing::NexthopGroup::NexthopGroupId to Lumo::String",
    "legend(): Lumo::String",
    "hostLegend(): Lumo::String",
    "buildNexthopGroupIdToName(): void",
    "createAttachedRoute(ip: Kesh::IpGenAddr, intfId: Kesh::IntfId): Vanta::Fib@::Route",
    "handleInitialized(): void",
    "printRoutes(fd: U32, fmt: U32): bool",
    "longestPrefixMatch(): Kesh::#Prefix",
    "protocolString(p: Kesh::#Prefix): Lumo::String",
    "4 viasForPrefix(p: Kesh::Prefix): Rova::CachedFec"};

// Both summaries: "@" as above.
constexpr const char* summaryRows[] = {"routingConfig*: Routing::ConfigGen",
                                       "routingStatus*: Vanta::Fib@::RouteStatus",
                                       "arpVanta*: Arp::Table::Status",
                                       "vrfIdMap*: Vrf::VrfIdMap::Status",
                                       "vrfName*: L3::VrfName",
                                       "routeCountByType (hashed): Lumo::String to U32",
                                       "routeCountByMask (ordered): U32 to U32",
                                       "totalNumRoutes: int",
                                       "loadInternalStructures(): void",
                                       "loadAttachedRoutes(): void"};

constexpr const char* cachedFecRows[] = {
    "fecId*: Vanta::Fib::FecId",
    "connected: bool",
    "backupViaIndex: Vanta::Fib::ViaIndex",
    "numEntries: int",
    "hasBackup: bool",
    "weight: U32",
    "hierarchicalVia: bool",
    "via (ordered): Rova::CachedVia to bool",
    "viaTypeString (hashed): U16 to Lumo::String",
    "nexthopAddr (hashed): U16 to Lumo::String",
    "interface (hashed): U16 to Lumo::String",
    "interfaceDescription (hashed): U16 to Lumo::String",
    "label (hashed): U16 to Kesh::MplsLabel",
    "viaWeight (hashed): U32 to Lumo::String",
    "viaEvpnEntry (hashed): U16 to Tunnel::TunnelTable::EvpnVxlanTunnelEntry",
    "viaLabelStack (hashed): U16 to Kesh::MplsLabelOperation",
    "hostToCpu (hashed): U16 to bool",
    "tunVia (hashed): U16 to Tunnel::CliSupport::CachedTunVia",
    "staticIntfTunInfo (hashed): U16 to Tunnel::CliSupport::CachedStaticIntfTunnelInfo",
    "nhgVia (hashed): U16 to Rova::CachedNhgVia"};

constexpr const char* cachedViaRows[] = {"hop: Kesh::IpGenAddr",
                                         "intfId: Kesh::IntfId",
                                         "isBackup: bool",
                                         "viaLabel: Kesh::MplsLabel",
                                         "viaWeight: Lumo::String",
                                         "viaIndex: U16",
                                         "tunnelId: Tunnel::TunnelTable::TunnelId (computed)",
                                         "fecId: Vanta::Fib::FecId (computed)"};

constexpr const char* cachedNhgViaRows[] = {"nhgId: Routing::NexthopGroup::NexthopGroupId",
                                            "nhgName: Lumo::String"};

// "--" stands between the attributes of a class and those of the class derived from it.
constexpr const char* sortedTunViaRows[] = {"nexthop*: Kesh::IpGenAddr",
                                            "intfId*: Kesh::IntfId",
                                            "hash(): U32",
                                            "--",
                                            "encapId*: Tunnel::TunnelTable::EncapId",
                                            "--",
                                            "tunnelFib*: Tunnel::TunnelFib::TunnelFib"};

constexpr const char* sortedTunViaSetRows[] = {
    "tunnelId*: Tunnel::TunnelTable::TunnelId", "tunnelFib*: Tunnel::TunnelFib::TunnelFib",
    "via (ordered): Rova::SortedTunVia to bool", "handleInitialized(): void"};

constexpr const char* policyInfoRows[] = {
    "index*: U16",
    "policyKey*: SrTePolicy::PolicyKey",
    "sortedVia (hashed): Tunnel::TunnelTable::TunnelId to Rova::SortedTunViaSet",
    "viaLabel (hashed): Tunnel::TunnelTable::TunnelId to Kesh::MplsLabelAndAction",
    "tunnelLabelStack (hashed): Tunnel::TunnelTable::TunnelId to Kesh::MplsLabelOperation",
    "weight (hashed): Tunnel::TunnelTable::TunnelId to SrTePolicy::Weight"};

constexpr const char* policyInfoSetRows[] = {"policyInfo (hashed): U16 to Rova::PolicyInfo"};

constexpr const char* nexthopGroupHelperRows[] = {
    "nhgConfig*: Routing::NexthopGroup::Config",
    "nhgEntryStatus*: NexthopGroup::EntryStatus",
    "nhgHwStatus*: Routing::Hardware::NexthopGroupStatus",
    "routingHwStatus*: Routing::Hardware::Status",
    "counterHelper*: Rova::NexthopGroupCounterHelper",
    "nhgName*: Lumo::String",
    "vrfName: L3::VrfName",
    "sortedNhgName (ordered): Lumo::Name to Routing::NexthopGroup::NexthopGroupConfigEntry",
    "tunnelIdMap (hashed): U64 to U32",
    "processNexthopVias(): void",
    "render(fd: U32, fmt: U32): void"};

constexpr const char* nexthopGroupSummaryHelperRows[] = {
    "nhgConfig*: Routing::NexthopGroup::Config",
    "nhgEntryStatus*: NexthopGroup::EntryStatus",
    "nhgHwStatus*: Routing::Hardware::NexthopGroupStatus",
    "routingHwStatus*: Routing::Hardware::Status",
    "vrfName: L3::VrfName",
    "nhgCount: U32",
    "nhgUnprogrammedCount: U32",
    "nhgPerType (ordered): Routing::NexthopGroup::NexthopGroupType to U32",
    "nhgPerSize (ordered): U32 to U32",
    "processNexthopGroups(): void",
    "render(fd: U32, fmt: U32): void"};

constexpr const char* counterHelperRows[] = {
    "counterKeyTable: Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable",
    "counterTable: Gaugex::CounterTable",
    "snapshotTable: Gaugex::CounterTable",
    "counterEnabled: bool",
    "mountCounterVantaes(entityManager: Merrow::EntityManager): void",
    "getCounters(nhgId: Routing::NexthopGroup::NexthopGroupId, entryId: U32): Rova::CounterEntry"};

constexpr const char* counterInterfaceRows[] = {
    "getCounters(index: Rova::CounterIndex): Rova::CounterEntry"};

constexpr const char* counterIndexRows[] = {"counterIndex*: U64", "chipMask*: Dunlin::ChipSet",
                                            "hash: U32 (computed)"};

constexpr const char* counterEntryRows[] = {"packets*: U64", "bytes*: U64"};

constexpr const char* rovaConstsRows[] = {"defaultStaticRoutePreference*: Routing::RoutePreference",
                                          "defaultStaticRouteTag*: U32",
                                          "defaultStaticRouteName*: Lumo::String"};

constexpr const char* routeSortKeyRows[] = {"prefix*: Kesh::IpGenPrefix",
                                            "preference*: Routing::RoutePreference"};

constexpr const char* nexthopInfoRows[] = {"nexthopCmd: Lumo::String",
                                           "sortedVia (ordered): Routing::Via to Lumo::String"};

constexpr const char* staticRoutesCliSaverRows[] = {
    "sortedRoute (ordered): Rova::RouteSortKey to Rova::NexthopInfo",
    "save(config: Routing::ConfigGen, saveAll: bool, routeCmd: Lumo::String, "
    "rovaConsts: Rova::RovaConsts): Lumo::String"};

constexpr const char* staticRoutesRibCommonRows[] = {
    "sortedRoute (ordered): Routing::RouteKey to Routing::Route",
    "allIntfConfig*: Interface::AllIntfConfigDir",
    "dynamic: bool",
    "fd: U32",
    "fmt: U32",
    "tag: U32",
    "routeInputConf (hashed): Routing::RouteInput to bool",
    "legend(): Lumo::String",
    "dump(rovaConsts: Rova::RovaConsts): void"};

// "+" behind the name of a constructor argument that can be set later.
constexpr const char* addressQueryParamsRows[] = {"ipConfig+: Ip::Config",
                                                  "intfName+: Lumo::String",
                                                  "mgmtPrefix+: Lumo::String",
                                                  "primaryMatch+: Rova::AddrMatchType",
                                                  "secondaryMatch+: Rova::AddrMatchType",
                                                  "addrWithMask+: Kesh::IpAddrWithMask"};

constexpr const char* address6QueryParamsRows[] = {
    "ipConfig+: Ip6::Config", "intfName+: Lumo::String", "mgmtPrefix+: Lumo::String",
    "addrWithMask+: Kesh::Ip6AddrWithMask"};

constexpr const char* addressQueryResultRows[] = {"acceptable: bool", "msg: Lumo::String"};

constexpr const char* addressAssignmentCheckerRows[] = {
    "check(params: Rova::AddressQueryParams): Rova::AddressQueryResult"};

constexpr const char* address6AssignmentCheckerRows[] = {
    "check(params: Rova::Address6QueryParams): Rova::AddressQueryResult"};

constexpr const char* invalidNextHopCheckerRows[] = {
    "check(ipConfig: Ip::Config, hop: Kesh::IpAddr, vrfName: L3::VrfName): bool"};

constexpr const char* invalidNextHop6CheckerRows[] = {
    "check(ip6Config: Ip6::Config, hop: Kesh::Ip6Addr, vrfName: L3::VrfName): bool"};

constexpr const char* rdAssignmentCheckerRows[] = {"routeDistinguisherInputDir*: Lumo::Dir",
                                                   "vrfName*: Lumo::String",
                                                   "routeDistinguisher*: Kesh::RouteDistinguisher",
                                                   "acceptable: bool",
                                                   "errorMessage: Lumo::String",
                                                   "handleInitialized(): void"};

constexpr const char* clearIntfRoutesAndViasHelperRows[] = {
    "clearIntfRoutesAndViasHelper(config: Routing::ConfigGen, intfName: Lumo::String): void"};

/// A row of an attribute table in the form of the lists above.
std::string described(const Lumo::AttributeRecord& row) {
  const std::string name = row.name, type = row.valueType;
  switch (row.kind) {
  case Lumo::AttributeKind::constructorArgument:
    return name + "*: " + type;
  case Lumo::AttributeKind::writableConstructorArgument:
    return name + "+: " + type;
  case Lumo::AttributeKind::plain:
    return name + ": " + type;
  case Lumo::AttributeKind::computed:
    return name + ": " + type + " (computed)";
  case Lumo::AttributeKind::ordered:
    return name + " (ordered): " + row.keyType + " to " + type;
  case Lumo::AttributeKind::hashed:
    return name + " (hashed): " + row.keyType + " to " + type;
  case Lumo::AttributeKind::method:
    break;
  }
  std::string arguments;
  for (const auto& argument : row.arguments) {
    if (!argument.name) break;
    arguments +=
        (arguments.empty() ? "" : ", ") + std::string(argument.name) + ": " + argument.type;
  }
  return name + "(" + arguments + "): " + type;
}

using Lines = std::vector<std::string>;

std::string replaced(std::string row, char mark, std::string_view by) {
  for (std::size_t at; (at = row.find(mark)) != row.npos;) row.replace(at, 1, by);
  return row;
}

/// The rows of the IPv4 instance of a template, or those of the other one.
template <std::size_t count>
Lines rowsOf(const char* const (&all)[count], char family) {
  Lines rows;
  for (const std::string row : all) {
    const bool single = row[1] == ' ';
    if (single && row[0] != family) continue;
    const bool ip6 = family == '6';
    rows.push_back(replaced(replaced(single ? row.substr(2) : row, '@', ip6 ? "6" : ""), '#',
                            ip6 ? "Ip6" : ""));
  }
  return rows;
}

template <std::size_t count>
Lines listed(const char* const (&rows)[count]) {
  return {rows, rows + count};
}

struct TypeFace {
  const Lumo::TypeRecord& type;
  const char* name;
  bool isEntity;
  Lines rows;
};

std::vector<TypeFace> faces() {
  return {{Rova::RouteSorter::lumoType, "Rova::RouteSorter", true, rowsOf(sorterRows, '4')},
          {Rova::Route6Sorter::lumoType, "Rova::Route6Sorter", true, rowsOf(sorterRows, '6')},
          {Rova::RouteSummary::lumoType, "Rova::RouteSummary", false, rowsOf(summaryRows, '4')},
          {Rova::Route6Summary::lumoType, "Rova::Route6Summary", false, rowsOf(summaryRows, '6')},
          {Rova::CachedFec::lumoType, "Rova::CachedFec", true, listed(cachedFecRows)},
          {Rova::CachedVia::lumoType, "Rova::CachedVia", false, listed(cachedViaRows)},
          {Rova::CachedNhgVia::lumoType, "Rova::CachedNhgVia", false, listed(cachedNhgViaRows)},
          {Rova::SortedTunVia::lumoType, "Rova::SortedTunVia", false, listed(sortedTunViaRows)},
          {Rova::SortedTunViaSet::lumoType, "Rova::SortedTunViaSet", false,
           listed(sortedTunViaSetRows)},
          {Rova::PolicyInfo::lumoType, "Rova::PolicyInfo", false, listed(policyInfoRows)},
          {Rova::PolicyInfoSet::lumoType, "Rova::PolicyInfoSet", false, listed(policyInfoSetRows)},
          {Rova::RovaConsts::lumoType, "Rova::RovaConsts", false, listed(rovaConstsRows)},
          {Rova::RouteSortKey::lumoType, "Rova::RouteSortKey", false, listed(routeSortKeyRows)},
          {Rova::NexthopInfo::lumoType, "Rova::NexthopInfo", false, listed(nexthopInfoRows)},
          {Rova::StaticRoutesCliSaver::lumoType, "Rova::StaticRoutesCliSaver", false,
           listed(staticRoutesCliSaverRows)},
          {Rova::StaticRoutesRibCommon::lumoType, "Rova::StaticRoutesRibCommon", false,
           listed(staticRoutesRibCommonRows)},
          {Rova::AddressQueryParams::lumoType, "Rova::AddressQueryParams", true,
           listed(addressQueryParamsRows)},
          {Rova::Address6QueryParams::lumoType, "Rova::Address6QueryParams", true,
           listed(address6QueryParamsRows)},
          {Rova::AddressQueryResult::lumoType, "Rova::AddressQueryResult", false,
           listed(addressQueryResultRows)},
          {Rova::AddressAssignmentChecker::lumoType, "Rova::AddressAssignmentChecker", false,
           listed(addressAssignmentCheckerRows)},
          {Rova::Address6AssignmentChecker::lumoType, "Rova::Address6AssignmentChecker", false,
           listed(address6AssignmentCheckerRows)},
          {Rova::InvalidNextHopChecker::lumoType, "Rova::InvalidNextHopChecker", false,
           listed(invalidNextHopCheckerRows)},
          {Rova::InvalidNextHop6Checker::lumoType, "Rova::InvalidNextHop6Checker", false,
           listed(invalidNextHop6CheckerRows)},
          {Rova::RdAssignmentChecker::lumoType, "Rova::RdAssignmentChecker", false,
           listed(rdAssignmentCheckerRows)},
          {Rova::ClearIntfRoutesAndViasHelper::lumoType, "Rova::ClearIntfRoutesAndViasHelper",
           false, listed(clearIntfRoutesAndViasHelperRows)},
          {Rova::NexthopGroupHelper::lumoType, "Rova::NexthopGroupHelper", true,
           listed(nexthopGroupHelperRows)},
          {Rova::NexthopGroupSummaryHelper::lumoType, "Rova::NexthopGroupSummaryHelper", false,
           listed(nexthopGroupSummaryHelperRows)},
          {Rova::NexthopGroupCounterHelper::lumoType, "Rova::NexthopGroupCounterHelper", true,
           listed(counterHelperRows)},
          {Rova::NexthopGroupCliCounterInterface::lumoType, "Rova::NexthopGroupCliCounterInterface",
           true, listed(counterInterfaceRows)},
          {Rova::CounterIndex::lumoType, "Rova::CounterIndex", false, listed(counterIndexRows)},
          {Rova::CounterEntry::lumoType, "Rova::CounterEntry", false, listed(counterEntryRows)}};
}

TEST(TypeTableTest, HoldsTheAttributesInTheirOrder) {
  for (const auto& [type, name, isEntity, rows] : faces()) {
    EXPECT_STREQ(type.name, name);
    EXPECT_EQ(Lumo::typeNode(name), &type) << name;
    EXPECT_EQ(type.isEntity, isEntity) << name;
    Lines found;
    std::uint32_t index = isEntity ? 130 : 2;
    for (const auto& row : type.attributes) {
      if (row.index != index) {
        found.push_back("--");
        index = (index / 128 + 1) * 128 + 2;
      }
      found.push_back(described(row));
      EXPECT_EQ(row.index, index++) << name << " " << row.name;
      EXPECT_EQ(type.attribute(row.name), &row) << name << ": a name stands twice: " << row.name;
    }
    EXPECT_EQ(found, rows) << name;
  }
  for (const auto* const type : {&Rova::RouteSorter::lumoType, &Rova::Route6Sorter::lumoType}) {
    EXPECT_STREQ(type->attribute("fec")->internalKey, "fecId");
  }
}

template <class Family>
struct ByNameTest : testing::Test {
  using SorterType = Rova::Sorter<Family>;
  const Lumo::AttributeRecord& row(const char* name) const {
    return *SorterType::lumoType.attribute(name);
  }
  Device device;
};
TYPED_TEST_SUITE(ByNameTest, Families, FamilyNames);

TYPED_TEST(ByNameTest, ASorterIsReadAndCalledByName) {
  using T = Texts<TypeParam>;
  const auto fec = this->device.fec({via(T::hop, "Ethernet1")});
  this->device.route(T::inside, T::Type::staticRoute, fec, 20);
  const auto sorter = openSorter<TypeParam>(this->device, {.prefix = T::host});
  EXPECT_EQ(sorter->fwkType(), &Rova::Sorter<TypeParam>::lumoType);
  const auto key = prefixOf<TypeParam>(T::inside);
  EXPECT_EQ(Lumo::unwrap<typename TypeParam::Route>(
                this->row("sortedRoute").readMember(sorter.ptr(), wrapAttrValue(key))),
            sorter->sortedRoute(key));
  EXPECT_EQ(this->row("fec").members(sorter.ptr()), 1u);
  EXPECT_TRUE(this->row("fec").hasMember(sorter.ptr(), wrapAttrValue(fec)));
  EXPECT_TRUE(Lumo::unwrap<bool>(this->row("initialized").read(sorter.ptr())));
  EXPECT_EQ(Lumo::unwrap<typename TypeParam::Prefix>(
                this->row("longestPrefixMatch").call(sorter.ptr(), {})),
            key);
  EXPECT_EQ(Lumo::unwrap<Lumo::String>(this->row("legend").call(sorter.ptr(), {})),
            sorter->legend());
  const std::vector<Lumo::Ptr<Lumo::GenericIf>> argument = {wrapAttrValue(key)};
  EXPECT_EQ(
      Lumo::unwrap<Lumo::String>(this->row("protocolString").call(sorter.ptr(), argument)).str(),
      " S   ");
  EXPECT_EQ(this->row("prefix").write, nullptr) << "a constructor argument is fixed";
}

TYPED_TEST(ByNameTest, LoadingAgainByNameCountsAgain) {
  using T = Texts<TypeParam>;
  this->device.route(T::wide, T::Type::staticRoute, this->device.fec({}));
  const auto sorter = openSorter<TypeParam>(this->device);
  EXPECT_FALSE(this->row("handleInitialized").call(sorter.ptr(), {}));
  EXPECT_EQ(sorter->printCount(), 2);
  EXPECT_EQ(sorter->sortedRoutes(), 1u);
}

TYPED_TEST(ByNameTest, ANullFecIsRefused) {
  const auto sorter = openSorter<TypeParam>(this->device);
  const std::string refusal = "null _fec parameter to mutator for " +
                              std::string(TypeParam::sorterTypeName) + "::fec not allowed\"";
  EXPECT_EQ(messageOf<Lumo::RangeException>([&] { sorter->fecIs(nullptr); }), refusal);
  const auto key = Lumo::wrapAttrValue(Vanta::Fib::FecId(7));
  const auto null = Lumo::wrapAttrValue(Lumo::Ptr<Rova::CachedFec>());
  EXPECT_EQ(messageOf<Lumo::RangeException>(
                [&] { this->row("fec").writeMember(sorter.ptr(), key, null); }),
            refusal);
  EXPECT_EQ(sorter->fecs(), 0u);
}

TEST(StrepTest, ValuesNameTheirStoredAttributes) {
  Rova::CachedVia via;
  via.hopIs(addr("10.0.0.1"));
  via.intfIdIs(Kesh::IntfId(Lumo::String("Ethernet1")));
  via.isBackupIs(true);
  via.viaWeightIs("3");
  via.viaIndexIs(7);
  const std::string expected =
      "Value('Rova::CachedVia', ** {'hop': " + valueToStrep(via.hop()).str() +
      ", 'intfId': " + valueToStrep(via.intfId()).str() +
      ", 'isBackup': " + valueToStrep(true).str() +
      ", 'viaLabel': " + valueToStrep(via.viaLabel()).str() +
      ", 'viaWeight': " + valueToStrep(via.viaWeight()).str() + ", 'viaIndex': 7})";
  EXPECT_EQ(valueToStrep(via).str(), expected);
  std::ostringstream out;
  out << via;
  EXPECT_EQ(out.str(), expected);
  EXPECT_NE(expected.find("10.0.0.1"), std::string::npos);
  const Rova::SortedTunVia tunnelVia(addr("10.0.0.1"), intf("Ethernet1"),
                                     Tunnel::TunnelTable::EncapId(7), {});
  EXPECT_EQ(valueToStrep(tunnelVia).str(),
            "Value('Rova::SortedTunVia', ** {'nexthop': " + valueToStrep(tunnelVia.nexthop).str() +
                ", 'intfId': " + valueToStrep(tunnelVia.intfId).str() +
                ", 'encapId': " + valueToStrep(tunnelVia.encapId).str() + ", 'tunnelFib': None})");
  Rova::PolicyInfoSet policies;
  policies.policyInfoIs(Rova::PolicyInfo(3, {}));
  EXPECT_EQ(policies.policyInfo(3), Rova::PolicyInfo(3, {})) << "a policy stands under its index";
  EXPECT_EQ(valueToStrep(policies).str(), "None");
  Rova::CachedNhgVia group;
  EXPECT_TRUE(!group);
  group.nhgIdIs(5);
  group.nhgNameIs("west");
  EXPECT_FALSE(!group);
  EXPECT_EQ(valueToStrep(group).str(),
            "Value('Rova::CachedNhgVia', ** {'nhgId': " + valueToStrep(group.nhgId()).str() +
                ", 'nhgName': " + valueToStrep(Lumo::String("west")).str() + "})");
}

} // namespace
