#include "sources/Source.h"

#include "sources/kernel/Kernel.h"
#include "sources/snapshot/Snapshot.h"

namespace sources {

namespace {

constexpr std::string_view own = "kernel", named = "kernel:";

} // namespace

bool isKernel(const std::string& source) { return source == own || source.starts_with(named); }

state::DeviceState open(const std::string& source) {
  if (source == own) return kernel::load("");
  if (source.starts_with(named)) return kernel::load(source.substr(named.size()));
  return snapshot::load(source);
}

} // namespace sources
