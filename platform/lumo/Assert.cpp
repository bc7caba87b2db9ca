#include "lumo/Assert.h"

#include <cstdio>
#include <cstdlib>

namespace Lumo {

void assertionFailed(const char* text) {
  std::fprintf(stderr, "Assertion failed: %s\n", text);
  std::abort();
}

} // namespace Lumo
