// The description of an interface, which detail listings show behind its name.
#pragma once

#include "rova/core/TypeNames.h"

namespace Rova {

/// The description of an interface in a detail listing; empty otherwise.
template <class Sorter>
Lumo::String interfaceDescriptionOf(const Sorter& sorter, const Kesh::IntfId& intfId) {
  if (!sorter.detail() || !intfId || !sorter.allIntfConfig()) return {};
  const auto config = sorter.allIntfConfig()->intfConfig(intfId);
  return config ? config->description : Lumo::String();
}

} // namespace Rova
