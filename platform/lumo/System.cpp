#include "lumo/System.h"

#include <ctime>

namespace Lumo::System {

double currentTime() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

} // namespace Lumo::System
