// Names that nobody can have typed, or that their lines would not read back. Interfaces, VRFs and
// descriptions come from devices, where nearly all is allowed: they are taken as they are, and
// outputs escape them. The names of a configuration were typed, so that a strange one is a mistake
// or a forgery: it is refused. Each of these raises `SourceError`.
#pragma once

#include "Input.h"

#include "state/RoutingConfig.h"

namespace sources::snapshot {

/// Refuses a name with what does not show as it is (scrivo/Shown.h). `what` says whose name.
void requireShown(Node& node, std::string_view what, std::string_view name);

/// The same for all names of a route that an agent hands to routing.
void checkInputNames(Node& node, const Routing::Route& route);

/// Refuses a VRF name that is no word of a line, of a VRF that has configured routes.
void checkConfiguredVrf(Node& node, const L3::VrfName& vrf);

/// As `checkInputNames` for a configured route, and each name must be read back from the line that
/// the route is saved as.
void checkConfiguredNames(Node& node, const Routing::Route& route);

} // namespace sources::snapshot
