#include "vanta/Debuggable.h"

#include <cstdio>

namespace Tembra {

void Debuggable::enabledIs(unsigned level, bool on) {
  if (level >= 64) return;
  const std::uint64_t bit = std::uint64_t{1} << level;
  levels_ = on ? levels_ | bit : levels_ & ~bit;
}

void Debuggable::write(std::string_view line) const {
  if (sink_) return sink_(line);
  std::fprintf(stderr, "%s: %.*s\n", name_.c_str(), static_cast<int>(line.size()), line.data());
}

} // namespace Tembra
