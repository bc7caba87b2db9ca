#include "sources/Source.h"

#include "sources/kernel/Kernel.h"
#include "sources/snapshot/Snapshot.h"

namespace sources {

namespace {

constexpr std::string_view own = "kernel", named = "kernel:";

} // namespace

bool isKernel(const std::string& source) { return source == own || source.starts_with(named); }

State open(const std::string& source, const Needs& needs) {
  if (source == own) return kernel::load("", needs);
  if (source.starts_with(named)) return kernel::load(source.substr(named.size()), needs);
  return {snapshot::load(source), {}}; // a file is read as a whole
}

} // namespace sources
