// The routes that a query asks for, loaded: what every command over routes begins with.
#pragma once

#include "command/Options.h"
#include "command/RouteQuery.h"
#include "rova/CliSupport.h"
#include "sources/State.h"

namespace command {

template <class Family>
using QueryOf = RouteQuery<typename Family::Prefix>;

/// What a source must give for the query, of one family.
template <class Family>
sources::Needs needsOf(const QueryOf<Family>& query);

/// A loaded sorter of one VRF, whose listing is for standard output. Raises what loading raises.
template <class Family>
Lumo::Ptr<Rova::Sorter<Family>> openRoutes(const state::DeviceState& device,
                                           const state::VrfState& vrf, const QueryOf<Family>& query,
                                           const Options& options);

} // namespace command
