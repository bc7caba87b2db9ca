// One route in the output: the forms of its line, and the same route in the model.
//
//    B E     10.1.0.0/16 [200/0] via 10.0.0.1, Ethernet1
//
// The columns of the head are: the hardware mark, the code, the leak mark, the kernel mark, blanks.
#pragma once

#include "rova/fec/CachedFec.h"
#include "rova/fec/Policies.h"
#include "rova/route/DisplayAttrInfo.h"
#include "rova/route/SharedVias.h"
#include "scrivo/Printer.h"

#include <string_view>

namespace Rova {

/// What a line shows beside its route type. Texts are not copied: they outlive the call. All below
/// `shared` is not read where that is known.
struct RouteLine {
  bool hardwareProgrammed = true;
  bool kernelProgrammed = true;
  bool routeLeaked = false;
  const char* srcVrfName = "";
  Kesh::IpGenPrefix prefix;
  int preference = 0;
  std::uint32_t metric = 0;
  SharedVias* shared = nullptr; ///< of the lines of the FEC; null where this one has its own
  const CachedFec* fec = nullptr;
  bool isNexthopGroup = false; ///< by its type or its FEC
  /// The single via that is printed straight from its FEC; null where rows or nothing print.
  const DirectViaText* via = nullptr;
  /// The policies of a FEC that leads to such, maybe none that is known; null for any other FEC.
  const PolicyInfoSet* policies = nullptr;
  /// Where the via has no interface: a receive route's own, and its description.
  const char* ownInterface = "";
  const char* ownInterfaceDescription = "";
};

/// How the lines of a listing look, fixed when its printing begins.
struct LineOptions {
  bool detail = false;
  bool degradeNhgModel = false; ///< the older form of nexthop group data
};

/// Prints routes of one listing. It holds the named values that all its lines share.
class RouteLinePrinter {
 public:
  RouteLinePrinter(scrivo::Printer& printer, LineOptions options);

  /// Prints the route, in the form of IPv6 listings, which have vias on lines of their own, if the
  /// sorter has a next hop of IPv6. False for one with nothing to show: a next hop without an
  /// interface outside a detail listing.
  template <class RouteType>
  bool printFormatRoute(RouteType type, const RouteLine& line, bool hasV6Nexthop) {
    routeType_.setValue(type);
    return print(line, static_cast<std::uint32_t>(type), pcode(type), hasV6Nexthop);
  }

 private:
  using KeyedStretches = Lumo::HashMap2018<std::uint64_t, scrivo::Stretch>;
  struct Row;
  /// A line with what is worked out from it once.
  struct Subject;

  bool print(const RouteLine& line, std::uint32_t type, const char* code, bool hasV6Nexthop);
  LineForm formOf(const Subject& route);
  bool hasSomethingToShow(const Subject& route);
  void printFormatRoute4(const Subject& route);
  void printFormatRoute6(const Subject& route);
  template <class Print>
  void share(const Subject& route, Print printVias);
  template <class Print>
  void shareWithAll(KeyedStretches& known, std::uint64_t key, Print print);
  bool isConnected(const Subject& route, std::string_view nexthop);

  void printHead(const Subject& route, LineForm kind);
  void printMarks(const Subject& route);
  void printSourceVrf(const Subject& route);
  void printPreference(const Subject& route);
  void addPreference();
  void addKind(LineForm form);
  void printEmptyVias();

  void printConnectedVias4(const Subject& route);
  void printConnectedVias6(const Subject& route);
  void printRows4(const Subject& route);
  void printRowList4(const Subject& route);
  void printRows6(const Subject& route);
  void printVia4(const Subject& route);
  void printPolicies(const Subject& route, std::size_t policyIndent, std::size_t viaIndent);
  void printDirectVia(const Subject& route);

  void printDegradedGroup(const Subject& route);
  void printGroup(const CachedNhgVia& group);
  template <class PrintRow>
  void forEachRow(const Subject& route, PrintRow printRow);
  void printRowStart4(const Subject& route, const Row& row);
  void printRowStart6(const Row& row);
  void printRowLabels(const Subject& route, const Row& row);
  void printRowEnd(const Subject& route, const Row& row);
  void printEvpn(const Tunnel::TunnelTable::EvpnVxlanTunnelEntry& entry);
  void printTunnelVias(const Subject& route, const Tunnel::CliSupport::CachedTunVia& tunnel);

  scrivo::Printer& printer_;
  const LineOptions options_;
  scrivo::StringAttrInfo prefix_;
  scrivo::RouteTypeAttrInfo routeType_;
  scrivo::StringAttrInfo routeAction_;
  scrivo::HardwareProgrammedAttrInfo hardwareProgrammed_;
  scrivo::KernelProgrammedAttrInfo kernelProgrammed_;
  scrivo::RouteLeakedAttrInfo routeLeaked_;
  scrivo::IntAttrInfo preference_;
  scrivo::UintAttrInfo metric_;
  scrivo::BoolAttrInfo directlyConnected_;
  scrivo::StringAttrInfo srcVrf_;
  scrivo::StringAttrInfo nexthopAddr_;
  scrivo::StringAttrInfo interface_;
  scrivo::StringAttrInfo interfaceDescription_;
  scrivo::StringAttrInfo viaType_;
  scrivo::StringAttrInfo viaWeight_;
  scrivo::StringAttrInfo vtepAddr_;
  scrivo::UintAttrInfo vni_;
  scrivo::StringAttrInfo routerMac_;
  scrivo::StringAttrInfo groupName_;
  scrivo::UintAttrInfo groupId_;
  KeyedStretches marks_;   ///< by what they say
  KeyedStretches numbers_; ///< by preference and metric
};

} // namespace Rova
