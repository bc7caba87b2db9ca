#include "rova/core/Interrupted.h"

#include <cstdio>

namespace Rova {

void reportInterrupt(const scrivo::sigintException& interrupt) {
  std::printf("exiting %s\n", interrupt.what());
  std::fflush(stdout);
}

} // namespace Rova
