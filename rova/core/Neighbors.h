// The neighbours of a VRF, which displays show and count as attached host routes. Templates over
// the object of the display, which names its family and has `arpVanta`, `vrfIdMap` and `vrfName`.
#pragma once

#include "rova/core/Family.h"

namespace Rova {

/// A walk over the neighbours of the object's family, those of all VRFs.
template <class Object>
auto neighborIteratorConst(const Object& object) {
  const auto& table = (*object.arpVanta()).*Object::Family::neighbors;
  return typename std::remove_cvref_t<decltype(table)>::IteratorConst(table);
}

/// Whether a neighbour is one of the object's VRF. The default VRF is told by its number, any other
/// by its name. Neighbours are in the order of their VRFs, so each VRF is asked about once.
template <class Object>
class VrfFilter {
 public:
  using VrfId = Vrf::VrfIdMap::VrfId;

  explicit VrfFilter(const Object& object)
      : object_(object), isDefault_(object.vrfName() == L3::VrfName(L3::defaultVrfName)) {}

  bool takes(VrfId vrf) {
    if (isDefault_) return vrf == VrfId(0);
    if (vrf != last_) {
      last_ = vrf;
      takesLast_ = hasName(vrf);
    }
    return takesLast_;
  }

 private:
  /// A number that the device does not know has the empty name.
  bool hasName(VrfId vrf) const {
    bool found = false;
    const auto* const entry = object_.vrfIdMap()->vrfEntry.safeLookup(vrf, found, 0);
    return object_.vrfName().stringValue() == (found ? entry->name : Lumo::String());
  }

  const Object& object_;
  const bool isDefault_;
  VrfId last_{VrfId::none};
  bool takesLast_ = false;
};

} // namespace Rova
