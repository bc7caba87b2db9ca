// Taking the static routes of an interface out of a configuration.
#pragma once

#include "lumo/Attribute.h"
#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"

namespace Rova {

/// The one operation of the library that changes a configuration.
class ROVA_EXPORT ClearIntfRoutesAndViasHelper {
  LUMO_TYPE(ClearIntfRoutesAndViasHelper, "Rova::ClearIntfRoutesAndViasHelper")
  LUMO_METHOD(clearIntfRoutesAndViasHelper, "config", "intfName")
  LUMO_END
  LUMO_VALUE(ClearIntfRoutesAndViasHelper)

  ClearIntfRoutesAndViasHelper() = default;

  /// Deletes every via through the interface with its name, and every route that is then left
  /// without vias, unless it drops its packets anyway. Routes that nothing was deleted from stay.
  void clearIntfRoutesAndViasHelper(Lumo::Ptr<Routing::ConfigGen> config,
                                    Lumo::String intfName) const;
};

} // namespace Rova
