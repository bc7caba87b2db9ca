#include "lumo/Arguments.h"

#include <boost/container/small_vector.hpp>

namespace Lumo {

ArgumentSpan spanOf(const GenericArguments& arguments) {
  return {arguments.data(), arguments.size()};
}

void needArguments(const ArgumentRecord* table, ArgumentSpan arguments) {
  std::size_t count = 0;
  std::string names;
  for (; table[count].name; ++count) names += (count ? ", " : "") + std::string(table[count].name);
  if (arguments.size() == count) return;
  throw RangeException("expected " + std::to_string(count) + " arguments (" + names + "), found " +
                       std::to_string(arguments.size()));
}

void rethrowForArgument(const RangeException& exception, const ArgumentRecord& argument) {
  throw RangeException(std::string("argument ") + argument.name + ": " + exception.what());
}

} // namespace Lumo
