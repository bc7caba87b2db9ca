#include "command/OpenState.h"

#include "command/terminal/Message.h"
#include "command/terminal/ProgressLine.h"
#include "scrivo/Shown.h"
#include "sources/Source.h"

namespace command {

sources::State openState(const Options& options, const sources::Needs& needs) {
  auto state = [&] {
    terminal::ProgressLine progress(options.startTime);
    return sources::open(options.state, needs, progress.get());
  }();
  for (const auto& line : linesOf(state.notes, options.state)) {
    terminal::tell("rova: " + scrivo::shown(line));
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
