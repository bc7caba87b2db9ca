// What routes show, as values, for whoever chooses among them by it (Sorter::routeFilterIs):
//
//   Rova::ShownRoutes<Rova::Ip4Family> shown(
//       *sorter, [](const Rova::ShownVias& vias) { return vias.vias > 1; });
//   ... shown.head(route).metric < 10 && shown.answer(route) != 0 ...
#pragma once

#include "rova/route/Sorter.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Rova {

/// What a route shows of itself.
struct RouteHead {
  Kesh::IpGenPrefix prefix;
  std::uint32_t length = 0;
  std::string_view type;         ///< the word of the model
  std::string_view protocolCode; ///< the one that a query's protocol is compared with
  std::uint32_t preference = 0;
  std::uint32_t metric = 0;
  bool routeLeaked = false;
  std::string_view srcVrf = {}; ///< of a leaked route; empty for a VRF without a name too
  bool hardwareProgrammed = true;
  bool kernelProgrammed = true;
};

/// What the vias of a route show, in the model: each value as often as it stands there, those of
/// the vias of tunnels among them. An address is a prefix of its whole length. Empty texts are left
/// out.
struct ShownVias {
  std::uint32_t vias = 0; ///< entries of the list; policies have none
  bool directlyConnected = false;
  bool hasBackup = false;
  std::vector<Kesh::IpGenPrefix> nexthopAddr;
  std::vector<Kesh::IpGenPrefix> tunnelEndpoint; ///< and the destination of an encapsulation
  std::vector<Kesh::IpGenPrefix> policyEndpoint;
  std::vector<Kesh::IpGenPrefix> vtepAddr;
  std::vector<std::string> interface;
  std::vector<std::string> tunnelType; ///< and the type of an encapsulation
  std::vector<std::string> groupName;
  std::vector<std::uint32_t> viaWeight; ///< without the sum
  std::vector<std::uint32_t> label;
  std::vector<std::uint32_t> color;
  std::vector<std::uint32_t> vni;
};

/// Looks at the routes of a loaded sorter, in the order of the listing: what vias show can hang on
/// the route that showed them first. It must not outlive the sorter, whose state must not change
/// meanwhile.
template <class FamilyType>
class ROVA_EXPORT ShownRoutes {
 public:
  using Route = typename FamilyType::Route;
  /// What is asked of vias; the bits of the answer are the caller's.
  using Question = std::function<std::uint64_t(const ShownVias&)>;

  ShownRoutes(Sorter<FamilyType>& sorter, Question question);
  ~ShownRoutes();
  ShownRoutes(const ShownRoutes&) = delete;
  ShownRoutes& operator=(const ShownRoutes&) = delete;

  /// Its texts are valid until the next call.
  RouteHead head(const Route& route);
  /// The answer for the vias of a route, which is worked out once for all routes that share them. A
  /// route that the listing leaves out, or whose FEC is missing, shows none.
  std::uint64_t answer(const Route& route);
  /// Tells that the answer for a route will be wanted soon.
  void expect(const Route& route) const;

 private:
  struct Body;
  std::unique_ptr<Body> body_;
};

extern template class ShownRoutes<Ip4Family>;
extern template class ShownRoutes<Ip6Family>;

} // namespace Rova
