#include "lumo/Strep.h"

#include "lumo/NamedEntities.h"
#include "lumo/Type.h"

#include <cstdio>

namespace Lumo {

String valueToStrepOfRawPtr(const PtrInterface* entity, const void* object, const char* typeName,
                            bool writable) {
  if (!entity) return "None";
  nameEntity(*entity, {typeName, object, writable});
  char digits[32];
  std::snprintf(digits, sizeof digits, "%p", object);
  return "Ptr('" + std::string(typeName) + "', " + digits + ")";
}

// A type without data writes nothing, one whose only attribute is a collection writes "None", and
// every other names itself and its stored attributes; a collection is "None" whatever it holds.
String strepOf(const TypeRecord& type, const void* object) {
  std::string text;
  std::size_t stored = 0;
  bool collectionsOnly = true;
  for (const AttributeRecord& row : type.attributes) {
    if (!isStored(row.kind)) continue;
    const bool collection = isCollection(row.kind);
    text += std::string(stored++ ? ", '" : "'") + row.name +
            "': " + (collection ? "None" : row.strep(object).str());
    collectionsOnly = collectionsOnly && collection;
  }
  if (stored == 0) return {};
  if (stored == 1 && collectionsOnly) return "None";
  return "Value('" + std::string(type.name) + "', ** {" + text + "})";
}

} // namespace Lumo
