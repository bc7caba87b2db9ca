#include "lumo/Type.h"

namespace Lumo {

namespace {

std::vector<const TypeRecord*>& registry() {
  static auto* const types = new std::vector<const TypeRecord*>;
  return *types;
}

} // namespace

bool TypeRecord::isReadable() const {
  for (const AttributeRecord& row : attributes) {
    if (isCollection(row.kind)) return false;
  }
  return form != ValueForm::none && form != ValueForm::entity;
}

const AttributeRecord* TypeRecord::attribute(std::string_view attributeName) const {
  for (const AttributeRecord& row : attributes) {
    if (row.name == attributeName) return &row;
  }
  return nullptr;
}

std::string_view shortName(const TypeRecord& type) {
  const std::string_view name = type.name;
  const auto colon = name.rfind(':');
  return colon == name.npos ? name : name.substr(colon + 1);
}

void typeNodeIs(const TypeRecord& type) { registry().push_back(&type); }

const TypeRecord* typeNode(std::string_view name) {
  for (const TypeRecord* type : registry()) {
    if (type->name == name) return type;
  }
  return nullptr;
}

const std::vector<const TypeRecord*>& typeNodes() { return registry(); }

} // namespace Lumo
