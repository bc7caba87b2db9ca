// The state database as its clients see it: entities by path.
#pragma once

#include "lumo/Dir.h"

namespace Merrow {

/// Entities by the path at which they are mounted.
class EntityManager : public Lumo::PtrInterface {
 public:
  /// Null for a path at which nothing stands.
  Lumo::Ptr<Lumo::PtrInterface> getEntity(const Lumo::String& path) const {
    return entities_.entity(path);
  }
  /// Enters an entity at a path, in place of what stands there.
  void entityIs(const Lumo::String& path, Lumo::Ptr<Lumo::PtrInterface> entity) {
    entities_.entityIs(path, std::move(entity));
  }

 private:
  Lumo::Dir entities_;
};

} // namespace Merrow
