#include "lumo/Type.h"

#include <cstdio>

namespace Lumo {

namespace {

std::vector<const TypeRecord*>& registry() {
  static auto* const types = new std::vector<const TypeRecord*>;
  return *types;
}

bool isStored(AttributeKind kind) {
  return kind != AttributeKind::method && kind != AttributeKind::computed;
}

} // namespace

const AttributeRecord* TypeRecord::attribute(std::string_view attributeName) const {
  for (const AttributeRecord& row : attributes) {
    if (row.name == attributeName) return &row;
  }
  return nullptr;
}

void typeNodeIs(const TypeRecord& type) { registry().push_back(&type); }

const TypeRecord* typeNode(std::string_view name) {
  for (const TypeRecord* type : registry()) {
    if (type->name == name) return type;
  }
  return nullptr;
}

const std::vector<const TypeRecord*>& typeNodes() { return registry(); }

String valueToStrepOfRawPtr(const void* pointer, const char* typeName) {
  if (!pointer) return "None";
  char digits[32];
  std::snprintf(digits, sizeof digits, "%p", pointer);
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
