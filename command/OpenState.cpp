#include "command/OpenState.h"

#include "scrivo/Shown.h"
#include "sources/Source.h"

#include <cstdio>

namespace command {

sources::State openState(const Options& options, const sources::Needs& needs) {
  auto state = sources::open(options.state, needs);
  for (const auto& line : linesOf(state.notes, options.state)) {
    std::fprintf(stderr, "rova: %s\n", scrivo::shown(line).c_str());
  }
  return state;
}

sources::Needs namesAlone() {
  sources::Needs needs;
  needs.routes = needs.configured = needs.neighbours = false;
  needs.nexthopGroups = needs.addressConfig = needs.descriptions = false;
  return needs;
}

} // namespace command
