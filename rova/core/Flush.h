// Long displays stream: their buffer is written out as it fills.
#pragma once

#include "scrivo/Printer.h"

namespace Rova {

/// Flushes a buffer that is more than two thirds full, so that it need not be cut in a row.
inline void flushIfFull(scrivo::Printer& printer) {
  constexpr int flushAbove = 66; // percent
  if (printer.fullness() > flushAbove) printer.ioflush();
}

} // namespace Rova
