#include "scrivo/Exception.h"

namespace scrivo {

sigintException::~sigintException() = default;
WriteException::~WriteException() = default;

WriteException::WriteException(int number)
    : ErrnoException(number, "cannot write the output"),
      message_(text() + ": " + Lumo::errorString(number)) {}

} // namespace scrivo
