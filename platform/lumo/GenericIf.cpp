#include "lumo/TypeOf.h"

#include <string>

namespace Lumo {

void throwTypeException(const char* expected, const char* found) {
  throw RangeException(std::string("expected a value of type ") + expected + ", found " + found);
}

void throwUnhashableException(const char* type) {
  throw InternalException(std::string("values of type ") + type + " have no hash");
}

void throwConstantException(const char* type) {
  throw InternalException(std::string("this ") + type +
                          " can be read only: its handle is constant");
}

GenericIfPtrInterface::~GenericIfPtrInterface() = default;

void* GenericIfPtrInterface::voidPtrIs(const TypeRecord& expected) {
  requireType(expected, type_);
  return object_;
}

std::uint32_t GenericIfPtrInterface::hash() const { throwUnhashableException(type_.name); }

String GenericIfPtrInterface::strRep() const {
  return valueToStrepOfRawPtr(entity_.ptr(), object_, type_.name, !constant());
}

} // namespace Lumo
