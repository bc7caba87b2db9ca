// A directory of named entities.
#pragma once

#include "lumo/HashMap2018.h"
#include "lumo/Ptr.h"
#include "lumo/String.h"

namespace Lumo {

/// Entities of any type by name; whoever reads one casts it to the type that it expects.
class LUMO_EXPORT Dir : public PtrInterface {
 public:
  /// The entity under a name; null when the name is absent or its entity is gone.
  Ptr<PtrInterface> entity(const String& name) const {
    const auto* const found = entities_.find(name);
    return found ? *found : Ptr<PtrInterface>();
  }
  /// Whether something is entered by that name.
  bool hasEntry(const String& name) const { return entities_.find(name) != nullptr; }
  void entityIs(const String& name, Ptr<PtrInterface> entity) {
    entities_.insertOrAssign(name, std::move(entity));
  }
  void entityDel(const String& name) { entities_.erase(name); }
  const HashMap2018<String, Ptr<PtrInterface>>& entities() const { return entities_; }

 private:
  HashMap2018<String, Ptr<PtrInterface>> entities_;
};

} // namespace Lumo
