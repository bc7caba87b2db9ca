#include "lumo/KindWords.h"

#include <cstddef>
#include <iterator>

namespace Lumo {

namespace {

// In the order of the enumerators.
constexpr const char* typeWords[] = {"entity", "value", "stateless", "enumeration", "scalar"};
constexpr const char* attributeWords[] = {
    "constructor", "writable-constructor", "plain", "ordered", "hashed", "method", "computed"};
static_assert(std::size(typeWords) == static_cast<std::size_t>(TypeKind::scalar) + 1);
static_assert(std::size(attributeWords) == static_cast<std::size_t>(AttributeKind::computed) + 1);

} // namespace

const char* kindWord(TypeKind kind) { return typeWords[static_cast<std::size_t>(kind)]; }
const char* kindWord(AttributeKind kind) { return attributeWords[static_cast<std::size_t>(kind)]; }

} // namespace Lumo
