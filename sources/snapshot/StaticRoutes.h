// The configured routes of one family and VRF.
#pragma once

#include "Field.h"

#include "state/RoutingConfig.h"

namespace sources::snapshot {

using ConfigPtr = Lumo::Ptr<Routing::ConfigGen>;

/// Reads a configuration of routes to `PrefixType` prefixes; null gives a null pointer.
template <class PrefixType>
void readConfig(Node& node, ConfigPtr& config);
extern template void readConfig<Kesh::Prefix>(Node& node, ConfigPtr& config);
extern template void readConfig<Kesh::Ip6Prefix>(Node& node, ConfigPtr& config);

/// Whether the configuration is another than that of a fresh VRF.
bool configPresent(const ConfigPtr& config);
void writeConfig(Output& out, const ConfigPtr& config);

} // namespace sources::snapshot
