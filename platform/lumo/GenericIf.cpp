#include "lumo/GenericIf.h"

#include "lumo/Exception.h"

#include <cstring>

namespace Lumo {

void throwTypeException(const char* expected, const char* found) {
  throw RangeException(std::string("expected a value of type ") + expected + ", found " + found);
}

void throwUnhashableException(const char* type) {
  throw InternalException(std::string("values of type ") + type + " have no hash");
}

void throwOpNotSupportedException(const char* attribute, const char* operation) {
  throw InternalException(std::string("attribute ") + attribute + " does not support " + operation);
}

void requireType(const char* expected, const char* found) {
  if (std::strcmp(expected, found) != 0) throwTypeException(expected, found);
}

} // namespace Lumo
