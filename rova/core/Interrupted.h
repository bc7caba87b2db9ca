// How a render ends when the user interrupts it.
#pragma once

#include "scrivo/Exception.h"

namespace Rova {

/// Says "exiting REASON" on standard output.
void reportInterrupt(const scrivo::sigintException& interrupt);

} // namespace Rova
