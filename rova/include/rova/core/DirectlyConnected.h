// When a route line says "is directly connected".
#pragma once

#include "kesh/Prefix.h"
#include "rova/core/Export.h"

#include <string_view>

namespace Rova {

/// Whether the prefix is that of one address.
ROVA_EXPORT bool isHostRoute(const Kesh::IpGenPrefix& prefix);

/// Whether a route shows as directly connected: its next hop's text is "::" or "0.0.0.0", or the
/// prefix is a host route and the text is that of its address. The comparison is of texts, so
/// `nexthop` has to be in the form that `stringValue()` gives.
ROVA_EXPORT bool isDirectlyConnected(const Kesh::IpGenPrefix& prefix, std::string_view nexthop);

} // namespace Rova
