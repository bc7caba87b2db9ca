// Whether a route distinguisher is free for a VRF.
#pragma once

#include "lumo/Attribute.h"
#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"

namespace Rova {

/// Has its verdict when it is made: a route distinguisher may belong to one VRF only, whichever
/// agents publish it.
class ROVA_EXPORT RdAssignmentChecker {
  LUMO_TYPE(RdAssignmentChecker, "Rova::RdAssignmentChecker")
  LUMO_CTOR(Lumo::Ptr<Lumo::Dir>, routeDistinguisherInputDir, Lumo::orNull) // null: no inputs
  LUMO_CTOR(Lumo::String, vrfName)
  LUMO_CTOR(Kesh::RouteDistinguisher, routeDistinguisher)
  LUMO_ATTR(bool, acceptable)
  LUMO_ATTR(Lumo::String, errorMessage)
  LUMO_METHOD(handleInitialized)
  LUMO_END
  LUMO_VALUE(RdAssignmentChecker)

  RdAssignmentChecker() = default;
  RdAssignmentChecker(Lumo::Ptr<Lumo::Dir> inputs, Lumo::String vrf,
                      const Kesh::RouteDistinguisher& wanted)
      : routeDistinguisherInputDir_(std::move(inputs)),
        vrfName_(std::move(vrf)),
        routeDistinguisher_(wanted) {
    handleInitialized();
  }

  /// Checks again. An old message stays beside a new acceptance. An entry of the directory that is
  /// no input of route distinguishers stops the process.
  void handleInitialized();
};

} // namespace Rova
