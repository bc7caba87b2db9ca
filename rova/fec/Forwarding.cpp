#include "rova/fec/Forwarding.h"

namespace Rova {

Lumo::String interfaceDescriptionOf(const Forwarding& forwarding, const Kesh::IntfId& intfId) {
  if (!forwarding.detail || !intfId || !forwarding.allIntfConfig) return {};
  const auto config = forwarding.allIntfConfig->intfConfig(intfId);
  return config ? config->description : Lumo::String();
}

} // namespace Rova
