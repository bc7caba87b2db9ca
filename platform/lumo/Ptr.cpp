#include "lumo/Ptr.h"

#include "lumo/NamedEntities.h"

namespace Lumo {

bool enableThreadSafePointers = false;
AllocationTracking allocationTracking;

PtrInterface::~PtrInterface() {
  if (named_) forgetEntity(*this);
}

void PtrInterface::maybeDelete() const {
  if (references_ == 0) delete this;
}
NotifieeList* PtrInterface::notifieeList() const { return nullptr; }
bool PtrInterface::referenceTrackingEnabled() const { return false; }
void PtrInterface::hasNotificationActiveIs(bool active) const { notificationActive_ = active; }
void PtrInterface::zeroReferencesIs() const { maybeDelete(); }
const TypeRecord* PtrInterface::fwkType() const { return nullptr; }

void trackAllocation(const PtrInterface* entity, const std::type_info& type) {
  if (allocationTracking.allocated) allocationTracking.allocated(entity, type);
}

void trackDeallocation(const std::type_info& type) {
  if (allocationTracking.failed) allocationTracking.failed(type);
}

} // namespace Lumo
