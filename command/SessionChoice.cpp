#include "command/SessionChoice.h"

#include "command/OpenState.h"
#include "command/VrfChoice.h"

namespace command {

ExitStatus chooseState(const grammar::Parsed& parsed, const Options& options) {
  Options chosen = options;
  chosen.state = parsed.text("source");
  if (chosen.state == "-") {
    parsed.fail("source", "the shell reads its commands from standard input: expected the name of "
                          "a file, or a kernel");
  }
  openState(chosen, namesAlone());
  return success;
}

ExitStatus chooseVrf(const grammar::Parsed& parsed, const Options& options) {
  const auto state = openState(options, namesAlone());
  chosenVrf(state.device, parsed.text("name"), options);
  return success;
}

ExitStatus leaveShell(const grammar::Parsed&, const Options&) { return success; }

} // namespace command
