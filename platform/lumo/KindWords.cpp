#include "lumo/KindWords.h"

namespace Lumo {

const char* kindWord(TypeKind kind) {
  switch (kind) {
  case TypeKind::entity:
    return "entity";
  case TypeKind::value:
    return "value";
  case TypeKind::statelessValue:
    return "stateless";
  case TypeKind::enumeration:
    return "enumeration";
  case TypeKind::scalar:
    break;
  }
  return "scalar";
}

const char* kindWord(AttributeKind kind) {
  switch (kind) {
  case AttributeKind::constructorArgument:
    return "constructor";
  case AttributeKind::writableConstructorArgument:
    return "writable-constructor";
  case AttributeKind::plain:
    return "plain";
  case AttributeKind::ordered:
    return "ordered";
  case AttributeKind::hashed:
    return "hashed";
  case AttributeKind::method:
    return "method";
  case AttributeKind::computed:
    break;
  }
  return "computed";
}

} // namespace Lumo
