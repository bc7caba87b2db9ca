// What stands behind the prefix in a configuration line of a static route.
#pragma once

#include "rova/staticroute/StaticRouteTypes.h"

#include <string>

namespace Rova {

/// Which pieces of a line are left out.
struct LineDefaults {
  const RovaConsts& consts;
  bool saveAll; ///< preference and tag are written also when they are the defaults
};

/// Whether the via has a next hop: an address of a known family that is not zero.
bool hasHop(const Routing::Via& via);

/// " Null0 200 tag 7 name spare"
std::string dropText(const Routing::Route& route, const LineDefaults& defaults);
/// " Nexthop-Group west 200"
std::string nexthopGroupText(const Routing::Route& route, const LineDefaults& defaults);
/// " Ethernet1 10.0.0.1 label 100 track bfd 200 tag 7 name core leak vrf red". A via with both a
/// next hop and a VXLAN endpoint stops the process.
std::string viaText(const Routing::Route& route, const Routing::Via& via,
                    const LineDefaults& defaults);

} // namespace Rova
