// The entities that strep texts name. A text holds an address; only what stands here, because it
// was written and lives, is ever followed.
#pragma once

#include "lumo/Ptr.h"

namespace Lumo {

struct NamedEntity {
  const char* type;
  const void* object; ///< the entity as its own type
  bool writable;      ///< whether some text was written through a handle that allows changes
};

/// Enters the entity until its end.
void nameEntity(const PtrInterface& entity, const NamedEntity& name);
/// The entity of that type at that address, as its own type; null when none was named, or not
/// through a handle that allows changes where `writable` asks for one.
const void* namedEntity(const char* type, const void* object, bool writable);
/// For the end of a named entity.
void forgetEntity(const PtrInterface& entity);

} // namespace Lumo
