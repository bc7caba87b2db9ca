#include "lumo/Exception.h"

#include <cstring>

namespace Lumo {

Exception::~Exception() = default;
RangeException::~RangeException() = default;
InternalException::~InternalException() = default;
ErrnoException::~ErrnoException() = default;

ErrnoException::ErrnoException(int number, std::string text)
    : Exception(errorString(number)), number_(number), text_(std::move(text)) {}

std::string errorString(int number) {
  char buffer[256];
  return strerror_r(number, buffer, sizeof buffer);
}

} // namespace Lumo
