#include "rova/core/Trace.h"

namespace Rova {

Lumo::TraceHandle& _defaultTraceHandle() {
  static Lumo::TraceHandle handle("CliSupport");
  return handle;
}

} // namespace Rova
