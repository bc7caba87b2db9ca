// Reading the lines of static routes that the running configuration is saved as.
//
//   ip route [vrf NAME] PREFIX [INTERFACE] [HOP [label N]] [track bfd]
//            [vtep ADDRESS vni N router-mac-address MAC] [PREFERENCE] [tag N] [name TEXT]
//            [leak vrf NAME]
//   ip route [vrf NAME] PREFIX Null0 [PREFERENCE] [tag N] [name TEXT]
//   ip route [vrf NAME] PREFIX Nexthop-Group [NAME] [PREFERENCE] [tag N]
//
// and the same with ipv6. A name goes to the end of the line, or to a " leak vrf NAME" there.
#pragma once

#include "state/RoutingConfig.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace command {

/// A line that is none of those above. `what()` says what was found and expected at `column`, which
/// counts from 0.
class LineError : public std::runtime_error {
 public:
  LineError(const std::string& message, std::size_t errorColumn)
      : std::runtime_error(message), column(errorColumn) {}
  std::size_t column;
};

/// What one line says.
struct StaticLine {
  bool ip6 = false;
  std::string vrf = L3::defaultVrfName;
  Routing::RouteKey key;
  Routing::RouteType routeType = Routing::RouteType::forward;
  std::uint32_t tag = 0;
  Routing::Via via; ///< of a forward route
  bool bfdTracked = false;
  std::string name;         ///< of the via, or of a drop route
  std::string nexthopGroup; ///< of a nexthop group route
  std::string leakVrf;
  // Where the VRF's name and the next hop stand, for what is wrong with them.
  std::size_t vrfColumn = 0;
  std::size_t hopColumn = 0;
};

/// Raises LineError.
StaticLine parseStaticLine(std::string_view line);

/// Enters a line into the configuration of its family and VRF: a new route, or one via more of a
/// route. Raises LineError when the line contradicts the route that is there in its kind, tag or
/// leak.
void enterStaticLine(const StaticLine& line, Routing::ConfigGen& config);

} // namespace command
