// The words for the kinds of types and attributes, one each, as every list of types writes them.
#pragma once

#include "lumo/Type.h"

namespace Lumo {

/// "entity", "value", "stateless", "enumeration" or "scalar".
LUMO_EXPORT const char* kindWord(TypeKind kind);
/// "constructor", "writable-constructor", "plain", "ordered", "hashed", "method" or "computed".
LUMO_EXPORT const char* kindWord(AttributeKind kind);

} // namespace Lumo
