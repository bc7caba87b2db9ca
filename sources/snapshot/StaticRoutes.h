// The static routes of one family and VRF: configured, and as agents hand them to routing.
#pragma once

#include "Field.h"

#include "state/DeviceState.h"

namespace sources::snapshot {

using ConfigPtr = Lumo::Ptr<Routing::ConfigGen>;

/// Reads a configuration of routes to `PrefixType` prefixes; null gives a null pointer. With
/// `wantsAll` unset it keeps those alone that displays of routes look at. Returns whether there are
/// any.
template <class PrefixType>
bool readConfig(Node& node, ConfigPtr& config, bool wantsAll);
extern template bool readConfig<Kesh::Prefix>(Node& node, ConfigPtr& config, bool wantsAll);
extern template bool readConfig<Kesh::Ip6Prefix>(Node& node, ConfigPtr& config, bool wantsAll);

/// Whether the configuration is another than that of a fresh VRF.
bool configPresent(const ConfigPtr& config);
void writeConfig(Output& out, const ConfigPtr& config);

/// Reads an array of routes to `PrefixType` prefixes for each agent.
template <class PrefixType>
void readInputs(Node& node, state::RouteInputs& inputs);
extern template void readInputs<Kesh::Prefix>(Node& node, state::RouteInputs& inputs);
extern template void readInputs<Kesh::Ip6Prefix>(Node& node, state::RouteInputs& inputs);

/// One route of either.
void writeRoute(Output& out, const Routing::Route& route);

void writeInputs(Output& out, const state::RouteInputs& inputs);

} // namespace sources::snapshot
